#include "ezFormats/rules/ProfileRuleFacts.h"

#include "ezPlatform/media/MediaInfo.h"

namespace {

/// Also what a record states of a rate that varies: no rule takes such a rate for a number.
constexpr uint32 kNotStated = kezMediaInfo_VariableRate;
static_assert(ProfileFactValues::kMaximum + 1 == kNotStated, "no number lies between");

/// Hundredths of a picture a second: less than what parts 23.976 from 24, and more than what rounding a
/// time scale does to a rate.
constexpr uint32 kFrameRateTolerance = 10;

constexpr const char* kLPCM = "LPCM";

constexpr ProfileFactKind kWord = ProfileFactKind::Word;
constexpr ProfileFactKind kNumber = ProfileFactKind::Number;

// Where the facts stand that need more than the table says.
constexpr std::size_t kAudioCodec = 0;
constexpr std::size_t kSamplingRate = 1;
constexpr std::size_t kAudioBitRate = 3;

uint32 StatedNumber(const ezMediaInfo& anInfo, const char* aKey, bool afZeroCounts) {
    const uint32 number = anInfo.GetUInt32(aKey, kNotStated);
    return number == 0 && !afZeroCounts ? kNotStated : number;
}

uint32 FirstNumber(const ezMediaInfo& anInfo, const ProfileFact& aFact) {
    for (const char* const key : aFact.mKeys) {
        const uint32 number = key == nullptr ? kNotStated : StatedNumber(anInfo, key, aFact.mfZeroCounts);
        if (number != kNotStated) {
            return number;
        }
    }
    return kNotStated;
}

/// Of LPCM the record holds the sampling rate where the bit rate of all others is.
uint32 SamplingRateOfLPCM(const ezMediaInfo& anInfo) {
    const uint32 stated = StatedNumber(anInfo, kezInfo_AudioSamplingRate, false);
    return stated != kNotStated ? stated : StatedNumber(anInfo, kezInfo_AudioBitRate, false);
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
}};

std::size_t ProfileFact_Find(std::string_view aName) {
    for (std::size_t i = 0; i < kProfileFactCount; ++i) {
        if (aName == kProfileFacts[i].mName || aName == kProfileFacts[i].mKey) {
            return i;
        }
    }
    return kProfileFactCount;
}

void ProfileFactValues::Read(std::size_t aFact) const {
    mfRead[aFact] = true;
    const ProfileFact& fact = kProfileFacts[aFact];
    if (fact.mKind == ProfileFactKind::Word) {
        mWords[aFact] = mInfo.GetCString(fact.mKeys[0], "");
        mfStated[aFact] = !mWords[aFact].IsEmpty();
        return;
    }
    mNumbers[aFact] = FirstNumber(mInfo, fact);
    if ((aFact == kSamplingRate || aFact == kAudioBitRate) && GetWord(kAudioCodec) == kLPCM) {
        // What is derived of the bit rate was taken from the sampling rate.
        mNumbers[aFact] = aFact == kSamplingRate ? SamplingRateOfLPCM(mInfo) : kNotStated;
    }
    mfStated[aFact] = mNumbers[aFact] != kNotStated;
}
