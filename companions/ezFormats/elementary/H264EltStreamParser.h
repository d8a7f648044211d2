#pragma once

#include "ezFormats/elementary/StartCodeEltStreamParser.h"

/// H.264 as a byte stream (ITU-T H.264, annex B).
///
/// Of its record: kezInfo_HasVideoTrack 1, kezInfo_VideoCodec "H264", kezInfo_PictureWidth and
/// kezInfo_PictureHeight after cropping, and kezInfo_VideoBitRate: what its HRD parameters state for a
/// constant rate, else kezMediaInfo_VariableRate, and then kezInfo_VideoMaxBitRate where it states the
/// highest rate. A sequence parameter set, a picture parameter set that refers to it and a slice that refers
/// to that make a stream.
class EZFORMATS_API H264EltStreamParser : public StartCodeEltStreamParser {
public:
    /// Both are owned from now on and may be null.
    explicit H264EltStreamParser(ezElementaryStreamInfo* aEltStreamInfo = nullptr,
                                 ezMediaInfo* aMediaInfo = nullptr);
    ~H264EltStreamParser() override;

protected:
    void Restart() override;
    bool BeginUnit(uint8 aCode, Keep& aKeep) override;
    bool GrowUnit(const Unit& aUnit, Keep& aKeep) override;
    void EndUnit(const Unit& aUnit) override;
    uint32 LeastBytes(uint8 aCode, uint32 aSize) const override;
    void Fill(ezMediaInfo& anInfo) const override;
    uint32 CountRefused() const override;

private:
    struct Found;

    bool TakeSPS(const Unit& aUnit);
    bool TakePPS(const Unit& aUnit);

    std::unique_ptr<Found> mFound;
};
