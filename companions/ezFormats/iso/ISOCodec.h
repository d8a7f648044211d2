#pragma once

#include "ezBytes/ByteReader.h"
#include "ezFormats/codecs/AudioFacts.h"
#include "ezFormats/codecs/VideoFacts.h"

#include <cstdint>

/// What the sample entry of a track of sound tells.
struct ISOAudio : AudioFacts {
    /// Constant packets of QuickTime: so many bytes, of all channels, hold so many samples of each. Its
    /// tables then count samples, and state one byte for each.
    std::uint32_t mPacketBytes = 0;
    std::uint32_t mPacketSamples = 0;
    std::uint32_t mFramesPerSample = 1; ///< of AMR
};

/// What the sample entry of a track of pictures tells.
struct ISOVideo : VideoFacts {
    bool mfPictures = false;    ///< each sample is a picture file, as of cover art or a chapter
    bool mfWantsSample = false; ///< the entry leaves open what the first sample may tell
};

/// Reads the first sample entry of "stsd" (ISO/IEC 14496-12, 8.5.2, 12.1.3 and 12.2.3, and QuickTime). What
/// is damaged tells nothing. aBoxBudget counts down the boxes.
/// @param aSample  the start of the first sample, which completes the entry; null: it is not looked at
ISOAudio ReadAudioDescription(ByteReader aTable, std::uint32_t& aBoxBudget);
ISOVideo ReadVideoDescription(ByteReader aTable, std::uint32_t& aBoxBudget,
                              const ByteReader* aSample = nullptr);
