#include "ezFormats/codecs/ADTSFrames.h"

#include "ezFormats/codecs/ADTSHeader.h"
#include "ezFormats/codecs/AudioSpecificConfig.h"

ADTSFrames::ADTSFrames()
    : FrameReader({kADTSHeaderSize, kADTSMinFrameSize, kADTSMaxFrameSize, 8, 3, false}) {}

bool ADTSFrames::Read(const unsigned char* aBytes, CodedFrame* aFrame) const {
    ezADTSHeader header = {};
    if (!ezADTSHeader_Read(aBytes, header)) {
        return false;
    }
    aFrame->mSize = header.mFrameSize;
    aFrame->mSamples = header.mSampleCount;
    aFrame->mSamplingRate = header.mSamplingRate;
    aFrame->mChannels = header.mChannels;
    aFrame->mKind = header.mFixed;
    return true;
}

/// Each is one more than the profile of a header (ISO/IEC 14496-3, 1.A.3.2).
const char* ADTSFrames::CodecOf(const CodedFrame& aFrame) {
    AudioSpecificConfig config;
    config.mObjectType = static_cast<std::uint32_t>(aFrame.mKind >> 10 & 3U) + 1;
    return config.GetCodecName();
}
