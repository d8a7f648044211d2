#include "ezFormats/codecs/H265Video.h"

#include "ezBytes/BitReader.h"
#include "ezBytes/ByteReader.h"
#include "ezFormats/codecs/H265Headers.h"
#include "ezFormats/codecs/NALUnits.h"
#include "ezFormats/codecs/VideoSEI.h"
#include "ezFormats/detail/Limits.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <array>
#include <vector>

// Clauses are those of ITU-T H.265.

namespace {

/// general_profile_idc (A.3), from 1 on; those of layers are not the base's.
constexpr std::array<const char*, 11> kProfiles = {"Main",
                                                   "Main10",
                                                   "MainStillPicture",
                                                   "RangeExtensions",
                                                   "HighThroughput",
                                                   "MultiviewMain",
                                                   "ScalableMain",
                                                   "3DMain",
                                                   "ScreenContent",
                                                   "ScalableRangeExtensions",
                                                   "HighThroughputScreenContent"};

/// Profile and level, and the scan where the source's is told.
void TakeProfile(const ezH265Profile& aProfile, VideoFacts& aFacts) {
    const std::uint32_t index = aProfile.mProfile - 1; // very large for 0
    aFacts.mProfile = index < kProfiles.size() ? kProfiles[index] : "";
    aFacts.mLevel = aProfile.mLevel != 0 ? aProfile.mLevel / 3 : VideoFacts::kNoLevel;
    if (aProfile.mfProgressiveSource != aProfile.mfInterlacedSource) {
        aFacts.mScan = aProfile.mfProgressiveSource ? kScan_Progressive : kScan_Interlaced;
    }
}

/// Gathers what the units tell of the pictures.
class Pictures : public NALUnitTaker {
public:
    std::size_t CountWanted(std::uint8_t aFirst) const override;
    bool Take(const NALUnit& aUnit) override;

    /// Puts what is known over aFacts.
    void Tell(VideoFacts& aFacts) const;

private:
    /// The sequence that is shown: that of the first picture, or else the first there is.
    const ezH265SPS* GetSequence() const { return mfPicture ? &mShown : mSets.GetFirst(); }

    void TakeSPS(const std::vector<unsigned char>& aBytes);
    void TakePPS(const std::vector<unsigned char>& aBytes);
    void TakeTiming(const SEIMessage& aMessage);
    void TakeSlice(const std::vector<unsigned char>& aBytes, std::uint8_t aType);

    ezH265Sets mSets;
    ezH265SPS mShown;
    bool mfPicture = false;
    const char* mScan = nullptr; ///< as a picture timing message has it
    SEIRange mRange;
};

std::size_t Pictures::CountWanted(std::uint8_t aFirst) const {
    const std::uint8_t type = aFirst >> 1;
    if (type == kH265_SPS || type == kH265_PPS) {
        return kH265_HeaderSize + kH265_MaxParameterSetSize;
    }
    if (type == kH265_PrefixSEI) {
        return kH265_HeaderSize + kVideoSEI_MaxSize;
    }
    return ezH265UnitType_IsSlice(type) ? kH265_HeaderSize + kH265_MaxSliceHeaderSize : 0;
}

bool Pictures::Take(const NALUnit& aUnit) {
    ezH265UnitHeader header;
    if (aUnit.mSize < kH265_HeaderSize || !ezH265UnitHeader_Read(aUnit.mBytes[0], aUnit.mBytes[1], header) ||
        !header.mfBase) {
        return false;
    }
    const std::vector<unsigned char> bytes =
        NALUnit_ReadRBSP(aUnit, kH265_HeaderSize, CountWanted(aUnit.mBytes[0]));
    if (header.mType == kH265_SPS) {
        TakeSPS(bytes);
    } else if (header.mType == kH265_PPS) {
        TakePPS(bytes);
    } else if (header.mType == kH265_PrefixSEI) {
        TakeTiming(mRange.TakeAll(bytes.data(), bytes.size()));
    } else {
        TakeSlice(bytes, header.mType);
    }
    return mfPicture; // the messages of a picture come before its first slice
}

void Pictures::TakeSPS(const std::vector<unsigned char>& aBytes) {
    ezH265SPS set;
    if (ezH265SPS_Read(aBytes.data(), aBytes.size(), set) || set.mWidth != 0) {
        mSets.TakeSPS(set);
    }
}

void Pictures::TakePPS(const std::vector<unsigned char>& aBytes) {
    ezH265PPS set;
    if (ezH265PPS_Read(aBytes.data(), aBytes.size(), set)) {
        mSets.TakePPS(set.mID, set.mSPSID);
    }
}

/// pic_timing, where there is one (D.2.3)
void Pictures::TakeTiming(const SEIMessage& aMessage) {
    const ezH265SPS* sequence = GetSequence();
    if (sequence == nullptr || !sequence->mfPictureStructure) {
        return;
    }
    ezBitReader bits(aMessage.mBytes, 8 * aMessage.mSize);
    const std::uint32_t structure = bits.Read(4); // pic_struct (table D.2)
    if (bits.HasFailed() || structure > 12) {
        return;
    }
    // Fields, alone, as pairs, or with that before or after; three fields of a frame are how film is shown.
    const bool fFields = (structure >= 1 && structure <= 4) || structure >= 9;
    mScan = fFields ? kScan_Interlaced : kScan_Progressive;
}

void Pictures::TakeSlice(const std::vector<unsigned char>& aBytes, std::uint8_t aType) {
    std::uint32_t identifier = 0;
    if (ezH265Slice_ReadPPSID(aBytes.data(), aBytes.size(), aType, identifier) != ezH265SliceResult::kLegal) {
        return;
    }
    const ezH265SPS* sequence = mSets.FindOfPPS(identifier);
    if (sequence != nullptr) {
        mShown = *sequence;
        mfPicture = true;
    }
}

void Pictures::Tell(VideoFacts& aFacts) const {
    const ezH265SPS* sequence = GetSequence();
    if (sequence == nullptr) {
        return;
    }
    const ezH265SPS& sps = *sequence;
    const ezVideoUsability& usability = sps.mUsability;
    aFacts.mCodec = "H265";
    TakeProfile(sps.mProfile, aFacts);
    aFacts.mWidth = sps.mWidth;
    aFacts.mHeight = sps.GetFrameHeight();
    aFacts.mPixelAspect = VideoRatio::Of(usability.mAspectWidth, usability.mAspectHeight);
    aFacts.mFrameRate = VideoUsability_FrameRateOf(usability, sps.CountPictures());
    if (sps.mfFieldPictures) {
        aFacts.mScan = kScan_Interlaced;
    } else if (aFacts.mScan == nullptr) {
        aFacts.mScan = mScan;
    }
    aFacts.mBitDepth = sps.mBitDepth;
    aFacts.mColours = VideoUsability_ColoursOf(usability, sps.mChromaFormat);
    aFacts.mHDR = mRange.GetKind(usability.mTransfer);
    if (sps.mBitRate < kezMediaInfo_VariableRate) {
        // That of the HRD parameters is what a buffer is filled with at most.
        (sps.mfConstantRate ? aFacts.mBitRate : aFacts.mMaxBitRate) =
            static_cast<std::uint32_t>(sps.mBitRate);
    }
}

/// The first bytes of "hvcC" after its version: profile and level. False where it ends before.
bool ReadProfile(ByteReader& aConfig, VideoFacts& aFacts) {
    std::array<unsigned char, 12> profile = {};
    if (!aConfig.Read(profile.data(), profile.size())) {
        return false;
    }
    ezBitReader bits(profile.data(), 8 * profile.size());
    TakeProfile(ezH265Profile_Read(bits), aFacts);
    return true;
}

/// What follows, up to the arrays of units.
/// @param aSizeBytes  bytes of the number before a unit of a sample
bool ReadFormat(ByteReader& aConfig, VideoFacts& aFacts, unsigned& aSizeBytes) {
    aConfig.Skip(2 + 1); // min_spatial_segmentation_idc, parallelismType
    const std::uint32_t chromaFormat = aConfig.ReadByte() & 3U;   // chroma_format_idc
    const std::uint32_t bitDepth = 8 + (aConfig.ReadByte() & 7U); // bit_depth_luma_minus8
    aConfig.Skip(1 + 2);                                          // bit_depth_chroma_minus8, avgFrameRate
    aSizeBytes = 1 + (aConfig.ReadByte() & 3U);                   // lengthSizeMinusOne, the last of its byte
    if (aConfig.HasFailed()) {
        return false;
    }
    aFacts.mColours = VideoUsability_ColoursOf({}, chromaFormat);
    aFacts.mBitDepth = bitDepth;
    return true;
}

void TakeArrays(ByteReader& aConfig, Pictures& aPictures) {
    const unsigned arrays = aConfig.ReadByte(); // numOfArrays
    std::uint32_t left = kNALUnits_MaxCount;
    for (unsigned i = 0; i < arrays && left != 0 && !aConfig.HasFailed(); ++i) {
        aConfig.Skip(1); // array_completeness, NAL_unit_type
        const std::uint32_t count =
            std::min(static_cast<std::uint32_t>(aConfig.ReadBig(2)), left); // numNalus
        NALUnits_TakeSized(aConfig, 2, count, aPictures);
        left -= count;
    }
}

} // namespace

std::optional<VideoFacts> H265Video_ReadStream(const unsigned char* aBytes, std::size_t aSize) {
    Pictures pictures;
    NALUnits_TakeStream(aBytes, aSize, pictures);
    VideoFacts facts;
    pictures.Tell(facts);
    return facts.mCodec.IsEmpty() ? std::nullopt : std::make_optional(facts);
}

std::optional<VideoFacts> H265Video_ReadConfig(ByteReader aConfig, const ByteReader* aFirstSample) {
    VideoFacts facts;
    aConfig.Require(aConfig.ReadByte() == 1); // configurationVersion
    if (!ReadProfile(aConfig, facts)) {
        return std::nullopt;
    }
    facts.mCodec = "H265";
    unsigned sizeBytes = 0;
    if (!ReadFormat(aConfig, facts, sizeBytes)) {
        return facts;
    }
    Pictures pictures;
    TakeArrays(aConfig, pictures);
    if (aFirstSample != nullptr && !aConfig.HasFailed()) {
        ByteReader units = *aFirstSample;
        NALUnits_TakeSized(units, sizeBytes, kNALUnits_MaxCount, pictures);
    }
    pictures.Tell(facts);
    return facts;
}
