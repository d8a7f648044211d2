#pragma once

#include <array>
#include <cstdint>

/// Bytes of an AC-3 frame up to the bit lfeon.
inline constexpr std::uint32_t kAC3HeaderSize = 7;

inline constexpr std::uint32_t kAC3MinFrameSize = 128;  ///< 32 kbit/s at 48 kHz
inline constexpr std::uint32_t kAC3MaxFrameSize = 3840; ///< 640 kbit/s at 32 kHz

/// Hz by fscod (ETSI TS 102 366, 4.4.1); a further code is reserved.
inline constexpr std::array<std::uint32_t, 3> kAC3SamplingRates = {48000, 44100, 32000};

/// Full bandwidth channels by acmod (4.4.2); mode 0 is dual mono, two programmes of one channel.
inline constexpr std::array<std::uint32_t, 8> kAC3Channels = {2, 1, 2, 3, 3, 4, 4, 5};

/// What syncinfo and bsi of an AC-3 frame tell (ETSI TS 102 366, 4.3.1 and 4.3.2; ATSC A/52, 5.3.1
/// and 5.3.2).
struct ezAC3Header {
    std::uint32_t mSamplingRate; ///< Hz
    std::uint32_t mBitRate;      ///< bits a second
    std::uint32_t mChannels;     ///< the LFE channel included
    std::uint32_t mFrameSize;    ///< bytes
    std::uint32_t mSame;         ///< what is the same in every header of a stream
};

/// Takes the last three of a header's bytes apart, after syncword and crc1, as one number. False for bytes
/// that are not a header.
bool ezAC3Header_ReadFields(std::uint32_t aFields, ezAC3Header& aHeader);

/// Takes the kAC3HeaderSize bytes of a header apart. False for bytes that are not one.
bool ezAC3Header_Read(const unsigned char* aBytes, ezAC3Header& aHeader);

/// The last three of a header's bytes as one number.
inline std::uint32_t ezAC3Header_Fields(const unsigned char* aBytes) {
    return std::uint32_t{aBytes[4]} << 16 | std::uint32_t{aBytes[5]} << 8 | aBytes[6];
}
