#pragma once

#include "ezPlatform/base/Checked.h"

#include <array>
#include <cstdint>

/// aValue * aFactor / aDivisor, the remainder dropped; 2^64-1 when it does not fit. 0 for a divisor of 0, and
/// for one of 2^63 or more, which no time of a file is.
std::uint64_t MediaNumber_Scale(std::uint64_t aValue, std::uint64_t aFactor, std::uint64_t aDivisor);

/// Microseconds of so many ticks, aTimescale of which are a second. 0, not known, without a timescale and for
/// what is longer than any recording.
std::uint64_t MediaNumber_Microseconds(std::uint64_t aTicks, std::uint32_t aTimescale);

/// Times of several timescales, added up before the remainder is dropped: three times 8 1/3 s are 25 s. Exact
/// for two timescales; those of further ones drop their own remainders. Times without a timescale, and longer
/// ones than any recording, add nothing.
class TimeSum {
public:
    void Add(std::uint64_t aTicks, std::uint32_t aTimescale);
    /// 0, not known, for what is longer than any recording.
    std::uint64_t GetMicroseconds() const;

private:
    struct Part {
        std::uint64_t mTicks = 0;
        std::uint32_t mTimescale = 0; ///< 0: not used yet
    };

    std::array<Part, 2> mParts;
    std::uint64_t mRest = 0; ///< microseconds of further timescales
};

/// Bits a second of so many bytes in so many ticks; 0 when it cannot be told as a number of 32 bits.
std::uint32_t MediaNumber_BitRate(std::uint64_t aBytes, std::uint64_t aTicks, std::uint32_t aTimescale);

/// Pictures in 1000 seconds, rounded; 0 when it cannot be told as a number of 32 bits.
std::uint32_t MediaNumber_FrameRate(std::uint64_t aPictures, std::uint64_t aTicks, std::uint32_t aTimescale);
