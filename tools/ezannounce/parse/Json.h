#pragma once

#include "parse/Output.h"

#include <string>

class Console;
struct Announcement;

/// An announcement as one object, with the end of its line.
std::string InJson(const Announcement& anAnnouncement);

/// Announcements as JSON, one object a line.
class JsonOutput : public Output {
public:
    /// @param aConsole  borrowed
    explicit JsonOutput(Console& aConsole) : mConsole(aConsole) {}

    void Put(const Announcement& anAnnouncement) override;

private:
    Console& mConsole;
};
