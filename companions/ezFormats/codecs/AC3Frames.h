#pragma once

#include "ezFormats/frames/FrameReader.h"

/// Frames of AC-3 and E-AC-3 (ETSI TS 102 366), in either order of their bytes. Dependent substreams, and all
/// independent ones but the first, are parts of the frame of the first.
class AC3Frames : public FrameReader {
public:
    AC3Frames();

    bool Read(const unsigned char* aBytes, CodedFrame* aFrame) const override;
    bool ReadNext(const unsigned char* aBytes, const CodedFrame& aBefore, CodedFrame* aFrame) const override;
    void TakePart(const CodedFrame& aPart, CodedFrame* aFrame) const override;

    /// Whether a frame, or a part of it, is of E-AC-3.
    static bool IsEAC3(const CodedFrame& aFrame);
};
