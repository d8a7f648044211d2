#include "ezFormats/elementary/H264EltStreamParser.h"

#include "ezFormats/codecs/H264Headers.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/elementary/CodedVideoRecord.h"

#include <algorithm>

namespace {

constexpr uint32 kCodeSize = 4;
constexpr uint32 kMinSliceSize = 1; ///< three numbers of a bit each and four bits of frame_num

// The header byte of a NAL unit (7.3.1): forbidden_zero_bit, two bits nal_ref_idc, five bits nal_unit_type.
constexpr uint8 kForbiddenZeroBit = 0x80;

uint8 UnitTypeOf(uint8 aCode) {
    return aCode & 0x1FU;
}

bool IsReference(uint8 aCode) {
    return (aCode & 0x60U) != 0;
}

/// Bytes that a NAL unit still lacks.
uint32 Missing(uint32 aSize, uint32 aPresent) {
    return aSize - std::min(aSize, aPresent);
}

} // namespace

struct H264EltStreamParser::Found {
    ezH264Sets mSets;
    ezH264SPS mWinner;
    uint32 mRefusedCount = 0;
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
    const uint8 type = UnitTypeOf(aCode);
    if ((aCode & kForbiddenZeroBit) != 0) {
        Restart(); // what was found so far belongs to something else
    } else if (IsReference(aCode) && (type == kH264_SPS || type == kH264_PPS)) {
        aKeep = kBytesOfNAL; // nal_ref_idc of a parameter set is not 0 (7.4.1)
    } else if (mFound->mSets.HasPPS() &&
               (type == kH264_NonIDRSlice || (type == kH264_IDRSlice && IsReference(aCode)))) {
        aKeep = kBytesAsGrown;
    }
    return false;
}

bool H264EltStreamParser::GrowUnit(const Unit& aUnit, Keep& aKeep) {
    uint32 identifier = 0;
    ezH264SliceResult result = ezH264Slice_ReadPPSID(aUnit.mBytes, aUnit.mSize, identifier);
    const ezH264SPS* sps = nullptr;
    if (result == ezH264SliceResult::kLegal) {
        sps = mFound->mSets.FindOfPPS(identifier);
        result = sps == nullptr ? ezH264SliceResult::kIllegal
                                : ezH264Slice_Check(aUnit.mBytes, aUnit.mSize,
                                                    UnitTypeOf(aUnit.mCode) == kH264_IDRSlice, *sps);
    }
    const bool fTooLong = result == ezH264SliceResult::kTooShort && aUnit.mSize >= kH264_MaxSliceHeaderSize;
    if (result == ezH264SliceResult::kIllegal || fTooLong || !aUnit.mfWhole) {
        aKeep = kNothing;
        ++mFound->mRefusedCount;
        return false;
    }
    if (result == ezH264SliceResult::kLegal) {
        mFound->mWinner = *sps;
    }
    return result == ezH264SliceResult::kLegal;
}

bool H264EltStreamParser::TakeSPS(const Unit& aUnit) {
    ezH264SPS sps;
    if (!ezH264SPS_Read(aUnit.mBytes, aUnit.mSize, sps)) {
        return false;
    }
    mFound->mSets.TakeSPS(sps);
    return true;
}

bool H264EltStreamParser::TakePPS(const Unit& aUnit) {
    ezH264PPS pps;
    if (!ezH264PPS_Read(aUnit.mBytes, aUnit.mSize, mFound->mSets, pps)) {
        return false;
    }
    mFound->mSets.TakePPS(pps.mID, pps.mSPSID);
    return true;
}

void H264EltStreamParser::EndUnit(const Unit& aUnit) {
    const uint8 type = UnitTypeOf(aUnit.mCode);
    if (type != kH264_SPS && type != kH264_PPS) {
        return; // a slice that ended before it told enough
    }
    if (!aUnit.mfWhole || !(type == kH264_SPS ? TakeSPS(aUnit) : TakePPS(aUnit))) {
        ++mFound->mRefusedCount;
    }
}

uint32 H264EltStreamParser::LeastBytes(uint8 aCode, uint32 aSize) const {
    const uint8 type = UnitTypeOf(aCode);
    constexpr uint32 kSlice = kCodeSize + kMinSliceSize;
    if (mFound->mSets.HasPPS()) {
        // A slice that is being read may decide with its next byte.
        const bool fSlice = aSize != UINT32_MAX && (type == kH264_NonIDRSlice || type == kH264_IDRSlice);
        return fSlice ? 1 : kSlice;
    }
    if (mFound->mSets.HasSPS()) {
        const bool fSet = aSize != UINT32_MAX && type == kH264_PPS;
        return (fSet ? Missing(kH264_MinPPSSize, aSize) : kCodeSize + kH264_MinPPSSize) + kSlice;
    }
    const bool fSet = aSize != UINT32_MAX && type == kH264_SPS;
    return (fSet ? Missing(kH264_MinSPSSize, aSize) : kCodeSize + kH264_MinSPSSize) + kCodeSize +
           kH264_MinPPSSize + kSlice;
}

void H264EltStreamParser::Fill(ezMediaInfo& anInfo) const {
    const ezH264SPS& sps = mFound->mWinner;
    CodedVideo_Store({"H264", sps.mWidth, sps.mHeight, sps.mHRD.mBitRate, sps.mHRD.mfConstant}, anInfo);
}
