#pragma once

#include "ezBytes/ByteReader.h"

#include "ezPlatform/text/CString.h"

#include <cstdint>

/// What the sample entry of a track tells. Numbers are 0 and texts empty where it does not.
struct ISOCodec {
    static constexpr std::uint32_t kNoLevel = UINT32_MAX;

    ezCString mName; ///< as a record has it
    // Audio
    std::uint32_t mSamplingRate = 0; ///< Hz, of what is heard
    std::uint32_t mChannels = 0;
    std::uint32_t mBitsPerSample = 0; ///< of lossless codecs
    /// Constant packets of QuickTime: so many bytes, of all channels, hold so many samples of each. Its
    /// tables then count samples, and state one byte for each.
    std::uint32_t mPacketBytes = 0;
    std::uint32_t mPacketSamples = 0;
    std::uint32_t mFramesPerSample = 1; ///< of AMR
    // Video
    std::uint32_t mWidth = 0;
    std::uint32_t mHeight = 0;
    ezCString mProfile;
    std::uint32_t mLevel = kNoLevel; ///< ten times the codec's
    ezCString mScan;                 ///< "progressive" or "interlaced"
    bool mfPictures = false;         ///< each sample is a picture file, as of cover art or a chapter
    // Both: bits a second, as stated
    std::uint32_t mBitRate = 0; ///< average
    std::uint32_t mMaxBitRate = 0;
};

/// Reads the first sample entry of "stsd" (ISO/IEC 14496-12, 8.5.2, 12.1.3 and 12.2.3, and QuickTime). What
/// is damaged tells nothing. aBoxBudget counts down the boxes.
ISOCodec ReadAudioDescription(ByteReader aTable, std::uint32_t& aBoxBudget);
ISOCodec ReadVideoDescription(ByteReader aTable, std::uint32_t& aBoxBudget);
