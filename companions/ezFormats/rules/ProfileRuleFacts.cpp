#include "ezFormats/rules/ProfileRuleFacts.h"

#include "ezPlatform/media/MediaInfo.h"

namespace {

static_assert(kProfileFact_NotStated == kezMediaInfo_VariableRate, "no rule takes such a rate for a number");

/// Thousandths of a picture a second: less than what separates 23.976 from 24, and more than what rounding a
/// time scale does to a rate.
constexpr uint32 kFrameRateTolerance = 10;

constexpr const char* kLPCM = "LPCM";

constexpr ProfileFactKind kWord = ProfileFactKind::Word;
constexpr ProfileFactKind kNumber = ProfileFactKind::Number;

uint32 StatedNumber(const ezMediaInfo& anInfo, const char* aKey, bool afZeroCounts) {
    const uint32 number = anInfo.GetUInt32(aKey, kProfileFact_NotStated);
    return number == 0 && !afZeroCounts ? kProfileFact_NotStated : number;
}

uint32 FirstNumber(const ezMediaInfo& anInfo, const ProfileFact& aFact) {
    for (const char* const key : aFact.mKeys) {
        const uint32 number =
            key == nullptr ? kProfileFact_NotStated : StatedNumber(anInfo, key, aFact.mfZeroCounts);
        if (number != kProfileFact_NotStated) {
            return number;
        }
    }
    return kProfileFact_NotStated;
}

/// Of LPCM the record holds the sampling rate where the bit rate of all others is.
uint32 SamplingRateOfLPCM(const ezMediaInfo& anInfo) {
    const uint32 stated = StatedNumber(anInfo, kezInfo_AudioSamplingRate, false);
    return stated != kProfileFact_NotStated ? stated : StatedNumber(anInfo, kezInfo_AudioBitRate, false);
}

} // namespace

const std::array<ProfileFact, kProfileFactCount> kProfileFacts = {{
    {"audio-codec", "ca", kWord, {kezInfo_AudioCodec}},
    {"sampling-rate", "sf", kNumber, {kezInfo_AudioSamplingRate}},
    {"channels", "ac", kNumber, {kezInfo_AudioChannelCount}},
    {"audio-bit-rate",
     "ar",
     kNumber,
     {kezInfo_AudioMaxBitRate, kezInfo_AudioBitRate, kezInfo_AudioEstimatedBitRate},
     1,
     0,
     false,
     true},
    {"bits-per-sample", "bs", kNumber, {kezInfo_AudioBitsPerSample}},
    {"audio-tracks", "ta", kNumber, {kezInfo_AudioTrackCount}, 1, 0, true},
    {"video-codec", "vc", kWord, {kezInfo_VideoCodec}},
    {"video-profile", "vp", kWord, {kezInfo_VideoProfile}},
    {"video-level", "vl", kNumber, {kezInfo_VideoLevel}, 10, 0, true},
    {"width", "wi", kNumber, {kezInfo_PictureWidth}},
    {"height", "he", kNumber, {kezInfo_PictureHeight}},
    {"frame-rate", "fr", kNumber, {kezInfo_FrameRate}, 1000, kFrameRateTolerance, false, true},
    {"video-bit-rate",
     "vr",
     kNumber,
     {kezInfo_VideoMaxBitRate, kezInfo_VideoBitRate, kezInfo_VideoEstimatedBitRate},
     1,
     0,
     false,
     true},
    {"bit-rate",
     "br",
     kNumber,
     {kezInfo_MaxBitRate, kezInfo_BitRate, kezInfo_EstimatedBitRate},
     1,
     0,
     false,
     true},
    {"process", "pr", kWord, {kezInfo_PictureProcess}},
    {"colours", "cr", kWord, {kezInfo_PictureColours}},
    {"bit-depth", "cd", kNumber, {kezInfo_PictureBitDepth}},
    {"container", "ct", ProfileFactKind::Container, {kezInfo_Container}},
    {"size", "", ProfileFactKind::Size},
}};

std::size_t ProfileFact_Find(std::string_view aName) {
    for (std::size_t i = 0; i < kProfileFactCount; ++i) {
        if (aName == kProfileFacts[i].mName || (!aName.empty() && aName == kProfileFacts[i].mKey)) {
            return i;
        }
    }
    return kProfileFactCount;
}

uint32 ProfileFact_NumberOf(const ezMediaInfo& anInfo, std::size_t aFact) {
    const bool fRate = aFact == kProfileFact_SamplingRate || aFact == kProfileFact_AudioBitRate;
    if (fRate && ProfileFact_WordOf(anInfo, kProfileFact_AudioCodec) == kLPCM) {
        // What is derived of the bit rate was taken from the sampling rate.
        return aFact == kProfileFact_SamplingRate ? SamplingRateOfLPCM(anInfo) : kProfileFact_NotStated;
    }
    return FirstNumber(anInfo, kProfileFacts[aFact]);
}

ezCString ProfileFact_WordOf(const ezMediaInfo& anInfo, std::size_t aFact) {
    return anInfo.GetCString(kProfileFacts[aFact].mKeys[0], "");
}
