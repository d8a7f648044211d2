#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// How a column is laid out.
struct ColumnStyle {
    /// A longer cell pushes its own row to the right instead of widening the column of all rows, so that what
    /// is written stays in proportion to what is told.
    std::size_t mMaximumWidth = 60;
    bool mfRight = false; ///< at the right edge of the column
};

/// The widths of columns, which grow with the rows that they are shown and never shrink. Cells are safe for a
/// terminal; every row has as many as there are styles.
class ColumnWidths {
public:
    explicit ColumnWidths(std::vector<ColumnStyle> aStyles)
        : mStyles(std::move(aStyles)), mWidths(mStyles.size(), 0), mHidden(mStyles.size(), false) {}

    /// Widens the columns for a row.
    void Take(const std::vector<std::string>& aRow);

    /// Takes a column out of the lines.
    void Hide(std::size_t aColumn) { mHidden[aColumn] = true; }
    /// Makes a column no wider than this.
    void Bound(std::size_t aColumn, std::size_t aWidth);

    std::size_t GetWidth(std::size_t aColumn) const { return mWidths[aColumn]; }
    bool IsHidden(std::size_t aColumn) const { return mHidden[aColumn]; }
    /// That of a line, in which no cell is longer than its column.
    std::size_t GetLineWidth() const;

    /// The row as a line with its end, two blanks between its columns and none at its end.
    std::string Line(const std::vector<std::string>& aRow) const;

private:
    std::vector<ColumnStyle> mStyles;
    std::vector<std::size_t> mWidths;
    std::vector<bool> mHidden;
};

/// Rows as lines of text whose columns begin below each other. The cells are made safe for a terminal here;
/// an empty one is "-". Every row has as many cells as the first.
std::string InColumns(const std::vector<std::vector<std::string>>& aRows);
