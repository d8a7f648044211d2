#pragma once

#include "ezPlatform/base/Export.h"
#include "ezPlatform/text/CString.h"

#include <cstdint>

/// What a file was like when it was looked at, to tell later whether it is still the same.
///
/// That is: which file it is, its size, and the times of its last modification and of its last change of
/// status, which a copy or a tag editor cannot put back. Systems count these times in steps, so that a file
/// that was changed just before it was looked at is not settled: one that is written again within the step
/// may have the same state. ToIdentity sees to that. More of it: docs/platform-layer.md.
class EZPLATFORM_API ezFileState {
public:
    /// The state of what is not there.
    ezFileState() = default;
    /// Looks at a file, links followed, by one system call. What cannot be looked at is not there.
    explicit ezFileState(const ezCString& aPath);

    /// A text that two states share only when they are equal: "none" for what is not there, else numbers.
    ezCString ToText() const;
    /// The same, to know what is made of the file by, as in a cache. For a file that was changed just before
    /// it was looked at it is another text each time, so that what was made of the file then is not found
    /// later.
    ezCString ToIdentity() const;

    /// Equal when the file is the same and was not changed, as far as its times can tell; two of what is not
    /// there are equal.
    /// @{
    friend bool operator==(const ezFileState& aLeft, const ezFileState& aRight) {
        return aLeft.ToText() == aRight.ToText();
    }
    friend bool operator!=(const ezFileState& aLeft, const ezFileState& aRight) { return !(aLeft == aRight); }
    /// @}

private:
    /// Seconds and nanoseconds.
    struct Time {
        std::int64_t mSeconds = 0;
        std::int64_t mNanoseconds = 0;
    };

    static ezCString InWords(const Time& aTime);
    static bool IsOver(const Time& aStamp, const Time& aNow);

    bool mfThere = false;
    bool mfSettled = true; ///< every change to come would give another state
    std::uint64_t mDevice = 0;
    std::uint64_t mInode = 0;
    std::uint64_t mSize = 0;
    Time mModified;
    Time mChanged;
};
