#pragma once

#include "ezPlatform/base/Export.h"
#include "ezPlatform/text/CString.h"

#include <cstdint>

/// What a file was like when it was looked at, to tell later whether it is still the same.
///
/// That is: which file it is (device and inode), its size, and to the nanosecond the times of its last
/// modification and of its last change of status. Of these the last one cannot be put back, so that a copy
/// with its time kept (cp -p, an archive) and a tag editor that restores the time of a song are noticed. It
/// also changes when a file gets another name or other permissions, or another link, though nothing in it
/// did.
///
/// Systems count these times in steps: some milliseconds in most, 1 or 2 seconds on FAT and some others. A
/// file that is written into twice within a step, its size the same, has one state for both contents. Until
/// the step is over the state is not settled, and what is made of the file should not be trusted for longer;
/// ToIdentity sees to that. Whether it is over is told by the clock of this system, which that of a file
/// server should not be far from.
class EZPLATFORM_API ezFileState {
public:
    /// The state of what is not there.
    ezFileState() = default;
    /// Looks at a file, links followed, by one system call. What cannot be looked at is not there.
    explicit ezFileState(const ezCString& aPath);

    /// False for what is not there, or could not be looked at.
    bool IsThere() const { return mfThere; }
    /// True when every change to come would give another state; false for a file that was changed just
    /// before it was looked at. What is not there is settled.
    bool IsSettled() const { return mfSettled; }

    /// A text that two states share only when they are equal: "none" for what is not there, else numbers.
    ezCString ToText() const;
    /// The same, to know what is made of the file by, as in a cache. While the state is not settled it is
    /// another text each time, so that what was made of the file then is not found later.
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
    bool mfSettled = true;
    std::uint64_t mDevice = 0;
    std::uint64_t mInode = 0;
    std::uint64_t mSize = 0;
    Time mModified;
    Time mChanged;
};
