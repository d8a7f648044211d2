#pragma once

#include "ezFormats/elementary/FrameChainEltStreamParser.h"

/// AC-3, at full, half and quarter sampling rates; not E-AC-3, which has a parser and headers of its own.
///
/// Of its record: kezInfo_AudioTrackCount 1, kezInfo_AudioCodec "AC3", kezInfo_AudioSamplingRate,
/// kezInfo_AudioChannelCount (LFE counts) and kezInfo_AudioBitRate.
class EZFORMATS_API AC3EltStreamParser : public FrameChainEltStreamParser {
public:
    /// Both are owned from now on and may be null.
    explicit AC3EltStreamParser(ezElementaryStreamInfo* aEltStreamInfo = nullptr,
                                ezMediaInfo* aMediaInfo = nullptr);
    ~AC3EltStreamParser() override;

protected:
    bool ReadHeader(uint32 aPosition, const unsigned char* aBytes, Header& aHeader) override;
    bool IsSameStream(uint32 aFirst, uint32 aSecond) const override;
    void Fill(ezMediaInfo& anInfo, uint32 aPosition, uint32 aFirst, uint32 aSecond) const override;
};
