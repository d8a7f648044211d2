#pragma once

#include "ezFormats/codecs/AudioFacts.h"

#include "ezBytes/ByteReader.h"

#include "ezPlatform/text/CString.h"

#include <cstdint>

/// How the sound of a file is coded, as WAVEFORMATEX tells it (RFC 2361; RIFF, "fmt " chunk): in WAV, AVI,
/// ASF and Matroska. Numbers are 0 where it does not.
struct WaveFormat {
    enum class Rate {
        Plain,    ///< each sample takes as many bytes as all others
        Constant, ///< blocks of one size and one length
        Varying,  ///< or not known to be constant
    };

    std::uint32_t mTag = 0; ///< the format tag; of the extensible form that of its GUID
    ezCString mCodec;       ///< as kezInfo_AudioCodec names it
    Rate mRate = Rate::Varying;
    std::uint32_t mChannels = 0;
    std::uint32_t mSamplingRate = 0;  ///< Hz
    std::uint32_t mAverageBytes = 0;  ///< a second
    std::uint32_t mBlockSize = 0;     ///< bytes: of a block, or of one sample of all channels
    std::uint32_t mBlockSamples = 0;  ///< of a channel in a block; 1 of plain samples
    std::uint32_t mBitsPerSample = 0; ///< those that count; of plain samples, WMA Pro and lossless

    /// The codec and what is heard; what the stated rate is worth differs from container to container.
    AudioFacts GetFacts() const;
};

/// Format tags that others decide by.
inline constexpr std::uint32_t kWaveTag_PCM = 1;
inline constexpr std::uint32_t kWaveTag_Float = 3;
inline constexpr std::uint32_t kWaveTag_MPEG = 0x50;
inline constexpr std::uint32_t kWaveTag_MP3 = 0x55;
inline constexpr std::uint32_t kWaveTag_WMAPro = 0x162;
inline constexpr std::uint32_t kWaveTag_WMALossless = 0x163;

/// Reads it; what is missing at its end is not stated. False for what is shorter than any.
/// @param afBig  its numbers stand the most significant byte first, as those of RIFX do
bool ReadWaveFormat(ByteReader aReader, bool afBig, WaveFormat* aFormat);
