#pragma once

#include "ezFormats/frames/FrameReader.h"

/// The frames of a DTS stream (ETSI TS 102 114, 5.2 and 7.1), in any of its four forms: core frames, of which
/// extension substreams are parts; or, where there is no core, the first substream, with the others as its
/// parts. Rate and channels of a core are its own: an extension may have more.
class DTSFrames : public FrameReader {
public:
    DTSFrames();

    bool Read(const unsigned char* aBytes, CodedFrame* aFrame) const override;
    bool ReadNext(const unsigned char* aBytes, const CodedFrame& aBefore, CodedFrame* aFrame) const override;

    /// True when the frame has a core.
    static bool HasCore(const CodedFrame& aFrame);
};
