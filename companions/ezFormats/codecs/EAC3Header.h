#pragma once

#include <cstdint>

/// Bytes of an E-AC-3 frame up to its bsid.
inline constexpr std::uint32_t kEAC3HeaderSize = 6;

inline constexpr std::uint32_t kEAC3MinFrameSize = 16;   ///< less than one block of 32 kbit/s at 48 kHz takes
inline constexpr std::uint32_t kEAC3MaxFrameSize = 4096; ///< 2048 words

/// What syncinfo and bsi of an E-AC-3 frame tell (ETSI TS 102 366, E.1.2.1 and E.1.2.2).
struct ezEAC3Header {
    std::uint32_t mSamplingRate; ///< Hz
    std::uint32_t mSampleCount;  ///< samples of a channel in a frame
    std::uint32_t mChannels;     ///< the LFE channel included
    std::uint32_t mFrameSize;    ///< bytes
    bool mfMain;                 ///< of the first programme, and not an addition to its channels
    bool mfDependent;            ///< an addition to the channels of the programme before it
};

/// Takes the four bytes of a header after its syncword apart, as one number. False for bytes that are no
/// header.
bool ezEAC3Header_ReadFields(std::uint32_t aFields, ezEAC3Header& aHeader);

/// Takes the kEAC3HeaderSize bytes of a header apart. False for bytes that are no header.
bool ezEAC3Header_Read(const unsigned char* aBytes, ezEAC3Header& aHeader);

/// The four bytes of a header after its syncword, as one number.
inline std::uint32_t ezEAC3Header_Fields(const unsigned char* aBytes) {
    return std::uint32_t{aBytes[2]} << 24 | std::uint32_t{aBytes[3]} << 16 | std::uint32_t{aBytes[4]} << 8 |
           aBytes[5];
}

/// Bytes of an E-AC-3 frame up to the chanmap of a dependent substream, if it has one.
inline constexpr std::uint32_t kEAC3MapSize = 12;

/// The places of the channels of a frame of kEAC3MapSize bytes and more, as a chanmap has them (E.1.3.1.8): a
/// bit each, of which some are of two channels. By its chanmap, or by acmod and lfeon.
std::uint32_t ezEAC3Header_Places(const unsigned char* aBytes);
/// Those that acmod and lfeon stand for, of AC-3 as well. Of dual mono there are two.
std::uint32_t ezEAC3Header_PlacesOfMode(std::uint32_t anAcmod, bool afLFE);
/// Those that a chan_loc stands for, which a box of ISO media has instead of a chanmap (F.6).
std::uint32_t ezEAC3Header_PlacesOfLocation(std::uint32_t aChanLoc);
/// The channels of so many places.
std::uint32_t ezEAC3Header_CountChannels(std::uint32_t aPlaces);

/// True when two frames may stand in one stream: other substreams stand between those of the first programme.
bool ezEAC3Header_IsSameStream(std::uint32_t aFirst, std::uint32_t aSecond);
