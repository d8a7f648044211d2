#include "ezFormats/elementary/H264EltStreamParser.h"

#include "ezFormats/codecs/H264Headers.h"
#include "ezFormats/detail/Limits.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <vector>

namespace {

constexpr uint32 kCodeSize = 4;
constexpr uint32 kMinSliceSize = 1; ///< three numbers of a bit each and four bits of frame number
constexpr std::uint16_t kNoSet = 0xFFFF;

constexpr uint8 kForbiddenBit = 0x80;

uint8 KindOf(uint8 aCode) {
    return aCode & 0x1FU;
}

bool IsReference(uint8 aCode) {
    return (aCode & 0x60U) != 0;
}

/// Bytes that a unit still lacks.
uint32 Missing(uint32 aSize, uint32 aPresent) {
    return aSize - std::min(aSize, aPresent);
}

} // namespace

/// The sets of the stream, by their numbers.
struct H264EltStreamParser::Found {
    std::vector<ezH264SequenceSet> mSequenceSets;   ///< those known, at most 32
    std::vector<std::uint16_t> mSequenceOfPicture = ///< sequence set by picture set
        std::vector<std::uint16_t>(kH264_PictureSetCount, kNoSet);
    bool mfPictureSet = false; ///< there is one
    ezH264SequenceSet mWinner;
    uint32 mRefusedCount = 0;

    const ezH264SequenceSet* Find(std::uint32_t anID) const {
        const auto found = std::find_if(mSequenceSets.begin(), mSequenceSets.end(),
                                        [&](const ezH264SequenceSet& aSet) { return aSet.mID == anID; });
        return found != mSequenceSets.end() ? &*found : nullptr;
    }
    static const ezH264SequenceSet* sFind(const void* aContext, std::uint32_t anID) {
        return static_cast<const Found*>(aContext)->Find(anID);
    }
};

H264EltStreamParser::H264EltStreamParser(ezElementaryStreamInfo* aEltStreamInfo, ezMediaInfo* aMediaInfo)
    : StartCodeEltStreamParser("H264", kH264_MaxParameterSetSize, aEltStreamInfo, aMediaInfo),
      mFound(std::make_unique<Found>()) {}

H264EltStreamParser::~H264EltStreamParser() = default;

void H264EltStreamParser::Restart() {
    *mFound = Found();
}

uint32 H264EltStreamParser::CountRefused() const {
    return mFound->mRefusedCount;
}

bool H264EltStreamParser::BeginUnit(uint8 aCode, Keep& aKeep) {
    const uint8 kind = KindOf(aCode);
    if ((aCode & kForbiddenBit) != 0) {
        Restart(); // what was found so far belongs to something else
    } else if (IsReference(aCode) && (kind == kH264_SequenceSet || kind == kH264_PictureSet)) {
        aKeep = kBytesOfNAL; // a set is always of reference
    } else if (mFound->mfPictureSet &&
               (kind == kH264_Slice || (kind == kH264_InstantSlice && IsReference(aCode)))) {
        aKeep = kBytesAsGrown;
    }
    return false;
}

bool H264EltStreamParser::GrowUnit(const Unit& aUnit, Keep& aKeep) {
    uint32 identifier = 0;
    ezH264SliceResult result = ezH264Slice_ReadPictureSetID(aUnit.mBytes, aUnit.mSize, identifier);
    const ezH264SequenceSet* sequence = nullptr;
    if (result == ezH264SliceResult::kLegal) {
        sequence = mFound->Find(mFound->mSequenceOfPicture[identifier]);
        result = sequence == nullptr
                     ? ezH264SliceResult::kIllegal
                     : ezH264Slice_Check(aUnit.mBytes, aUnit.mSize, KindOf(aUnit.mCode) == kH264_InstantSlice,
                                         *sequence);
    }
    const bool fTooLong = result == ezH264SliceResult::kTooShort && aUnit.mSize >= kH264_MaxSliceHeaderSize;
    if (result == ezH264SliceResult::kIllegal || fTooLong || !aUnit.mfWhole) {
        aKeep = kNothing;
        ++mFound->mRefusedCount;
        return false;
    }
    if (result == ezH264SliceResult::kLegal) {
        mFound->mWinner = *sequence;
    }
    return result == ezH264SliceResult::kLegal;
}

bool H264EltStreamParser::TakeSequenceSet(const Unit& aUnit) {
    ezH264SequenceSet set;
    if (!ezH264SequenceSet_Read(aUnit.mBytes, aUnit.mSize, set)) {
        return false;
    }
    auto& sets = mFound->mSequenceSets;
    const auto sameID = std::find_if(sets.begin(), sets.end(),
                                     [&](const ezH264SequenceSet& aKnown) { return aKnown.mID == set.mID; });
    if (sameID != sets.end()) {
        *sameID = set;
    } else {
        sets.push_back(set);
    }
    return true;
}

bool H264EltStreamParser::TakePictureSet(const Unit& aUnit) {
    ezH264PictureSet set;
    if (!ezH264PictureSet_Read(aUnit.mBytes, aUnit.mSize, Found::sFind, mFound.get(), set)) {
        return false;
    }
    mFound->mSequenceOfPicture[set.mID] = static_cast<std::uint16_t>(set.mSequenceSetID);
    mFound->mfPictureSet = true;
    return true;
}

void H264EltStreamParser::EndUnit(const Unit& aUnit) {
    const uint8 kind = KindOf(aUnit.mCode);
    if (kind != kH264_SequenceSet && kind != kH264_PictureSet) {
        return; // a slice that ended before it told enough
    }
    if (!aUnit.mfWhole || !(kind == kH264_SequenceSet ? TakeSequenceSet(aUnit) : TakePictureSet(aUnit))) {
        ++mFound->mRefusedCount;
    }
}

uint32 H264EltStreamParser::LeastBytes(uint8 aCode, uint32 aSize) const {
    const uint8 kind = KindOf(aCode);
    constexpr uint32 kSlice = kCodeSize + kMinSliceSize;
    if (mFound->mfPictureSet) {
        // A slice that is being read may decide with its next byte.
        const bool fSlice = aSize != UINT32_MAX && (kind == kH264_Slice || kind == kH264_InstantSlice);
        return fSlice ? 1 : kSlice;
    }
    if (!mFound->mSequenceSets.empty()) {
        const bool fSet = aSize != UINT32_MAX && kind == kH264_PictureSet;
        return (fSet ? Missing(kH264_MinPictureSetSize, aSize) : kCodeSize + kH264_MinPictureSetSize) +
               kSlice;
    }
    const bool fSet = aSize != UINT32_MAX && kind == kH264_SequenceSet;
    return (fSet ? Missing(kH264_MinSequenceSetSize, aSize) : kCodeSize + kH264_MinSequenceSetSize) +
           kCodeSize + kH264_MinPictureSetSize + kSlice;
}

void H264EltStreamParser::Fill(ezMediaInfo& anInfo) const {
    const ezH264SequenceSet& set = mFound->mWinner;
    // What does not fit is left out: its largest value says something else.
    const bool fFits = set.mBitRate.mBitRate < kezMediaInfo_VariableRate;
    const uint32 bitRate = fFits ? static_cast<uint32>(set.mBitRate.mBitRate) : 0;
    anInfo.Set(kezInfo_HasVideoTrack, 1, true);
    anInfo.Set(kezInfo_VideoCodec, "H264", true);
    anInfo.Set(kezInfo_PictureWidth, set.mWidth, true);
    anInfo.Set(kezInfo_PictureHeight, set.mHeight, true);
    if (fFits || !set.mBitRate.mfConstant) {
        anInfo.Set(kezInfo_VideoBitRate, set.mBitRate.mfConstant ? bitRate : kezMediaInfo_VariableRate, true);
    }
    if (bitRate != 0 && !set.mBitRate.mfConstant) {
        anInfo.Set(kezInfo_VideoMaxBitRate, bitRate, true);
    }
}
