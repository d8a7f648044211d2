#pragma once

#include <cstddef>
#include <cstdint>

/// What the major sync of TrueHD or of MLP, which it comes from, tells. Numbers are 0 where it does not.
struct ezMLPHeader {
    bool mfTrueHD = false;
    std::uint32_t mSamplingRate = 0;  ///< Hz
    std::uint32_t mChannels = 0;      ///< of the largest presentation
    std::uint32_t mBitsPerSample = 0; ///< of MLP alone: TrueHD does not tell
    std::uint32_t mUnitSamples = 0;   ///< of a channel in an access unit
    std::uint32_t mMaxBitRate = 0;    ///< bits a second
};

/// Bytes from a major sync, the four of its format included, to the highest rate.
inline constexpr std::size_t kMLPSyncSize = 16;

/// Takes the fields of TrueHD's format apart (format_info). False for a reserved rate.
bool ezMLPHeader_ReadTrueHD(std::uint32_t aFormat, ezMLPHeader& aHeader);

/// The highest rate, from the sixteenths of a bit for each sample that it is stated in (peak_data_rate).
std::uint32_t ezMLPHeader_MaxBitRate(std::uint32_t aPeak, std::uint32_t aSamplingRate);

/// Takes the kMLPSyncSize bytes of a major sync apart. False for bytes that are not one.
bool ezMLPHeader_Read(const unsigned char* aBytes, ezMLPHeader& aHeader);
