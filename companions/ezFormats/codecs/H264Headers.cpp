#include "ezFormats/codecs/H264Headers.h"

#include "ezBytes/BitReader.h"
#include "ezFormats/detail/Limits.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::array<std::uint32_t, 10> kProfiles = {44, 66, 77, 83, 86, 88, 100, 110, 122, 244};
/// Profiles with a chroma format and scaling lists.
constexpr std::array<std::uint32_t, 7> kHighProfiles = {44, 83, 86, 100, 110, 122, 244};
constexpr std::array<std::uint32_t, 20> kLevels = {9,  10, 11, 12, 13, 20, 21, 22, 30, 31,
                                                   32, 40, 41, 42, 50, 51, 52, 60, 61, 62};

constexpr std::uint32_t kBlock = 16;
constexpr std::uint32_t kShapeExtended = 255; ///< a pixel shape that follows in numbers
constexpr std::size_t kSmallList = 16;
constexpr std::size_t kLargeList = 64;
constexpr unsigned kSmallListCount = 6;

template <std::size_t Size>
bool IsIn(const std::array<std::uint32_t, Size>& aValues, std::uint32_t aValue) {
    return std::find(aValues.begin(), aValues.end(), aValue) != aValues.end();
}

/// Bits before the one that ends a set, which lies in its last byte that is not zero.
std::size_t ContentBits(const unsigned char* aBytes, std::size_t aSize) {
    while (aSize > 0 && aBytes[aSize - 1] == 0) {
        --aSize;
    }
    if (aSize == 0) {
        return 0;
    }
    std::size_t count = 8 * aSize - 1;
    for (unsigned last = aBytes[aSize - 1]; last % 2 == 0; last /= 2) {
        --count;
    }
    return count;
}

bool IsReadToTheEnd(const ezBitReader& aBits) {
    return !aBits.HasFailed() && aBits.GetBitsLeft() == 0;
}

void SkipScalingList(ezBitReader& aBits, std::size_t aSize) {
    std::int64_t last = 8;
    std::int64_t next = 8;
    for (std::size_t i = 0; i < aSize && next != 0 && !aBits.HasFailed(); ++i) {
        next = (last + aBits.ReadSEWithin(-128, 127) + 256) % 256;
        last = next;
    }
}

void SkipScalingLists(ezBitReader& aBits, unsigned aCount) {
    for (unsigned i = 0; i < aCount; ++i) {
        if (aBits.ReadFlag()) {
            SkipScalingList(aBits, i < kSmallListCount ? kSmallList : kLargeList);
        }
    }
}

// --- Sequence set

void ReadHighProfile(ezBitReader& aBits, ezH264SequenceSet& aSet) {
    aSet.mChromaFormat = aBits.ReadUEUpTo(3);
    aSet.mfSeparatePlanes = aSet.mChromaFormat == 3 && aBits.ReadFlag();
    aBits.ReadUEUpTo(6); // bits of a sample above 8, luma
    aBits.ReadUEUpTo(6); // and chroma
    aBits.Skip(1);       // lossless
    if (aBits.ReadFlag()) {
        SkipScalingLists(aBits, aSet.mChromaFormat == 3 ? 12 : 8);
    }
}

void ReadOrder(ezBitReader& aBits, ezH264SequenceSet& aSet) {
    aSet.mOrderType = aBits.ReadUEUpTo(2);
    if (aSet.mOrderType == 0) {
        aSet.mOrderBits = 4 + aBits.ReadUEUpTo(12);
    } else if (aSet.mOrderType == 1) {
        aBits.Skip(1);
        aBits.ReadSE();
        aBits.ReadSE();
        const std::uint32_t count = aBits.ReadUEUpTo(255);
        for (std::uint32_t i = 0; i < count && !aBits.HasFailed(); ++i) {
            aBits.ReadSE();
        }
    }
}

/// The picture that is left of aFull pixels; a cut that leaves none fails.
std::uint32_t Crop(ezBitReader& aBits, std::uint32_t aFull, std::uint64_t aFirst, std::uint64_t aLast,
                   std::uint64_t aUnit) {
    const std::uint64_t cut = (aFirst + aLast) * aUnit; // below 2^36
    return aBits.Require(cut < aFull) ? aFull - static_cast<std::uint32_t>(cut) : 0;
}

void ReadPictureSize(ezBitReader& aBits, ezH264SequenceSet& aSet) {
    aSet.mWidthInBlocks = 1 + aBits.ReadUEUpTo(kH264_MaxSideSize - 1);
    const std::uint32_t mapHeight = 1 + aBits.ReadUEUpTo(kH264_MaxSideSize - 1);
    aSet.mfFramesOnly = aBits.ReadFlag();
    const std::uint32_t fieldFactor = aSet.mfFramesOnly ? 1 : 2;
    aSet.mHeightInBlocks = mapHeight * fieldFactor;
    aBits.Require(aSet.mHeightInBlocks <= kH264_MaxSideSize &&
                  aSet.mWidthInBlocks * aSet.mHeightInBlocks <= kH264_MaxFrameSize);
    aBits.Skip(aSet.mfFramesOnly ? 0 : 1); // fields within a frame
    const bool fDirect8x8 = aBits.ReadFlag();
    aBits.Require(aSet.mfFramesOnly || fDirect8x8);
    aSet.mWidth = aSet.mWidthInBlocks * kBlock;
    aSet.mHeight = aSet.mHeightInBlocks * kBlock;
    if (aBits.ReadFlag()) {
        const bool fChroma = aSet.mChromaFormat != 0 && !aSet.mfSeparatePlanes;
        const std::uint64_t left = aBits.ReadUE();
        const std::uint64_t right = aBits.ReadUE();
        const std::uint64_t top = aBits.ReadUE();
        const std::uint64_t bottom = aBits.ReadUE();
        const std::uint32_t unitX = fChroma && aSet.mChromaFormat < 3 ? 2 : 1;
        const std::uint32_t unitY = (fChroma && aSet.mChromaFormat == 1 ? 2 : 1) * fieldFactor;
        aSet.mWidth = Crop(aBits, aSet.mWidth, left, right, unitX);
        aSet.mHeight = Crop(aBits, aSet.mHeight, top, bottom, unitY);
    }
}

/// A buffer description, if the next bit announces one. True when there is one.
bool ReadBuffer(ezBitReader& aBits, ezH264BitRate& aBitRate) {
    if (!aBits.ReadFlag()) {
        return false;
    }
    ezH264BitRate fastest;
    const std::uint32_t count = 1 + aBits.ReadUEUpTo(31);
    const unsigned scale = 6 + aBits.Read(4);
    aBits.Skip(4); // scale of the buffer size
    for (std::uint32_t i = 0; i < count && !aBits.HasFailed(); ++i) {
        fastest.mBitRate = (std::uint64_t{aBits.ReadUE()} + 1) << scale;
        aBits.ReadUE();
        fastest.mfConstant = aBits.ReadFlag();
    }
    aBits.Skip(20); // lengths of delays
    // The description of the units as they stand comes first, and it counts the bytes of this kind of stream.
    aBitRate = aBitRate.mBitRate == 0 ? fastest : aBitRate;
    return true;
}

void ReadUsability(ezBitReader& aBits, ezH264BitRate& aBitRate) {
    if (aBits.ReadFlag() && aBits.Read(8) == kShapeExtended) {
        aBits.Skip(32);
    }
    if (aBits.ReadFlag()) {
        aBits.Skip(1); // overscan
    }
    if (aBits.ReadFlag()) {
        aBits.Skip(4); // video format and range
        if (aBits.ReadFlag()) {
            aBits.Skip(24); // colours
        }
    }
    if (aBits.ReadFlag()) {
        aBits.ReadUEUpTo(5); // places of chroma, of both fields
        aBits.ReadUEUpTo(5);
    }
    if (aBits.ReadFlag()) {
        aBits.Skip(65); // units of time, their scale, and whether the rate is fixed
    }
    const bool fUnits = ReadBuffer(aBits, aBitRate);
    const bool fSlices = ReadBuffer(aBits, aBitRate);
    aBits.Skip(fUnits || fSlices ? 1 : 0);
    aBits.Skip(1); // structure of pictures
    if (aBits.ReadFlag()) {
        aBits.Skip(1);
        for (unsigned i = 0; i < 6; ++i) {
            aBits.ReadUEUpTo(i < 4 ? 16 : kH264_MaxFrameSize); // bounds of sizes, then numbers of frames
        }
    }
}

// --- Picture set

/// Bits that tell apart so many values.
unsigned BitsFor(std::uint32_t aCount) {
    unsigned bits = 0;
    while ((1U << bits) < aCount) {
        ++bits;
    }
    return bits;
}

void SkipSliceGroups(ezBitReader& aBits) {
    const std::uint32_t groups = 1 + aBits.ReadUEUpTo(7);
    if (groups == 1) {
        return;
    }
    const std::uint32_t type = aBits.ReadUEUpTo(6);
    if (type == 0 || type == 2) {
        const std::uint32_t numbers = type == 0 ? groups : 2 * (groups - 1);
        for (std::uint32_t i = 0; i < numbers; ++i) {
            aBits.ReadUEUpTo(kH264_MaxFrameSize);
        }
    } else if (type >= 3 && type <= 5) {
        aBits.Skip(1);
        aBits.ReadUEUpTo(kH264_MaxFrameSize);
    } else if (type == 6) {
        const std::uint32_t units = 1 + aBits.ReadUEUpTo(kH264_MaxFrameSize);
        aBits.Skip(std::size_t{units} * BitsFor(groups));
    }
}

} // namespace

bool ezH264SequenceSet_Read(const unsigned char* aBytes, std::size_t aSize, ezH264SequenceSet& aSet) {
    ezBitReader bits(aBytes, ContentBits(aBytes, aSize));
    const std::uint32_t profile = bits.Read(8);
    bits.Skip(6); // constraints
    bits.Require(bits.Read(2) == 0);
    bits.Require(IsIn(kProfiles, profile) && IsIn(kLevels, bits.Read(8)));
    aSet.mID = bits.ReadUEUpTo(kH264_SequenceSetCount - 1);
    if (IsIn(kHighProfiles, profile)) {
        ReadHighProfile(bits, aSet);
    }
    aSet.mFrameNumberBits = 4 + bits.ReadUEUpTo(12);
    ReadOrder(bits, aSet);
    bits.ReadUEUpTo(16); // reference frames
    bits.Skip(1);        // gaps in frame numbers
    ReadPictureSize(bits, aSet);
    if (bits.ReadFlag()) {
        ReadUsability(bits, aSet.mBitRate);
    }
    return IsReadToTheEnd(bits);
}

bool ezH264PictureSet_Read(const unsigned char* aBytes, std::size_t aSize, ezH264FindSequenceSet aFind,
                           const void* aContext, ezH264PictureSet& aSet) {
    ezBitReader bits(aBytes, ContentBits(aBytes, aSize));
    aSet.mID = bits.ReadUEUpTo(kH264_PictureSetCount - 1);
    aSet.mSequenceSetID = bits.ReadUEUpTo(kH264_SequenceSetCount - 1);
    const ezH264SequenceSet* sequence = bits.HasFailed() ? nullptr : aFind(aContext, aSet.mSequenceSetID);
    if (sequence == nullptr) {
        return false;
    }
    bits.Skip(2); // entropy coding, order in fields
    SkipSliceGroups(bits);
    bits.ReadUEUpTo(31);
    bits.ReadUEUpTo(31);
    bits.Skip(1);
    bits.Require(bits.Read(2) != 3);
    bits.ReadSEWithin(-62, 25); // quantisers, of samples of up to 14 bits
    bits.ReadSEWithin(-26, 25);
    bits.ReadSEWithin(-12, 12);
    bits.Skip(3);
    if (bits.GetBitsLeft() > 0) { // the part that the high profiles added
        const bool fLarge = bits.ReadFlag();
        if (bits.ReadFlag()) {
            const unsigned largeLists = sequence->mChromaFormat == 3 ? 6 : 2;
            SkipScalingLists(bits, kSmallListCount + (fLarge ? largeLists : 0));
        }
        bits.ReadSEWithin(-12, 12);
    }
    return IsReadToTheEnd(bits);
}

namespace {

constexpr std::uint32_t kMaxSliceType = 9; ///< five types, and the same again for whole pictures of one type
constexpr std::uint32_t kSliceTypes = 5;
constexpr std::uint32_t kTypeIntra = 2;
constexpr std::uint32_t kTypeSwitchingIntra = 4;
constexpr std::uint32_t kMaxInstantID = 65535;

struct SliceStart {
    std::uint32_t mFirstBlock;
    std::uint32_t mType;
    std::uint32_t mPictureSetID;
};

SliceStart ReadSliceStart(ezBitReader& aBits) {
    SliceStart start = {};
    start.mFirstBlock = aBits.ReadUE();
    start.mType = aBits.ReadUE();
    start.mPictureSetID = aBits.ReadUE();
    return start;
}

} // namespace

// A reader over a block that may still grow fails for one reason at a time: where bytes are missing the
// values read so far are judged when they are all there, so no limit is asked of the reader itself here.

ezH264SliceResult ezH264Slice_ReadPictureSetID(const unsigned char* aBytes, std::size_t aSize,
                                               std::uint32_t& anID) {
    ezBitReader bits(aBytes, 8 * aSize);
    const SliceStart start = ReadSliceStart(bits);
    if (bits.HasFailed()) {
        return ezH264SliceResult::kTooShort;
    }
    anID = start.mPictureSetID;
    return start.mType <= kMaxSliceType && anID < kH264_PictureSetCount ? ezH264SliceResult::kLegal
                                                                        : ezH264SliceResult::kIllegal;
}

ezH264SliceResult ezH264Slice_Check(const unsigned char* aBytes, std::size_t aSize, bool afInstant,
                                    const ezH264SequenceSet& aSet) {
    ezBitReader bits(aBytes, 8 * aSize);
    const SliceStart start = ReadSliceStart(bits);
    bool fLegal = start.mType <= kMaxSliceType;
    if (aSet.mfSeparatePlanes) {
        fLegal = bits.Read(2) != 3 && fLegal;
    }
    const std::uint32_t frameNumber = bits.Read(aSet.mFrameNumberBits);
    const bool fField = !aSet.mfFramesOnly && bits.ReadFlag();
    bits.Skip(fField ? 1 : 0); // which one
    const std::uint32_t instantID = afInstant ? bits.ReadUE() : 0;
    bits.Skip(aSet.mOrderBits);
    if (bits.HasFailed()) {
        return ezH264SliceResult::kTooShort;
    }
    const std::uint32_t blocks = aSet.mWidthInBlocks * aSet.mHeightInBlocks / (fField ? 2 : 1);
    const std::uint32_t type = start.mType % kSliceTypes;
    fLegal = fLegal && start.mFirstBlock < blocks;
    if (afInstant) {
        fLegal = fLegal && frameNumber == 0 && instantID <= kMaxInstantID &&
                 (type == kTypeIntra || type == kTypeSwitchingIntra);
    }
    return fLegal ? ezH264SliceResult::kLegal : ezH264SliceResult::kIllegal;
}
