#pragma once

#include <cstddef>
#include <cstdint>

/// How a decoder of MPEG-4 audio is set up (ISO/IEC 14496-3, 1.6).
struct AudioSpecificConfig {
    std::uint32_t mObjectType = 0;   ///< of the core, where a part of the band is coded apart
    std::uint32_t mSamplingRate = 0; ///< Hz, of what is heard
    std::uint32_t mChannels = 0;     ///< what is heard; 0: told within the frames
    bool mfBandReplicated = false;   ///< SBR is announced
    bool mfParametricStereo = false; ///< so is PS

    /// The codec's name for a record: "AAC" for low complexity, "HE-AAC", "HE-AACv2" and so on; null for one
    /// without a name.
    const char* GetCodecName() const;
};

/// False for bytes that do not tell object type, rate and channels.
bool AudioSpecificConfig_Read(const unsigned char* aBytes, std::size_t aSize, AudioSpecificConfig& aConfig);
