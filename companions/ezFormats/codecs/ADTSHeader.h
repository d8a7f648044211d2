#pragma once

#include <cstdint>

/// Bytes of an ADTS frame header, without crc_check.
inline constexpr std::uint32_t kADTSHeaderSize = 7;

/// A header and one byte: less is not a frame.
inline constexpr std::uint32_t kADTSMinFrameSize = kADTSHeaderSize + 1;

/// The length has 13 bits.
inline constexpr std::uint32_t kADTSMaxFrameSize = 8191;

/// What adts_fixed_header and adts_variable_header of a frame tell (ISO/IEC 13818-7, 6.2; ISO/IEC 14496-3,
/// annex 1.A). A bit rate is not among it.
struct ezADTSHeader {
    std::uint32_t mSamplingRate; ///< Hz, of the core where there is SBR
    std::uint32_t mChannels;     ///< 0: a program_config_element in the frame tells
    std::uint32_t mFrameSize;    ///< bytes, header included
    std::uint32_t mSampleCount;  ///< of a channel, of the core; one to four blocks of 1024
    std::uint32_t mFixed;        ///< the 28 bits of adts_fixed_header, the same all through a stream
};

/// Takes the kADTSHeaderSize bytes of a header apart. False for bytes that are not one.
bool ezADTSHeader_Read(const unsigned char* aBytes, ezADTSHeader& aHeader);

/// The facts that the fixed part alone tells; the size of the frame stays 0, and so do its samples.
bool ezADTSHeader_ReadFixed(std::uint32_t aFixed, ezADTSHeader& aHeader);
