#include "ezFormats/elementary/VC1EltStreamParser.h"

#include "ezFormats/codecs/VC1Headers.h"
#include "ezFormats/elementary/CodedVideoRecord.h"

#include <algorithm>

namespace {

constexpr uint32 kCodeSize = 4;

/// What was found last; each may begin only where the one before it is whole.
enum Stage : int {
    kNone,
    kSequenceReading,
    kSequence,
    kEntryPointReading,
    kEntryPoint,
};

/// A unit that takes a stream further: the stage that it must find, and the one that it leads to.
struct Step {
    uint8 mCode;
    Stage mAfter;
    Stage mTo;
};
constexpr Step kSteps[] = {
    {kVC1_SequenceUserData, kSequence, kSequence},
    {kVC1_EntryPoint, kSequence, kEntryPointReading},
    {kVC1_EntryPointUserData, kEntryPoint, kEntryPoint},
};

} // namespace

struct VC1EltStreamParser::Found {
    Stage mStage = kNone;
    ezVC1Sequence mSequence;
    uint32 mRefusedCount = 0;
};

VC1EltStreamParser::VC1EltStreamParser(ezElementaryStreamInfo* aEltStreamInfo, ezMediaInfo* aMediaInfo)
    : StartCodeEltStreamParser("VC1", kVC1_MaxHeaderSize, aEltStreamInfo, aMediaInfo),
      mFound(std::make_unique<Found>()) {}

VC1EltStreamParser::~VC1EltStreamParser() = default;

void VC1EltStreamParser::Restart() {
    *mFound = Found();
}

uint32 VC1EltStreamParser::CountRefused() const {
    return mFound->mRefusedCount;
}

bool VC1EltStreamParser::BeginUnit(uint8 aCode, Keep& aKeep) {
    const Stage stage = mFound->mStage;
    if (aCode == kVC1_Frame && stage == kEntryPoint) {
        return true;
    }
    const auto* const step = std::find_if(std::begin(kSteps), std::end(kSteps), [=](const Step& aStep) {
        return aStep.mCode == aCode && aStep.mAfter == stage;
    });
    mFound->mStage = aCode == kVC1_Sequence     ? kSequenceReading // it may begin anew at any time
                     : step != std::end(kSteps) ? step->mTo
                                                : kNone;
    const bool fHeader = mFound->mStage == kSequenceReading || mFound->mStage == kEntryPointReading;
    aKeep = fHeader ? kBytesOfNAL : kNothing; // as NAL units are, these are escaped
    return false;
}

void VC1EltStreamParser::EndUnit(const Unit& aUnit) {
    const bool fSequence = mFound->mStage == kSequenceReading;
    const bool fLegal =
        aUnit.mfWhole && (fSequence ? ezVC1Sequence_Read(aUnit.mBytes, aUnit.mSize, mFound->mSequence)
                                    : ezVC1EntryPoint_Read(aUnit.mBytes, aUnit.mSize, mFound->mSequence));
    mFound->mStage = !fLegal ? kNone : fSequence ? kSequence : kEntryPoint;
    mFound->mRefusedCount += fLegal ? 0 : 1;
}

uint32 VC1EltStreamParser::LeastBytes(uint8 /*aCode*/, uint32 aSize) const {
    constexpr uint32 kFrame = kCodeSize;
    constexpr uint32 kEntryPointAndFrame = kCodeSize + kVC1_MinEntryPointSize + kFrame;
    switch (mFound->mStage) {
    case kEntryPoint:
        return kFrame;
    case kEntryPointReading:
        return kVC1_MinEntryPointSize - std::min(kVC1_MinEntryPointSize, aSize) + kFrame;
    case kSequence:
        return kEntryPointAndFrame;
    case kSequenceReading:
        return kVC1_MinSequenceSize - std::min(kVC1_MinSequenceSize, aSize) + kEntryPointAndFrame;
    default:
        return kCodeSize + kVC1_MinSequenceSize + kEntryPointAndFrame;
    }
}

void VC1EltStreamParser::Fill(ezMediaInfo& anInfo) const {
    CodedVideo_Store({"VC1", mFound->mSequence.mWidth, mFound->mSequence.mHeight, 0, false}, anInfo);
}
