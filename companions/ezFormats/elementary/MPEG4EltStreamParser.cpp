#include "ezFormats/elementary/MPEG4EltStreamParser.h"

#include "ezFormats/codecs/MPEG4Headers.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/elementary/CodedVideoRecord.h"

#include <algorithm>

namespace {

constexpr uint32 kCodeSize = 4;

/// What was found last.
enum Stage : int {
    kNone,
    kObject,       ///< the code of an object, which has no bytes of its own
    kLayerReading, ///< a layer begins right after it
    kLayer         ///< a legal one; user data and a group may follow
};

} // namespace

struct MPEG4EltStreamParser::Found {
    Stage mStage = kNone;
    ezMPEG4Layer mLayer;
    uint32 mRefusedCount = 0;
};

MPEG4EltStreamParser::MPEG4EltStreamParser(ezElementaryStreamInfo* aEltStreamInfo, ezMediaInfo* aMediaInfo)
    : StartCodeEltStreamParser("MPEG4", kMPEG4_MaxUnitSize, aEltStreamInfo, aMediaInfo),
      mFound(std::make_unique<Found>()) {}

MPEG4EltStreamParser::~MPEG4EltStreamParser() = default;

void MPEG4EltStreamParser::Restart() {
    *mFound = Found();
}

uint32 MPEG4EltStreamParser::CountRefused() const {
    return mFound->mRefusedCount;
}

bool MPEG4EltStreamParser::BeginUnit(uint8 aCode, Keep& aKeep) {
    const Stage stage = mFound->mStage;
    if (aCode == kMPEG4_Plane && stage == kLayer) {
        return true;
    }
    if (aCode <= kMPEG4_LastObject) {
        mFound->mStage = kObject;
        aKeep = kBytes;
    } else if (ezMPEG4Code_IsLayer(aCode) && stage == kObject) {
        mFound->mStage = kLayerReading;
        aKeep = kBytes;
    } else if (stage != kLayer || (aCode != kMPEG4_UserData && aCode != kMPEG4_Group)) {
        mFound->mStage = kNone;
    }
    return false;
}

void MPEG4EltStreamParser::EndUnit(const Unit& aUnit) {
    if (mFound->mStage == kObject) {
        const auto fIsZero = [](unsigned char aByte) { return aByte == 0; };
        const bool fEmpty = aUnit.mfWhole && std::all_of(aUnit.mBytes, aUnit.mBytes + aUnit.mSize, fIsZero);
        mFound->mStage = fEmpty ? kObject : kNone;
        return;
    }
    const bool fLegal =
        ezMPEG4Layer_Read(aUnit.mBytes, aUnit.mSize, mFound->mLayer) && mFound->mLayer.mfLegal;
    mFound->mStage = fLegal ? kLayer : kNone;
    mFound->mRefusedCount += fLegal ? 0 : 1;
}

uint32 MPEG4EltStreamParser::LeastBytes(uint8 /*aCode*/, uint32 aSize) const {
    switch (mFound->mStage) {
    case kLayer:
        return kCodeSize;
    case kLayerReading:
        return kMPEG4_MinLayerSize - std::min(kMPEG4_MinLayerSize, aSize) + kCodeSize;
    case kObject:
        return kCodeSize + kMPEG4_MinLayerSize + kCodeSize;
    default:
        return kCodeSize + kCodeSize + kMPEG4_MinLayerSize + kCodeSize;
    }
}

void MPEG4EltStreamParser::Fill(ezMediaInfo& anInfo) const {
    CodedVideo_Store({"MPEG4", mFound->mLayer.mWidth, mFound->mLayer.mHeight, 0, false}, anInfo);
}
