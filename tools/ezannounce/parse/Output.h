#pragma once

struct Announcement;

/// Shows announcements, one after the other, without keeping them.
class Output {
public:
    Output() = default;
    virtual ~Output() = default;
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    virtual void Put(const Announcement& anAnnouncement) = 0;
    /// Shows what was held back.
    virtual void Finish() {}
};
