#pragma once

#include "ezFormats/frames/FrameReader.h"

/// Frames of AAC that have a header each (ISO/IEC 14496-3, annex 1.A).
class ADTSFrames : public FrameReader {
public:
    ADTSFrames();

    bool Read(const unsigned char* aBytes, CodedFrame* aFrame) const override;

    /// The codec's name for a record, by one of the four object types that a header can say.
    static const char* CodecOf(const CodedFrame& aFrame);
};
