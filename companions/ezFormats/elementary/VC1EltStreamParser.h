#pragma once

#include "ezFormats/elementary/StartCodeEltStreamParser.h"

/// VC-1, the advanced profile as a stream of units (SMPTE ST 421, annex E).
///
/// Of its record: kezInfo_HasVideoTrack 1, kezInfo_VideoCodec "VC1", kezInfo_PictureWidth,
/// kezInfo_PictureHeight, and kezInfo_VideoBitRate kezMediaInfo_VariableRate: the rates that are stated are
/// those at which buffers are filled. A sequence header, an entry point and a frame, with nothing but user
/// data between, make a stream.
class EZFORMATS_API VC1EltStreamParser : public StartCodeEltStreamParser {
public:
    /// Both are owned from now on and may be null.
    explicit VC1EltStreamParser(ezElementaryStreamInfo* aEltStreamInfo = nullptr,
                                ezMediaInfo* aMediaInfo = nullptr);
    ~VC1EltStreamParser() override;

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
