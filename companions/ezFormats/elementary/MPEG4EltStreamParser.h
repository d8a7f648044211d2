#pragma once

#include "ezFormats/elementary/StartCodeEltStreamParser.h"

/// MPEG-4 video (ISO/IEC 14496-2).
///
/// Of its record: kezInfo_HasVideoTrack 1, kezInfo_VideoCodec "MPEG4", kezInfo_PictureWidth,
/// kezInfo_PictureHeight, and kezInfo_VideoBitRate kezMediaInfo_VariableRate: no rate that is stated is a
/// constant one. The code of an object, a layer of rectangular pictures right after it and a picture, with
/// nothing but user data and a group's header between, make a stream.
class EZFORMATS_API MPEG4EltStreamParser : public StartCodeEltStreamParser {
public:
    /// Both are owned from now on and may be null.
    explicit MPEG4EltStreamParser(ezElementaryStreamInfo* aEltStreamInfo = nullptr,
                                  ezMediaInfo* aMediaInfo = nullptr);
    ~MPEG4EltStreamParser() override;

protected:
    void Restart() override;
    bool BeginUnit(uint8 aCode, Keep& aKeep) override;
    void EndUnit(const Unit& aUnit) override;
    uint32 LeastBytes(uint8 aCode, uint32 aSize) const override;
    void Fill(ezMediaInfo& anInfo) const override;
    uint32 CountRefused() const override;

private:
    struct Found;

    std::unique_ptr<Found> mFound;
};
