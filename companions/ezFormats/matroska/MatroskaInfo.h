#pragma once

#include "ezFormats/matroska/MatroskaWriting.h"

#include "ezBytes/ByteReader.h"

#include "ezPlatform/text/CString.h"

#include <cstdint>

/// What Info says of a segment (RFC 9559, 5.1.2).
struct MatroskaInfo {
    std::uint64_t mScale = 1'000'000; ///< nanoseconds of a tick
    double mTicks = 0;                ///< that the segment lasts; 0: not stated
    ezCString mTitle;
    MatroskaWriting mWriting;

    /// Microseconds of so many ticks; 0, not known, for what is longer than any recording.
    std::uint64_t GetMicroseconds(std::uint64_t aTicks) const;
    /// The same of the stated length.
    std::uint64_t GetStatedMicroseconds() const;
};

/// Reads it.
/// @param aBudget  borrowed, counts down the elements
MatroskaInfo ReadMatroskaInfo(const ByteReader& aContent, std::uint32_t& aBudget);
