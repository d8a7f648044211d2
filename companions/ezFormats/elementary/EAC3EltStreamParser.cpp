#include "ezFormats/elementary/EAC3EltStreamParser.h"

#include "ezFormats/codecs/EAC3Header.h"

#include "ezPlatform/media/MediaInfo.h"

EAC3EltStreamParser::EAC3EltStreamParser(ezElementaryStreamInfo* aEltStreamInfo, ezMediaInfo* aMediaInfo)
    : FrameChainEltStreamParser("EAC3", {kEAC3HeaderSize, kEAC3MinFrameSize, kEAC3MaxFrameSize},
                                aEltStreamInfo, aMediaInfo) {}

EAC3EltStreamParser::~EAC3EltStreamParser() = default;

bool EAC3EltStreamParser::ReadHeader(uint32 /*aPosition*/, const unsigned char* aBytes, Header& aHeader) {
    ezEAC3Header header = {};
    if (!ezEAC3Header_Read(aBytes, header)) {
        return false;
    }
    aHeader.mDigest = ezEAC3Header_Fields(aBytes);
    aHeader.mFrameSize = header.mFrameSize;
    return true;
}

bool EAC3EltStreamParser::IsSameStream(uint32 aFirst, uint32 aSecond) const {
    return ezEAC3Header_IsSameStream(aFirst, aSecond);
}

void EAC3EltStreamParser::Fill(ezMediaInfo& anInfo, uint32 /*aPosition*/, uint32 aFirst,
                               uint32 aSecond) const {
    ezEAC3Header first = {};
    ezEAC3Header second = {};
    if (!ezEAC3Header_ReadFields(aFirst, first) || !ezEAC3Header_ReadFields(aSecond, second)) {
        return;
    }
    const ezEAC3Header& header = first.mfMain ? first : second;
    anInfo.Set(kezInfo_AudioTrackCount, 1, true);
    anInfo.Set(kezInfo_AudioCodec, "EAC3", true);
    anInfo.Set(kezInfo_AudioSamplingRate, header.mSamplingRate, true);
    anInfo.Set(kezInfo_AudioChannelCount, header.mChannels, true);
    if (first.mfMain && second.mfMain) {
        anInfo.Set(kezInfo_AudioBitRate, 8 * header.mFrameSize * header.mSamplingRate / header.mSampleCount,
                   true);
    }
}
