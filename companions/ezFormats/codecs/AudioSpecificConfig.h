#pragma once

#include <cstddef>
#include <cstdint>

/// How a decoder of MPEG-4 audio is set up (ISO/IEC 14496-3, 1.6.2.1).
struct AudioSpecificConfig {
    std::uint32_t mObjectType = 0;   ///< AOT, of the core where there is SBR
    std::uint32_t mSamplingRate = 0; ///< Hz, of what is heard
    std::uint32_t mChannels = 0;     ///< of what is heard; 0: told within the frames
    bool mfSBR = false;              ///< spectral band replication is announced
    bool mfPS = false;               ///< so is parametric stereo

    /// The codec's name for a record: "AAC" for low complexity, "HE-AAC", "HE-AACv2" and so on; null for one
    /// without a name.
    const char* GetCodecName() const;
};

/// False for bytes that do not tell object type, rate and channels.
bool AudioSpecificConfig_Read(const unsigned char* aBytes, std::size_t aSize, AudioSpecificConfig& aConfig);
