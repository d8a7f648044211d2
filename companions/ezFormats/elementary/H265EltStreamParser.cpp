#include "ezFormats/elementary/H265EltStreamParser.h"

#include "ezFormats/codecs/H265Headers.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/elementary/CodedVideoRecord.h"

#include <algorithm>
#include <array>
#include <bitset>

namespace {

// A unit's code is the first byte of its header; the second is the first that is kept.
constexpr uint32 kCodeSize = 4;
constexpr uint32 kSecondSize = kH265_HeaderSize - 1;
constexpr uint8 kForbiddenZeroBit = 0x80;
constexpr uint8 kLayerBit = 0x01; ///< the highest of nuh_layer_id

uint8 UnitTypeOf(uint8 aCode) {
    return aCode >> 1 & 0x3FU;
}

bool IsSet(uint8 aType) {
    return aType == kH265_VPS || aType == kH265_SPS || aType == kH265_PPS;
}

/// What makes a stream, one after the other, each the least bytes of it after its code.
constexpr std::array<uint32, 4> kLeastSizes = {kSecondSize + kH265_MinVPSSize, kSecondSize + kH265_MinSPSSize,
                                               kSecondSize + kH265_MinPPSSize,
                                               kSecondSize + kH265_MinSliceSize};
constexpr std::size_t kSlice = 3;

/// Which of them a unit is.
std::size_t StepOf(uint8 aType) {
    return IsSet(aType) ? aType - std::size_t{kH265_VPS} : kSlice;
}

} // namespace

/// What of a stream is there.
struct H265EltStreamParser::Found {
    std::bitset<kH265_VPSCount> mVPSs; ///< by their IDs
    ezH265Sets mSets;
    ezH265SPS mWinner;
    uint32 mRefusedCount = 0;

    /// The step that is missing next.
    std::size_t GetStep() const { return mSets.HasPPS() ? 3 : mSets.HasSPS() ? 2 : mVPSs.any() ? 1 : 0; }

    /// Takes a parameter set that refers to one that is there.
    bool TakeVPS(const unsigned char* aBytes, uint32 aSize);
    bool TakeSPS(const unsigned char* aBytes, uint32 aSize);
    bool TakePPS(const unsigned char* aBytes, uint32 aSize);
};

bool H265EltStreamParser::Found::TakeVPS(const unsigned char* aBytes, uint32 aSize) {
    std::uint32_t identifier = 0;
    if (!ezH265VPS_Read(aBytes, aSize, identifier)) {
        return false;
    }
    mVPSs.set(identifier);
    return true;
}

bool H265EltStreamParser::Found::TakeSPS(const unsigned char* aBytes, uint32 aSize) {
    ezH265SPS set;
    if (!ezH265SPS_Read(aBytes, aSize, set) || !mVPSs.test(set.mVPSID)) {
        return false;
    }
    mSets.TakeSPS(set);
    return true;
}

bool H265EltStreamParser::Found::TakePPS(const unsigned char* aBytes, uint32 aSize) {
    ezH265PPS set;
    if (!ezH265PPS_Read(aBytes, aSize, set) || mSets.Find(set.mSPSID) == nullptr) {
        return false;
    }
    mSets.TakePPS(set.mID, set.mSPSID);
    return true;
}

H265EltStreamParser::H265EltStreamParser(ezElementaryStreamInfo* aEltStreamInfo, ezMediaInfo* aMediaInfo)
    : StartCodeEltStreamParser("H265", kSecondSize + kH265_MaxParameterSetSize, aEltStreamInfo, aMediaInfo),
      mFound(std::make_unique<Found>()) {}

H265EltStreamParser::~H265EltStreamParser() = default;

void H265EltStreamParser::Restart() {
    *mFound = Found();
}

uint32 H265EltStreamParser::CountRefused() const {
    return mFound->mRefusedCount;
}

bool H265EltStreamParser::BeginUnit(uint8 aCode, Keep& aKeep) {
    const uint8 type = UnitTypeOf(aCode);
    if ((aCode & kForbiddenZeroBit) != 0) {
        Restart(); // what was found so far belongs to something else
    } else if ((aCode & kLayerBit) == 0 && IsSet(type)) {
        aKeep = kBytesOfNAL;
    } else if ((aCode & kLayerBit) == 0 && mFound->mSets.HasPPS() && ezH265UnitType_IsSlice(type)) {
        aKeep = kBytesAsGrown;
    }
    return false;
}

bool H265EltStreamParser::GrowUnit(const Unit& aUnit, Keep& aKeep) {
    if (aUnit.mSize <= kSecondSize && aUnit.mfWhole) {
        return false;
    }
    ezH265UnitHeader header;
    std::uint32_t identifier = 0;
    ezH265SliceResult result = ezH265SliceResult::kIllegal;
    if (aUnit.mfWhole && ezH265UnitHeader_Read(aUnit.mCode, aUnit.mBytes[0], header) && header.mfBase) {
        result = ezH265Slice_ReadPPSID(aUnit.mBytes + kSecondSize, aUnit.mSize - kSecondSize, header.mType,
                                       identifier);
    }
    const ezH265SPS* sps = nullptr;
    if (result == ezH265SliceResult::kLegal) {
        sps = mFound->mSets.FindOfPPS(identifier);
    }
    const bool fGoesOn =
        result == ezH265SliceResult::kTooShort && aUnit.mSize < kSecondSize + kH265_MaxSliceHeaderSize;
    if (sps == nullptr && !fGoesOn) {
        aKeep = kNothing;
        ++mFound->mRefusedCount;
        return false;
    }
    if (sps != nullptr) {
        mFound->mWinner = *sps;
    }
    return sps != nullptr;
}

void H265EltStreamParser::EndUnit(const Unit& aUnit) {
    const uint8 type = UnitTypeOf(aUnit.mCode);
    if (!IsSet(type)) {
        return; // a slice that ended before it told enough
    }
    ezH265UnitHeader header;
    bool fTaken = false;
    if (aUnit.mfWhole && aUnit.mSize >= kSecondSize &&
        ezH265UnitHeader_Read(aUnit.mCode, aUnit.mBytes[0], header) && header.mfBase &&
        (header.mfLowest || type == kH265_PPS)) {
        const unsigned char* bytes = aUnit.mBytes + kSecondSize;
        const uint32 size = aUnit.mSize - kSecondSize;
        fTaken = type == kH265_VPS   ? mFound->TakeVPS(bytes, size)
                 : type == kH265_SPS ? mFound->TakeSPS(bytes, size)
                                     : mFound->TakePPS(bytes, size);
    }
    mFound->mRefusedCount += fTaken ? 0 : 1;
}

uint32 H265EltStreamParser::LeastBytes(uint8 aCode, uint32 aSize) const {
    const std::size_t step = mFound->GetStep();
    const bool fBegun = aSize != UINT32_MAX && StepOf(UnitTypeOf(aCode)) == step;
    uint32 least = 0;
    for (std::size_t i = step; i < kLeastSizes.size(); ++i) {
        least += fBegun && i == step ? kLeastSizes[i] - std::min(kLeastSizes[i], aSize)
                                     : kCodeSize + kLeastSizes[i];
    }
    return std::max<uint32>(least, 1); // a slice that is being read may decide with its next byte
}

void H265EltStreamParser::Fill(ezMediaInfo& anInfo) const {
    const ezH265SPS& sps = mFound->mWinner;
    CodedVideo_Store({"H265", sps.mWidth, sps.GetFrameHeight(), sps.mBitRate, sps.mfConstantRate}, anInfo);
}
