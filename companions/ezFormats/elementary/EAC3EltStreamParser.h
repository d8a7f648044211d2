#pragma once

#include "ezFormats/elementary/FrameChainEltStreamParser.h"

/// E-AC-3 (ETSI TS 102 366, annex E).
///
/// Of its record: kezInfo_AudioTrackCount 1, kezInfo_AudioCodec "EAC3", kezInfo_AudioSamplingRate,
/// kezInfo_AudioChannelCount (of the first programme without what dependent substreams add to it; LFE
/// counts), and kezInfo_AudioBitRate where two frames of the first programme follow each
/// other: other substreams have a rate of their own, which a frame does not tell.
class EZFORMATS_API EAC3EltStreamParser : public FrameChainEltStreamParser {
public:
    /// Both are owned from now on and may be null.
    explicit EAC3EltStreamParser(ezElementaryStreamInfo* aEltStreamInfo = nullptr,
                                 ezMediaInfo* aMediaInfo = nullptr);
    ~EAC3EltStreamParser() override;

protected:
    bool ReadHeader(uint32 aPosition, const unsigned char* aBytes, Header& aHeader) override;
    bool IsSameStream(uint32 aFirst, uint32 aSecond) const override;
    void Fill(ezMediaInfo& anInfo, uint32 aPosition, uint32 aFirst, uint32 aSecond) const override;
};
