#include "ezFormats/adts/ADTSParser.h"

#include "ezFormats/codecs/ADTSHeader.h"
#include "ezFormats/codecs/AudioSpecificConfig.h"
#include "ezFormats/frames/CodedFrames.h"

#include "ezBytes/ByteReader.h"

namespace {

/// The four object types that a header can say, each one more than its profile (ISO/IEC 14496-3, 1.A.3.2).
const char* CodecOf(std::uint64_t aFixed) {
    AudioSpecificConfig config;
    config.mObjectType = static_cast<std::uint32_t>(aFixed >> 10 & 3U) + 1;
    return config.GetCodecName();
}

class ADTSFrames : public FrameReader {
public:
    ADTSFrames() : FrameReader({kADTSHeaderSize, kADTSMinFrameSize, kADTSMaxFrameSize, 8, 3, false}) {}

    bool Read(const unsigned char* aBytes, CodedFrame* aFrame) const override {
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
};

} // namespace

bool ADTSParser::IsAt(ByteReader aBytes) {
    return AreFramesAt(ADTSFrames(), aBytes);
}

bool ADTSParser::ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) {
    FrameFile file;
    if (!ReadFrameFile(aBytes, ADTSFrames(), "ADTS", file)) {
        return false;
    }
    file.mSound.mCodec = CodecOf(file.mFirst.mKind);
    Store(file, anInfo);
    return true;
}
