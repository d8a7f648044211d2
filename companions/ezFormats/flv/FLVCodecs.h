#pragma once

#include "ezFormats/codecs/AudioFacts.h"
#include "ezFormats/codecs/VideoFacts.h"

#include <cstdint>
#include <vector>

/// What tells of the codec of a track: by the first tags that hold something of it.
struct FLVTrack {
    bool mfThere = false;
    bool mfEncrypted = false;
    std::uint32_t mCodec = 0; ///< as FLVMedia has it
    std::uint8_t mFirst = 0;  ///< the first byte of its first tag
    std::vector<unsigned char> mConfig;
    std::vector<unsigned char> mFrame; ///< the start of the first one
    bool mfFrame = false;              ///< one was met
};

/// All that is told of a track, by what its tags are marked with and by the codec's own headers. Of what is
/// encrypted by its marks alone.
/// @{
VideoFacts FLVCodec_ReadVideo(const FLVTrack& aTrack);
AudioFacts FLVCodec_ReadSound(const FLVTrack& aTrack);
/// @}
