#pragma once

#include <cstdint>

class ezMediaInfo;

/// What the parameter sets of a stream of video tell of it.
struct ezCodedVideo {
    const char* mCodec;
    std::uint32_t mWidth; ///< pixels, after cropping
    std::uint32_t mHeight;
    std::uint64_t mBitRate; ///< bits a second of the HRD parameters; 0: not told
    bool mfConstantRate;    ///< else mBitRate is the highest
};

/// Stores it. A rate that a record cannot hold is left out: its largest value says something else.
void CodedVideo_Store(const ezCodedVideo& aVideo, ezMediaInfo& anInfo);
