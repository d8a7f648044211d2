#pragma once

#include "Output.h"

#include <array>
#include <cstddef>
#include <string>
#include <vector>

class Console;

/// Announcements as a table. Rows are held back until there are enough to make the columns fit them, so the
/// memory taken does not grow with their number; columns grow from batch to batch and never shrink.
class TableOutput : public Output {
public:
    /// @param aConsole  borrowed
    explicit TableOutput(Console& aConsole) : mConsole(aConsole) {}

    void Put(const Announcement& anAnnouncement) override;
    void Finish() override;

private:
    static constexpr std::size_t kColumnCount = 7;
    using Row = std::array<std::string, kColumnCount>;

    std::string Line(const Row& aRow) const;

    Console& mConsole;
    bool mfHeaderShown = false;
    std::vector<Row> mRows;
    std::array<std::size_t, kColumnCount> mWidths = {};
};

/// Announcements with the source of each fact, a block of lines each.
class ExplainedOutput : public Output {
public:
    /// @param aConsole  borrowed
    explicit ExplainedOutput(Console& aConsole) : mConsole(aConsole) {}

    void Put(const Announcement& anAnnouncement) override;

private:
    Console& mConsole;
    bool mfFirst = true;
};
