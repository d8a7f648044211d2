#pragma once

#include "ezFormats/frames/FrameReader.h"

#include <cstddef>
#include <cstdint>

/// The frames of a sound in a block of memory: the first whole one with its parts, and the mean of all that
/// follow it there.
struct BlockFrames {
    CodedFrame mFirst;          ///< mSize is that of the first part alone
    std::uint64_t mFrames = 0;  ///< whole ones from the first on, parts not counted
    std::uint64_t mBytes = 0;   ///< of these, parts included
    std::uint64_t mSamples = 0; ///< of a channel
    bool mfConstant = false;    ///< each states the same rate; or has the same size, where none is stated

    /// Bits a second of these frames; 0 where it cannot be told.
    std::uint32_t GetBitRate() const;
};

/// Finds them: the first is one that another follows, or that ends the block; where there is none, and the
/// block begins with a frame that is cut, that. False where there is none either.
bool ReadBlockFrames(const FrameReader& aReader, const unsigned char* aBytes, std::size_t aSize,
                     BlockFrames* aFrames);
