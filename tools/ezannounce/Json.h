#pragma once

#include "Output.h"

class Console;

/// Announcements as JSON, one object a line.
class JsonOutput : public Output {
public:
    /// @param aConsole  borrowed
    explicit JsonOutput(Console& aConsole) : mConsole(aConsole) {}

    void Put(const Announcement& anAnnouncement) override;

private:
    Console& mConsole;
};
