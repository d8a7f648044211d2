#pragma once

#include <cstdint>

/// Bytes of an ADTS frame header, without its check sum.
inline constexpr std::uint32_t kADTSHeaderSize = 7;

/// A header and one byte: less is no frame.
inline constexpr std::uint32_t kADTSMinFrameSize = kADTSHeaderSize + 1;

/// The length has 13 bits.
inline constexpr std::uint32_t kADTSMaxFrameSize = 8191;

/// What the header of an ADTS frame tells (ISO/IEC 13818-7 and 14496-3). A rate is not among it.
struct ezADTSHeader {
    std::uint32_t mSamplingRate; ///< Hz, of the core where a part of the band is coded apart
    std::uint32_t mChannels;     ///< 0: told within the frame
    std::uint32_t mFrameSize;    ///< bytes, header included
    std::uint32_t mFixed;        ///< the 28 bits that are the same in every header of a stream
};

/// Takes the kADTSHeaderSize bytes of a header apart. False for bytes that are none.
bool ezADTSHeader_Read(const unsigned char* aBytes, ezADTSHeader& aHeader);

/// The facts that the fixed part alone tells; the size of the frame stays 0.
bool ezADTSHeader_ReadFixed(std::uint32_t aFixed, ezADTSHeader& aHeader);
