#pragma once

#include "ezFormats/elementary/FrameChainEltStreamParser.h"

/// AAC in ADTS frames, of MPEG-2 and MPEG-4.
///
/// Of its record: kezInfo_AudioTrackCount 1, kezInfo_AudioCodec "AAC", kezInfo_AudioSamplingRate (of the
/// core, where there is SBR), kezInfo_AudioChannelCount unless it is told within the frames
/// only, and kezInfo_AudioBitRate kezMediaInfo_VariableRate: the headers state no rate.
class EZFORMATS_API ADTSEltStreamParser : public FrameChainEltStreamParser {
public:
    /// Both are owned from now on and may be null.
    explicit ADTSEltStreamParser(ezElementaryStreamInfo* aEltStreamInfo = nullptr,
                                 ezMediaInfo* aMediaInfo = nullptr);
    ~ADTSEltStreamParser() override;

protected:
    bool ReadHeader(uint32 aPosition, const unsigned char* aBytes, Header& aHeader) override;
    bool IsSameStream(uint32 aFirst, uint32 aSecond) const override;
    void Fill(ezMediaInfo& anInfo, uint32 aPosition, uint32 aFirst, uint32 aSecond) const override;
};
