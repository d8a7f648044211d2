#include "Columns.h"

#include "SafeText.h"

#include <algorithm>

namespace {

std::string Cell(const std::string& aText) {
    return aText.empty() ? "-" : ForTerminal(aText);
}

} // namespace

std::string InColumns(const std::vector<std::vector<std::string>>& aRows) {
    std::vector<std::size_t> widths(aRows.empty() ? 0 : aRows.front().size(), 0);
    for (const std::vector<std::string>& row : aRows) {
        for (std::size_t column = 0; column < widths.size(); ++column) {
            widths[column] = std::max(widths[column], TerminalWidth(Cell(row[column])));
        }
    }
    std::string text;
    for (const std::vector<std::string>& row : aRows) {
        for (std::size_t column = 0; column < widths.size(); ++column) {
            const std::string cell = Cell(row[column]);
            text += cell;
            if (column + 1 < widths.size()) {
                text.append(widths[column] - TerminalWidth(cell) + 2, ' ');
            }
        }
        text += '\n';
    }
    return text;
}
