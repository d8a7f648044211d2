#pragma once

#include "ezFormats/elementary/StartCodeEltStreamParser.h"

/// MPEG-1 and MPEG-2 video.
///
/// Of its record: kezInfo_HasVideoTrack 1, kezInfo_VideoCodec "MPEG1" or "MPEG2", kezInfo_PictureWidth,
/// kezInfo_PictureHeight, and kezInfo_VideoBitRate as the sequence header states it. Where the stream says
/// that its rate varies that is kezMediaInfo_VariableRate, and what MPEG-2 states then is
/// kezInfo_VideoMaxBitRate. A sequence header, a picture header and the first slice make a stream, in legal
/// order.
class EZFORMATS_API MPEGVideoEltStreamParser : public StartCodeEltStreamParser {
public:
    /// Both are owned from now on and may be null.
    explicit MPEGVideoEltStreamParser(ezElementaryStreamInfo* aEltStreamInfo = nullptr,
                                      ezMediaInfo* aMediaInfo = nullptr);
    ~MPEGVideoEltStreamParser() override;

protected:
    void Restart() override;
    bool BeginUnit(uint8 aCode, Keep& aKeep) override;
    void EndUnit(const Unit& aUnit) override;
    uint32 LeastBytes(uint8 aCode, uint32 aSize) const override;
    void Fill(ezMediaInfo& anInfo) const override;
    uint32 CountRefused() const override;

private:
    struct Found;

    bool IsFirstSlice(uint8 aCode) const;

    std::unique_ptr<Found> mFound;
};
