#pragma once

#include "output/Columns.h"
#include "parse/Output.h"

#include <string>
#include <vector>

class Console;

/// Announcements as a table with all that is known of each, as wide as that takes. Rows are held back as
/// those of TableOutput are.
class WideTableOutput : public Output {
public:
    /// @param aConsole  borrowed
    explicit WideTableOutput(Console& aConsole);

    void Put(const Announcement& anAnnouncement) override;
    void Finish() override;

private:
    Console& mConsole;
    bool mfHeaderShown = false;
    std::vector<std::vector<std::string>> mRows;
    ColumnWidths mWidths;
};
