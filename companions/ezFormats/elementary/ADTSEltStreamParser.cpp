#include "ezFormats/elementary/ADTSEltStreamParser.h"

#include "ezFormats/codecs/ADTSHeader.h"

#include "ezPlatform/media/MediaInfo.h"

ADTSEltStreamParser::ADTSEltStreamParser(ezElementaryStreamInfo* aEltStreamInfo, ezMediaInfo* aMediaInfo)
    : FrameChainEltStreamParser("ADTS", {kADTSHeaderSize, kADTSMinFrameSize, kADTSMaxFrameSize},
                                aEltStreamInfo, aMediaInfo) {}

ADTSEltStreamParser::~ADTSEltStreamParser() = default;

bool ADTSEltStreamParser::ReadHeader(uint32 /*aPosition*/, const unsigned char* aBytes, Header& aHeader) {
    ezADTSHeader header;
    if (!ezADTSHeader_Read(aBytes, header)) {
        return false;
    }
    aHeader.mDigest = header.mFixed;
    aHeader.mFrameSize = header.mFrameSize;
    return true;
}

bool ADTSEltStreamParser::IsSameStream(uint32 aFirst, uint32 aSecond) const {
    return aFirst == aSecond;
}

void ADTSEltStreamParser::Fill(ezMediaInfo& anInfo, uint32 /*aPosition*/, uint32 aFirst,
                               uint32 /*aSecond*/) const {
    ezADTSHeader header;
    if (!ezADTSHeader_ReadFixed(aFirst, header)) {
        return;
    }
    anInfo.Set(kezInfo_AudioTrackCount, 1, true);
    anInfo.Set(kezInfo_AudioCodec, "AAC", true);
    anInfo.Set(kezInfo_AudioSamplingRate, header.mSamplingRate, true);
    anInfo.Set(kezInfo_AudioBitRate, kezMediaInfo_VariableRate, true);
    if (header.mChannels != 0) {
        anInfo.Set(kezInfo_AudioChannelCount, header.mChannels, true);
    }
}
