#pragma once

#include "ezBytes/ByteReader.h"

#include <cstdint>

/// What the first block of a FLAC stream tells (RFC 9639, 8.2). Numbers are 0 where it does not.
struct FLACStreamInfo {
    std::uint32_t mSamplingRate = 0; ///< Hz
    std::uint32_t mChannels = 0;
    std::uint32_t mBitsPerSample = 0;
    std::uint32_t mMinBlockSize = 0; ///< samples; of all blocks but the last
    std::uint32_t mMaxBlockSize = 0;
    std::uint64_t mSamples = 0; ///< of a channel
};

/// Reads the block and its header. One that is cut, or is another block, tells nothing. The sampling rate
/// may be left to the frames, as 0, and so are bits that no sample has.
FLACStreamInfo ReadFLACStreamInfo(ByteReader aReader);
