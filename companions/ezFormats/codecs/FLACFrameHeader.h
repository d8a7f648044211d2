#pragma once

#include "ezBytes/ByteReader.h"

#include "ezFormats/codecs/FLACStreamInfo.h"

#include <cstdint>

/// What the header of a FLAC frame tells of its place in the stream (RFC 9639, 9.1).
struct FLACFrameHeader {
    std::uint64_t mFirstSample = 0;  ///< of a channel, counted from the start of the stream
    std::uint32_t mBlockSize = 0;    ///< samples
    std::uint32_t mSamplingRate = 0; ///< Hz; here and below 0 where the stream's own counts
    std::uint32_t mChannels = 0;
    std::uint32_t mBitsPerSample = 0;

    std::uint64_t GetEnd() const { return mFirstSample + mBlockSize; }
};

/// Reads a header where the reader stands. False for what is not one: sync code, reserved values, the check
/// sum, or channels, bits and sampling rate that are not the stream's, where the stream states them.
bool ReadFLACFrameHeader(ByteReader aReader, const FLACStreamInfo& aStream, FLACFrameHeader* aHeader);
