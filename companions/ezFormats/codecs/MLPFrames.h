#pragma once

#include "ezFormats/frames/FrameReader.h"

/// The access units of a stream of TrueHD or MLP. A stream begins with one that has a major sync, which tells
/// all; those between two such have the sum of their head and directory alone. Frames of AC-3 may stand
/// between access units, for players that know no TrueHD: they are parts of the unit before them.
class MLPFrames : public FrameReader {
public:
    MLPFrames();

    bool Read(const unsigned char* aBytes, CodedFrame* aFrame) const override;
    bool ReadNext(const unsigned char* aBytes, const CodedFrame& aBefore, CodedFrame* aFrame) const override;
};
