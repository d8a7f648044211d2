#pragma once

#include "parse/Output.h"

class Console;

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
