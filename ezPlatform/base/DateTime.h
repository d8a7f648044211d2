#pragma once

#include <cstdint>

/// A point in time: whole seconds and nanoseconds since 1970-01-01 00:00:00 UTC, or not set (the default).
class ezDateTime {
public:
    ezDateTime() = default;

    /// A time that is set; neither number is checked.
    /// @param aSeconds      since the epoch, negative before it
    /// @param aNanoseconds  after aSeconds, 0 to 999999999
    ezDateTime(std::int64_t aSeconds, std::int32_t aNanoseconds)
        : mSeconds(aSeconds), mNanoseconds(aNanoseconds), mfSet(true) {}

    /// True for a point in time, the epoch included; false for an object made without one.
    bool IsSet() const { return mfSet; }
    /// Seconds since the epoch, 0 when not set.
    std::int64_t GetUnixTime() const { return mSeconds; }
    /// 0 to 999999999.
    std::int32_t GetNanoseconds() const { return mNanoseconds; }

    /// Equal when both are the same point in time to the nanosecond, or neither is set. Not set and the epoch
    /// differ.
    /// @{
    friend bool operator==(const ezDateTime& aLeft, const ezDateTime& aRight) {
        return aLeft.mfSet == aRight.mfSet && aLeft.mSeconds == aRight.mSeconds &&
               aLeft.mNanoseconds == aRight.mNanoseconds;
    }
    friend bool operator!=(const ezDateTime& aLeft, const ezDateTime& aRight) { return !(aLeft == aRight); }
    /// @}

private:
    std::int64_t mSeconds = 0;
    std::int32_t mNanoseconds = 0;
    bool mfSet = false;
};
