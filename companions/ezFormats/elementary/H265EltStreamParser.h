#pragma once

#include "ezFormats/elementary/StartCodeEltStreamParser.h"

/// H.265 as a byte stream (ITU-T H.265, annex B).
///
/// Of its record: kezInfo_HasVideoTrack 1, kezInfo_VideoCodec "H265", kezInfo_PictureWidth and
/// kezInfo_PictureHeight after cropping, of a frame where pictures are fields, and kezInfo_VideoBitRate: what
/// its HRD parameters state for a constant rate, else kezMediaInfo_VariableRate, and then
/// kezInfo_VideoMaxBitRate where it states the highest rate. A video parameter set, a sequence and a picture
/// parameter set that refer each to the one before, and a slice that refers to the last make a stream. Layers
/// beside the base are passed over.
class EZFORMATS_API H265EltStreamParser : public StartCodeEltStreamParser {
public:
    /// Both are owned from now on and may be null.
    explicit H265EltStreamParser(ezElementaryStreamInfo* aEltStreamInfo = nullptr,
                                 ezMediaInfo* aMediaInfo = nullptr);
    ~H265EltStreamParser() override;

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

    std::unique_ptr<Found> mFound;
};
