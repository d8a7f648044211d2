#pragma once

#include "ezBytes/ByteReader.h"
#include "ezFormats/iso/ISOCodec.h"
#include "ezFormats/iso/ISOSampleEntry.h"

#include <cstdint>
#include <optional>

/// The fixed part of a sample entry of audio, and what its boxes tell.
struct ISOAudioEntry : ISOEntryFacts {
    ISOAudio mFacts;
    bool mfFloat = false;            ///< the samples are no integers
    bool mfConfigured = false;       ///< a box has told rate and channels
    ezCString mBoxName;              ///< of the codec, where a box tells more than the four characters
    std::optional<ByteReader> mWave; ///< QuickTime's box around the decoder's own
};

/// Reads the boxes of a sample entry, or those within "wave".
void ReadAudioBoxes(const ByteReader& aBoxes, std::uint32_t& aBoxBudget, ISOAudioEntry& anEntry);
