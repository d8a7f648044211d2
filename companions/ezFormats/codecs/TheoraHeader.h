#pragma once

#include "ezFormats/codecs/VideoFacts.h"

#include <cstddef>
#include <cstdint>
#include <optional>

/// How a Theora stream counts its pictures, and how long one lasts.
struct TheoraClock {
    /// @name A picture lasts mRateDivisor / mRate of a second; 0, either, where that is not known
    /// @{
    std::uint32_t mRate = 0;
    std::uint32_t mRateDivisor = 0;
    /// @}

    unsigned mKeyShift = 0;  ///< bits of a granule position that count from the last key picture
    bool mfFromZero = false; ///< the first picture has the granule position 0, as up to version 3.2.0

    /// Pictures up to the end of that of a granule position (Theora I, A.2.3), which is below 2^63.
    std::uint64_t CountPictures(std::uint64_t aGranule) const;
};

/// Bytes of the identification header of a Theora stream.
inline constexpr std::size_t kTheora_HeaderSize = 42;

/// What the identification header of a Theora stream tells (Theora I, 6.2).
struct TheoraHeader {
    VideoFacts mVideo; ///< an estimated rate is the nominal one, at which its encoder aimed
    TheoraClock mClock;
};

/// Reads it, from its first byte on. None where it is no such header, or one of a version that decoders of
/// this format refuse.
std::optional<TheoraHeader> TheoraHeader_Read(const unsigned char* aBytes, std::size_t aSize);

/// The same from what sets a decoder up in containers other than Ogg, which hold all three headers: laced as
/// Xiph does (RFC 9559, 10.3.2), each after its size in 16 bits, or the first one alone.
std::optional<VideoFacts> TheoraVideo_ReadConfig(const unsigned char* aBytes, std::size_t aSize);
