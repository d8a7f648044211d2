#pragma once

#include "ezFormats/codecs/AudioFacts.h"

#include <cstddef>
#include <cstdint>

/// Bytes of the first DIF sequence of a frame of DV, within which what follows stands.
inline constexpr std::size_t kDVSound_SequenceSize = 12000;

/// The sound within the frames of DV (IEC 61834, SMPTE 314M), of which each track has two channels.
struct DVSound {
    AudioFacts mFacts;             ///< of the first track
    std::uint32_t mTrackCount = 0; ///< 0: there is no sound, or it is not told
};

/// Reads the first DIF sequence of a frame, or as much of it as is there.
DVSound DVSound_Read(const unsigned char* aBytes, std::size_t aSize);
