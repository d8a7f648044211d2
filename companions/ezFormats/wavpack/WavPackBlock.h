#pragma once

#include "ezBytes/ByteReader.h"

#include <cstdint>

/// The header that every block of WavPack, version 4 and 5, begins with. A block has some samples of one or
/// two channels; of more channels, the blocks of the same samples are a group.
struct WavPackHeader {
    std::uint64_t mSize = 0;    ///< bytes of the block, its header included
    std::uint64_t mTotal = 0;   ///< samples of the file; 0: not stated
    std::uint64_t mIndex = 0;   ///< samples before it
    std::uint32_t mSamples = 0; ///< 0: it holds something else, such as what a WAV began with
    std::uint32_t mFlags = 0;

    std::uint32_t GetChannels() const { return (mFlags & 4) != 0 ? 1 : 2; }
    /// Bits of a sample, less those of which all are 0. Those of DSD are packed by eight.
    std::uint32_t GetBits() const;
    /// Hertz; 0: a sub-block states it.
    std::uint32_t GetSamplingRate() const;
    bool IsLastOfGroup() const { return (mFlags & 0x1000) != 0; }
    bool IsDSD() const { return (mFlags & 0x80000000) != 0; }
};

inline constexpr std::uint32_t kWavPackHeader_Size = 32;

/// Reads it. False where none stands there: of no known version, or of a size that no block has.
bool ReadWavPackHeader(ByteReader& aReader, WavPackHeader* aHeader);

/// What the sub-blocks of a block state before its sound; 0 where none does.
struct WavPackSubBlocks {
    std::uint32_t mSamplingRate = 0; ///< Hz
    std::uint32_t mChannels = 0;     ///< of the whole group
    bool mfShift = false;            ///< the next is stated
    std::uint32_t mShift = 0;        ///< of DSD: the sampling rate is to be doubled so many times
    bool mfCorrections = false;      ///< it has no samples, but what goes with those of another file
};

/// Reads them; aBlock is at the first sub-block and ends with the block, or before where that was cut.
WavPackSubBlocks ReadWavPackSubBlocks(ByteReader aBlock);
