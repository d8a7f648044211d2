#pragma once

#include "ezFormats/codecs/AudioSpecificConfig.h"
#include "ezFormats/frames/FrameReader.h"

#include <cstddef>

/// Bytes of the head of a frame in LOAS.
inline constexpr std::uint32_t kLOASHeadSize = 3;

/// The size of a frame in LOAS (AudioSyncStream, ISO/IEC 14496-3, 1.7.2), its head included, of which
/// kLOASHeadSize bytes are there; 0 for bytes that are none.
std::uint32_t LOASFrameSize(const unsigned char* aBytes);

/// Finds the first frame in a block of which others are there that says how its sound is coded
/// (StreamMuxConfig, 1.7.3.1). False where there is none.
bool ReadLOASConfig(const unsigned char* aBytes, std::size_t aSize, AudioSpecificConfig* aConfig);

/// Frames in LOAS, of which a configuration is known: each of the samples that this one has.
class LOASFrames : public FrameReader {
public:
    explicit LOASFrames(const AudioSpecificConfig& aConfig);

    bool Read(const unsigned char* aBytes, CodedFrame* aFrame) const override;

private:
    const AudioSpecificConfig mConfig;
};
