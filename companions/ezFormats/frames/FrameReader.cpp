#include "ezFormats/frames/FrameReader.h"

FrameReader::~FrameReader() = default;

bool FrameReader::ReadNext(const unsigned char* aBytes, const CodedFrame& aBefore, CodedFrame* aFrame) const {
    return Read(aBytes, aFrame) && aFrame->mKind == aBefore.mKind;
}

void FrameReader::TakePart(const CodedFrame& /*aPart*/, CodedFrame* /*aFrame*/) const {}
