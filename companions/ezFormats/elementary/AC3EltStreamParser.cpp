#include "ezFormats/elementary/AC3EltStreamParser.h"

#include "ezFormats/codecs/AC3Header.h"

#include "ezPlatform/media/MediaInfo.h"

AC3EltStreamParser::AC3EltStreamParser(ezElementaryStreamInfo* aEltStreamInfo, ezMediaInfo* aMediaInfo)
    : FrameChainEltStreamParser("AC3", {kAC3HeaderSize, kAC3MinFrameSize, kAC3MaxFrameSize}, aEltStreamInfo,
                                aMediaInfo) {}

AC3EltStreamParser::~AC3EltStreamParser() = default;

bool AC3EltStreamParser::ReadHeader(uint32 /*aPosition*/, const unsigned char* aBytes, Header& aHeader) {
    ezAC3Header header;
    if (!ezAC3Header_Read(aBytes, header)) {
        return false;
    }
    aHeader.mDigest = ezAC3Header_Fields(aBytes);
    aHeader.mFrameSize = header.mFrameSize;
    return true;
}

bool AC3EltStreamParser::IsSameStream(uint32 aFirst, uint32 aSecond) const {
    ezAC3Header first;
    ezAC3Header second;
    return ezAC3Header_ReadFields(aFirst, first) && ezAC3Header_ReadFields(aSecond, second) &&
           first.mSame == second.mSame;
}

void AC3EltStreamParser::Fill(ezMediaInfo& anInfo, uint32 /*aPosition*/, uint32 aFirst,
                              uint32 /*aSecond*/) const {
    ezAC3Header header;
    if (!ezAC3Header_ReadFields(aFirst, header)) {
        return;
    }
    anInfo.Set(kezInfo_AudioTrackCount, 1, true);
    anInfo.Set(kezInfo_AudioCodec, "AC3", true);
    anInfo.Set(kezInfo_AudioSamplingRate, header.mSamplingRate, true);
    anInfo.Set(kezInfo_AudioChannelCount, header.mChannels, true);
    anInfo.Set(kezInfo_AudioBitRate, header.mBitRate, true);
}
