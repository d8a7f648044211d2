#include "output/Columns.h"

#include "output/SafeText.h"

#include <algorithm>

namespace {

constexpr std::size_t kGap = 2;

} // namespace

void ColumnWidths::Take(const std::vector<std::string>& aRow) {
    for (std::size_t column = 0; column < mWidths.size(); ++column) {
        const std::size_t width = TerminalWidth(aRow[column]);
        if (width <= mStyles[column].mMaximumWidth) {
            mWidths[column] = std::max(mWidths[column], width);
        }
    }
}

void ColumnWidths::Bound(std::size_t aColumn, std::size_t aWidth) {
    mWidths[aColumn] = std::min(mWidths[aColumn], aWidth);
}

std::size_t ColumnWidths::GetLineWidth() const {
    std::size_t width = 0;
    for (std::size_t column = 0; column < mWidths.size(); ++column) {
        width += mHidden[column] ? 0 : mWidths[column] + kGap;
    }
    return width - std::min(width, kGap);
}

std::string ColumnWidths::Line(const std::vector<std::string>& aRow) const {
    std::string line;
    for (std::size_t column = 0; column < mWidths.size(); ++column) {
        if (mHidden[column]) {
            continue;
        }
        const std::size_t width = TerminalWidth(aRow[column]);
        const std::string padding(width < mWidths[column] ? mWidths[column] - width : 0, ' ');
        line += mStyles[column].mfRight ? padding + aRow[column] : aRow[column] + padding;
        line.append(kGap, ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line + "\n";
}

std::string InColumns(const std::vector<std::vector<std::string>>& aRows) {
    std::vector<std::vector<std::string>> rows = aRows;
    ColumnWidths widths(std::vector<ColumnStyle>(rows.empty() ? 0 : rows.front().size()));
    for (std::vector<std::string>& row : rows) {
        for (std::string& cell : row) {
            cell = cell.empty() ? "-" : ForTerminal(cell);
        }
        widths.Take(row);
    }
    std::string text;
    for (const std::vector<std::string>& row : rows) {
        text += widths.Line(row);
    }
    return text;
}
