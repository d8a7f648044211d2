#pragma once

#include "ezPlatform/base/Export.h"

#include <chrono>
#include <string>

/// What a timed log record tells.
enum ezLogDurationKind : int {
    kezLogDuration_Duration = 0 ///< the time between its construction and its destruction
};

/// A log line that is written when this object is destroyed: its text with the time spent since it was made,
/// in milliseconds, before the line end that it has: "Opened the table\n" becomes "Opened the table (1.234
/// ms)\n".
///
/// Nothing is formatted or measured when the level drops the line at its construction.
class EZPLATFORM_API ezLogDuration {
public:
    /// @param aLevel  ezLogLevel
    /// @param aModule ezLogModule
    /// @param aKind   kezLogDuration_Duration
    /// @param aFormat printf format of the text
    ezLogDuration(int aLevel, int aModule, ezLogDurationKind aKind, const char* aFormat, ...)
        __attribute__((format(printf, 5, 6)));
    ~ezLogDuration();

    ezLogDuration(const ezLogDuration&) = delete;
    ezLogDuration& operator=(const ezLogDuration&) = delete;

private:
    int mLevel;
    int mModule;
    bool mfWanted;
    std::string mText;
    std::chrono::steady_clock::time_point mBegin;
};
