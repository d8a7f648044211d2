#include "ezFormats/elementary/MPEGVideoEltStreamParser.h"

#include "ezFormats/codecs/MPEGVideoHeaders.h"
#include "ezFormats/detail/Limits.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>

namespace {

constexpr uint32 kCodeSize = 4;
constexpr uint32 kRowHeight = 16;
constexpr uint32 kMaxPlainHeight = 2800; ///< above, a slice's code is but a part of its row

/// How far the headers have come. Each state but kNone is one in which the headers so far are legal.
enum Stage : int {
    kNone,
    kSequence,     ///< a sequence header
    kSequenceMore, ///< and its extensions or user data
    kGroup,
    kPicture,    ///< a picture header
    kPictureMore ///< and its extensions or user data
};

/// Extensions that may follow the one that makes MPEG-2, by their identifier.
bool IsLaterExtension(Stage aStage, uint32 anID) {
    return aStage == kSequenceMore ? anID == 2 || anID == 5
                                   : anID == 3 || anID == 4 || anID == 7 || anID == 9 || anID == 10;
}

/// Bytes that a unit still lacks.
uint32 Missing(uint32 aSize, uint32 aPresent) {
    return aSize - std::min(aSize, aPresent);
}

} // namespace

struct MPEGVideoEltStreamParser::Found {
    Stage mStage = kNone;
    bool mfMPEG2 = false;
    ezMPEGSequence mSequence;
    ezMPEGPicture mPicture = {};
    uint32 mRefusedCount = 0;

    bool BeginUserData();
    bool EndExtension(const Unit& aUnit);
    bool EndPart(const Unit& aUnit);
};

MPEGVideoEltStreamParser::MPEGVideoEltStreamParser(ezElementaryStreamInfo* aEltStreamInfo,
                                                   ezMediaInfo* aMediaInfo)
    : StartCodeEltStreamParser("MPEGVideo", kMPEGVideo_MaxUnitSize, aEltStreamInfo, aMediaInfo),
      mFound(std::make_unique<Found>()) {}

MPEGVideoEltStreamParser::~MPEGVideoEltStreamParser() = default;

void MPEGVideoEltStreamParser::Restart() {
    *mFound = Found();
}

uint32 MPEGVideoEltStreamParser::CountRefused() const {
    return mFound->mRefusedCount;
}

/// MPEG-2 has its extension right after each header, so user data there makes MPEG-1 of a sequence.
bool MPEGVideoEltStreamParser::Found::BeginUserData() {
    if (mStage == kPicture && mfMPEG2) {
        return false;
    }
    mStage = mStage == kSequence ? kSequenceMore : mStage == kPicture ? kPictureMore : mStage;
    return true;
}

bool MPEGVideoEltStreamParser::IsFirstSlice(uint8 aCode) const {
    const bool fComplete = mFound->mStage == kPictureMore || (mFound->mStage == kPicture && !mFound->mfMPEG2);
    const uint32 height = mFound->mSequence.mHeight;
    return fComplete && (height > kMaxPlainHeight || (uint32{aCode} - 1) * kRowHeight < height);
}

bool MPEGVideoEltStreamParser::BeginUnit(uint8 aCode, Keep& aKeep) {
    const Stage stage = mFound->mStage;
    if (aCode >= kMPEGVideo_FirstSlice && aCode <= kMPEGVideo_LastSlice && IsFirstSlice(aCode)) {
        return true;
    }
    aKeep = kBytes;
    bool fLegal = false;
    switch (aCode) {
    case kMPEGVideo_Sequence: // may begin anew at any time
        mFound->mfMPEG2 = false;
        mFound->mSequence = ezMPEGSequence();
        mFound->mStage = kSequence;
        return false;
    case kMPEGVideo_Extension:
        fLegal = stage != kNone && stage != kGroup;
        break;
    case kMPEGVideo_UserData:
        aKeep = kNothing;
        fLegal = stage != kNone && mFound->BeginUserData();
        break;
    case kMPEGVideo_Group:
        fLegal = stage == kSequence || stage == kSequenceMore;
        mFound->mStage = kGroup;
        break;
    case kMPEGVideo_Picture:
        fLegal = stage == kSequence || stage == kSequenceMore || stage == kGroup;
        mFound->mStage = kPicture;
        break;
    default:
        break;
    }
    if (!fLegal) {
        mFound->mStage = kNone;
        aKeep = kNothing;
    }
    return false;
}

bool MPEGVideoEltStreamParser::Found::EndExtension(const Unit& aUnit) {
    const uint32 identifier = aUnit.mSize != 0 ? aUnit.mBytes[0] >> 4 : 0U;
    if (mStage == kSequence) {
        mStage = kSequenceMore;
        mfMPEG2 = true;
        return ezMPEGSequence_ReadExtension(aUnit.mBytes, aUnit.mSize, mSequence);
    }
    if (mStage == kPicture && mfMPEG2) {
        mStage = kPictureMore;
        return ezMPEGPicture_ReadCodingExtension(aUnit.mBytes, aUnit.mSize, mPicture);
    }
    return mfMPEG2 && IsLaterExtension(mStage, identifier);
}

/// Reads the unit in the stage that its code has led to.
bool MPEGVideoEltStreamParser::Found::EndPart(const Unit& aUnit) {
    switch (aUnit.mCode) {
    case kMPEGVideo_Sequence:
        return ezMPEGSequence_ReadHeader(aUnit.mBytes, aUnit.mSize, mSequence);
    case kMPEGVideo_Group:
        return ezMPEGGroup_Read(aUnit.mBytes, aUnit.mSize);
    case kMPEGVideo_Picture:
        return ezMPEGPicture_ReadHeader(aUnit.mBytes, aUnit.mSize, mfMPEG2, mPicture);
    default:
        return EndExtension(aUnit);
    }
}

void MPEGVideoEltStreamParser::EndUnit(const Unit& aUnit) {
    if (!aUnit.mfWhole || !mFound->EndPart(aUnit)) {
        mFound->mStage = kNone;
        ++mFound->mRefusedCount;
    }
}

uint32 MPEGVideoEltStreamParser::LeastBytes(uint8 aCode, uint32 aSize) const {
    constexpr uint32 kPictureAndSlice = kCodeSize + kMPEGVideo_MinPictureSize + kCodeSize;
    switch (mFound->mStage) {
    case kPictureMore:
        return kCodeSize;
    case kPicture:
        return Missing(kMPEGVideo_MinPictureSize, aCode == kMPEGVideo_Picture ? aSize : UINT32_MAX) +
               kCodeSize;
    case kGroup:
    case kSequenceMore:
        return kPictureAndSlice;
    case kSequence:
        return Missing(kMPEGVideo_MinSequenceSize, aSize) + kPictureAndSlice;
    default:
        return kCodeSize + kMPEGVideo_MinSequenceSize + kPictureAndSlice;
    }
}

void MPEGVideoEltStreamParser::Fill(ezMediaInfo& anInfo) const {
    const ezMPEGSequence& sequence = mFound->mSequence;
    // What does not fit is left out: its largest value says something else.
    const bool fFits = sequence.mBitRate < kezMediaInfo_VariableRate;
    const uint32 bitRate = fFits ? static_cast<uint32>(sequence.mBitRate) : 0;
    const bool fMaximum =
        mFound->mfMPEG2 && mFound->mPicture.mfVariableBitRate && !sequence.mfVariableBitRate;
    anInfo.Set(kezInfo_HasVideoTrack, 1, true);
    anInfo.Set(kezInfo_VideoCodec, mFound->mfMPEG2 ? "MPEG2" : "MPEG1", true);
    anInfo.Set(kezInfo_PictureWidth, sequence.mWidth, true);
    anInfo.Set(kezInfo_PictureHeight, sequence.mHeight, true);
    const bool fVariable = fMaximum || sequence.mfVariableBitRate;
    if (fFits || fVariable) {
        anInfo.Set(kezInfo_VideoBitRate, fVariable ? kezMediaInfo_VariableRate : bitRate, true);
    }
    if (fMaximum && fFits) {
        anInfo.Set(kezInfo_VideoMaxBitRate, bitRate, true);
    }
}
