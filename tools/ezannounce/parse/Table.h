#pragma once

#include "output/Columns.h"
#include "parse/Output.h"

#include <cstddef>
#include <string>
#include <vector>

class Console;

/// Announcements as a table that fits its terminal: name, kind, length, resolution or size, codecs, and DLNA
/// profile. Where room is short names are cut in their middle, then columns are left out; a profile is never
/// cut. Rows are held back until there are enough to make the columns fit them, so the memory taken does not
/// grow with their number; columns grow from batch to batch and never shrink.
class TableOutput : public Output {
public:
    /// @param aConsole  borrowed
    /// @param aWidth    columns of the terminal
    TableOutput(Console& aConsole, std::size_t aWidth);

    void Put(const Announcement& anAnnouncement) override;
    void Finish() override;

private:
    struct Row {
        std::string mName; ///< as it is; the cell is made when its width is known
        std::vector<std::string> mCells;
    };

    ColumnWidths Fitted() const;

    Console& mConsole;
    std::size_t mWidth;
    std::vector<bool> mShown; ///< the columns of the last header
    std::vector<Row> mRows;
    ColumnWidths mWidths;
};

/// The cell of an announced media's size; "-" where it is not known.
std::string SizeCellOf(const Announcement& anAnnouncement);
