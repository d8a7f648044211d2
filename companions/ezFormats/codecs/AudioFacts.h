#pragma once

#include "ezPlatform/text/CString.h"

#include <cstdint>

/// What is told of the sound of one track, by its codec and by what holds it. What is 0 or empty is not
/// known.
struct AudioFacts {
    ezCString mCodec;                ///< as kezInfo_AudioCodec names it
    std::uint32_t mSamplingRate = 0; ///< Hz, of what is heard
    std::uint32_t mChannels = 0;
    std::uint32_t mBitsPerSample = 0;

    /// @name Bits a second
    /// @{
    std::uint32_t mBitRate = 0;    ///< a constant one, or the mean of all of it
    std::uint32_t mMaxBitRate = 0; ///< of a varying one
    std::uint32_t mEstimatedBitRate = 0;
    /// @}

    /// Takes what is not told yet from another source of the same sound. Rates go together: those of another
    /// count where none is told here.
    void Complete(const AudioFacts& aFacts);
};
