#include "ezFormats/codecs/H264Video.h"

#include "ezBytes/BitReader.h"
#include "ezBytes/ByteReader.h"
#include "ezFormats/codecs/H264Headers.h"
#include "ezFormats/codecs/NALUnits.h"
#include "ezFormats/codecs/VideoSEI.h"
#include "ezFormats/detail/Limits.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <array>
#include <vector>

// Clauses are those of ITU-T H.264.

namespace {

struct Profile {
    std::uint32_t mCode;
    const char* mName;
};
/// profile_idc (A.2, H.10)
constexpr std::array<Profile, 10> kProfiles = {{{44, "CAVLC444"},
                                                {66, "Baseline"},
                                                {77, "Main"},
                                                {88, "Extended"},
                                                {100, "High"},
                                                {110, "High10"},
                                                {118, "MultiviewHigh"},
                                                {122, "High422"},
                                                {128, "StereoHigh"},
                                                {244, "High444"}}};

std::uint8_t TypeOf(std::uint8_t aFirst) {
    return aFirst & 0x1FU;
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
    const ezH264SPS* GetSequence() const { return mfPicture ? &mShown : mSets.GetFirst(); }

    void TakeSPS(const std::vector<unsigned char>& aBytes);
    void TakePPS(const std::vector<unsigned char>& aBytes);
    void TakeTiming(const SEIMessage& aMessage);
    void TakeSlice(const std::vector<unsigned char>& aBytes, bool afIDR);

    ezH264Sets mSets;
    ezH264SPS mShown;
    bool mfPicture = false;
    bool mfFields = false; ///< a field was found, or a frame that is shown as fields
    bool mfTimed = false;  ///< a message has told how a picture is shown
    SEIRange mRange;
};

std::size_t Pictures::CountWanted(std::uint8_t aFirst) const {
    constexpr std::size_t kHeader = 1;
    switch (TypeOf(aFirst)) {
    case kH264_SPS:
    case kH264_PPS:
        return kHeader + std::size_t{kH264_MaxParameterSetSize};
    case kH264_SEI:
        return kHeader + std::size_t{kVideoSEI_MaxSize};
    case kH264_NonIDRSlice:
    case kH264_IDRSlice:
        return kHeader + std::size_t{kH264_MaxSliceHeaderSize} * 3 / 2; // with what is escaped
    default:
        return 0;
    }
}

bool Pictures::Take(const NALUnit& aUnit) {
    const std::uint8_t type = TypeOf(aUnit.mBytes[0]);
    const std::vector<unsigned char> bytes = NALUnit_ReadRBSP(aUnit, 1, CountWanted(aUnit.mBytes[0]));
    if (type == kH264_SPS) {
        TakeSPS(bytes);
    } else if (type == kH264_PPS) {
        TakePPS(bytes);
    } else if (type == kH264_SEI) {
        TakeTiming(mRange.TakeAll(bytes.data(), bytes.size()));
    } else {
        TakeSlice(bytes, type == kH264_IDRSlice);
    }
    // The messages of a picture come before its first slice; only fields may come later.
    return mfPicture && (mShown.mfFrameMBsOnly || mfFields);
}

void Pictures::TakeSPS(const std::vector<unsigned char>& aBytes) {
    ezH264SPS set;
    if (ezH264SPS_Read(aBytes.data(), aBytes.size(), set) || set.mWidth != 0) {
        mSets.TakeSPS(set);
    }
}

void Pictures::TakePPS(const std::vector<unsigned char>& aBytes) {
    ezH264PPS set;
    if (ezH264PPS_Read(aBytes.data(), aBytes.size(), mSets, set)) {
        mSets.TakePPS(set.mID, set.mSPSID);
    }
}

/// pic_timing, where there is one (D.1.3)
void Pictures::TakeTiming(const SEIMessage& aMessage) {
    const ezH264SPS* sequence = GetSequence();
    if (sequence == nullptr || sequence->mfFrameMBsOnly || !sequence->mfPictureStructure) {
        return;
    }
    ezBitReader bits(aMessage.mBytes, 8 * aMessage.mSize);
    bits.Skip(sequence->mDelayBits); // cpb_removal_delay, dpb_output_delay
    const std::uint32_t structure = bits.Read(4);
    mfTimed = mfTimed || !bits.HasFailed();
    // A field, or both of a frame (table D-1). Three fields of a frame are how film is shown.
    mfFields = mfFields || (structure >= 1 && structure <= 4);
}

void Pictures::TakeSlice(const std::vector<unsigned char>& aBytes, bool afIDR) {
    std::uint32_t identifier = 0;
    if (ezH264Slice_ReadPPSID(aBytes.data(), aBytes.size(), identifier) != ezH264SliceResult::kLegal) {
        return;
    }
    const ezH264SPS* sequence = mSets.FindOfPPS(identifier);
    bool fField = false;
    if (sequence == nullptr || ezH264Slice_Check(aBytes.data(), aBytes.size(), afIDR, *sequence, &fField) !=
                                   ezH264SliceResult::kLegal) {
        return;
    }
    mfFields = mfFields || fField;
    if (!mfPicture) {
        mShown = *sequence;
        mfPicture = true;
    }
}

void Pictures::Tell(VideoFacts& aFacts) const {
    const ezH264SPS* sequence = GetSequence();
    if (sequence == nullptr) {
        return;
    }
    const ezH264SPS& sps = *sequence;
    const ezVideoUsability& usability = sps.mUsability;
    aFacts.mCodec = "H264";
    H264Video_TakeProfile(sps.mProfile, sps.mConstraints, sps.mLevel, aFacts);
    aFacts.mWidth = sps.mWidth;
    aFacts.mHeight = sps.mHeight;
    aFacts.mPixelAspect = VideoRatio::Of(usability.mAspectWidth, usability.mAspectHeight);
    aFacts.mFrameRate = VideoUsability_FrameRateOf(usability, 2); // a unit is a field (E.2.1)
    // Who adapts frames to fields has fields, unless the messages say that frames are shown as such.
    const bool fAdapted = sps.mfAdaptive && !mfTimed;
    const bool fInterlaced = !sps.mfFrameMBsOnly && (mfFields || !mfPicture || fAdapted);
    aFacts.mScan = fInterlaced ? kScan_Interlaced : kScan_Progressive;
    aFacts.mBitDepth = sps.mBitDepth;
    aFacts.mColours = VideoUsability_ColoursOf(usability, sps.mChromaFormat);
    aFacts.mHDR = mRange.GetKind(usability.mTransfer);
    if (sps.mHRD.mBitRate < kezMediaInfo_VariableRate) {
        // That of the HRD parameters is what a buffer is filled with at most.
        (sps.mHRD.mfConstant ? aFacts.mBitRate : aFacts.mMaxBitRate) =
            static_cast<std::uint32_t>(sps.mHRD.mBitRate);
    }
}

} // namespace

void H264Video_TakeProfile(std::uint32_t aProfile, std::uint32_t aConstraints, std::uint32_t aLevel,
                           VideoFacts& aFacts) {
    constexpr std::uint32_t kConstraint1 = 0x40;
    constexpr std::uint32_t kConstraint3 = 0x10;
    constexpr std::uint32_t kLevel11 = 11;
    constexpr std::uint32_t kLevel1b = 9;
    const bool fOld = aProfile == 66 || aProfile == 77 || aProfile == 88; // they had no code for level 1b
    const auto* const known = std::find_if(kProfiles.begin(), kProfiles.end(),
                                           [=](const Profile& aKnown) { return aKnown.mCode == aProfile; });
    // A stream of the baseline profile that keeps what the main one asks (A.2.1.1).
    const bool fConstrained = aProfile == 66 && (aConstraints & kConstraint1) != 0;
    aFacts.mProfile = fConstrained ? "ConstrainedBaseline" : known != kProfiles.end() ? known->mName : "";
    const bool f1b = fOld && aLevel == kLevel11 && (aConstraints & kConstraint3) != 0;
    aFacts.mLevel = f1b ? kLevel1b : ezH264Level_IsKnown(aLevel) ? aLevel : VideoFacts::kNoLevel;
}

std::optional<VideoFacts> H264Video_ReadStream(const unsigned char* aBytes, std::size_t aSize) {
    Pictures pictures;
    NALUnits_TakeStream(aBytes, aSize, pictures);
    VideoFacts facts;
    pictures.Tell(facts);
    return facts.mCodec.IsEmpty() ? std::nullopt : std::make_optional(facts);
}

std::optional<VideoFacts> H264Video_ReadConfig(ByteReader aConfig, const ByteReader* aFirstSample) {
    aConfig.Require(aConfig.ReadByte() == 1); // configurationVersion
    const std::uint32_t profile = aConfig.ReadByte();
    const std::uint32_t constraints = aConfig.ReadByte();
    const std::uint32_t level = aConfig.ReadByte();
    if (aConfig.HasFailed()) {
        return std::nullopt;
    }
    VideoFacts facts;
    facts.mCodec = "H264";
    H264Video_TakeProfile(profile, constraints, level, facts);
    Pictures pictures;
    const unsigned sizeBytes = 1 + (aConfig.ReadByte() & 3U); // lengthSizeMinusOne
    for (const std::uint32_t mask : {0x1FU, 0xFFU}) {         // numOfSequenceParameterSets, of pictures
        NALUnits_TakeSized(aConfig, 2, aConfig.ReadByte() & mask, pictures);
    }
    if (aFirstSample != nullptr && !aConfig.HasFailed()) {
        ByteReader units = *aFirstSample;
        NALUnits_TakeSized(units, sizeBytes, kNALUnits_MaxCount, pictures);
    }
    pictures.Tell(facts);
    return facts;
}
