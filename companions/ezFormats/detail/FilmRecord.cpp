#include "ezFormats/detail/FilmRecord.h"

#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaNumbers.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>

namespace {

constexpr std::uint32_t kMicro = 1000000;
constexpr std::uint32_t kMicrosInMilli = 1000;

/// The method of a length that nothing in front tells, where no size says how far the file goes.
constexpr const char* kNoEnd = "none: the end was not read";

/// Where a kind of track keeps its rates.
struct RateKeys {
    const char* mRate;
    const char* mMaximum;
    const char* mEstimate;
};
constexpr RateKeys kAudioKeys = {kezInfo_AudioBitRate, kezInfo_AudioMaxBitRate,
                                 kezInfo_AudioEstimatedBitRate};
constexpr RateKeys kVideoKeys = {kezInfo_VideoBitRate, kezInfo_VideoMaxBitRate,
                                 kezInfo_VideoEstimatedBitRate};

/// Bits a second; 0: not known.
struct Rates {
    std::uint32_t mAverage = 0;
    std::uint32_t mMaximum = 0;
    std::uint32_t mEstimate = 0;

    std::uint32_t GetBest() const { return mAverage != 0 ? mAverage : mEstimate; }
    std::uint32_t GetHighest() const { return std::max(mMaximum, GetBest()); }
};

/// Those of a track; a maximum that is not above the average says nothing that this does not.
template <typename Track>
Rates RatesOf(const std::optional<Track>& aTrack) {
    Rates rates;
    if (aTrack.has_value()) {
        rates = {aTrack->mBitRate, aTrack->mMaxBitRate, aTrack->mEstimatedBitRate};
        rates.mMaximum = rates.mMaximum > rates.mAverage ? rates.mMaximum : 0;
    }
    return rates;
}

/// The largest number would say that a rate varies.
void StoreNumber(ezMediaInfo& anInfo, const char* aKey, std::uint32_t aNumber) {
    if (aNumber != 0 && aNumber != kezMediaInfo_VariableRate) {
        anInfo.Set(aKey, aNumber, true);
    }
}

void StoreRates(const Rates& aRates, const RateKeys& aKeys, ezMediaInfo& anInfo) {
    StoreNumber(anInfo, aKeys.mRate, aRates.mAverage);
    StoreNumber(anInfo, aKeys.mMaximum, aRates.mMaximum);
    StoreNumber(anInfo, aKeys.mEstimate, aRates.mEstimate);
}

void StoreAudio(const AudioFacts& aFacts, const Rates& aRates, ezMediaInfo& anInfo) {
    anInfo.Set(kezInfo_AudioCodec, aFacts.mCodec, true);
    StoreNumber(anInfo, kezInfo_AudioChannelCount, aFacts.mChannels);
    StoreNumber(anInfo, kezInfo_AudioBitsPerSample,
                aFacts.mBitsPerSample <= kSound_MaxBits ? aFacts.mBitsPerSample : 0);
    if (aFacts.mCodec == "LPCM") { // its sampling rate stands where others have the bit rate
        StoreNumber(anInfo, kezInfo_AudioBitRate, aFacts.mSamplingRate);
        return;
    }
    StoreNumber(anInfo, kezInfo_AudioSamplingRate, aFacts.mSamplingRate);
    StoreRates(aRates, kAudioKeys, anInfo);
}

void StoreVideo(const VideoFacts& aFacts, const Rates& aRates, ezMediaInfo& anInfo) {
    anInfo.Set(kezInfo_HasVideoTrack, 1, true);
    anInfo.Set(kezInfo_VideoCodec, aFacts.mCodec, true);
    anInfo.Set(kezInfo_VideoProfile, aFacts.mProfile, true);
    if (aFacts.mLevel != VideoFacts::kNoLevel) {
        anInfo.Set(kezInfo_VideoLevel, aFacts.mLevel, true);
    }
    anInfo.Set(kezInfo_PictureProcess, aFacts.mScan, true);
    anInfo.Set(kezInfo_PictureColours, aFacts.mColours, true);
    anInfo.Set(kezInfo_HDR, aFacts.mHDR, true);
    anInfo.Set(kezInfo_PixelAspect, aFacts.mPixelAspect.GetText(), true);
    anInfo.Set(kezInfo_DisplayAspect, aFacts.GetDisplayAspect().GetText(), true);
    StoreNumber(anInfo, kezInfo_PictureBitDepth, aFacts.mBitDepth);
    StoreNumber(anInfo, kezInfo_PictureWidth, aFacts.mWidth);
    StoreNumber(anInfo, kezInfo_PictureHeight, aFacts.mHeight);
    StoreNumber(anInfo, kezInfo_FrameRate, aFacts.mFrameRate);
    StoreNumber(anInfo, kezInfo_FrameRateVaries, aFacts.mfFrameRateVaries ? 1 : 0);
    StoreNumber(anInfo, kezInfo_Orientation, aFacts.mOrientation > 1 ? aFacts.mOrientation : 0);
    StoreRates(aRates, kVideoKeys, anInfo);
}

/// What is left of a whole for one track, when others take so much.
std::uint32_t Rest(std::uint32_t aWhole, std::uint64_t aOthers) {
    return aOthers < aWhole ? static_cast<std::uint32_t>(aWhole - aOthers) : 0;
}

/// Estimates what is known of one kind of track alone, or of none, by the rate of the whole. Audio tracks are
/// taken for alike.
void EstimateRest(const FilmFacts& aFilm, std::uint32_t aWhole, Rates& anAudio, Rates& aVideo) {
    const bool fAudio = aFilm.mAudio.has_value();
    const bool fVideo = aFilm.mVideo.has_value();
    const std::uint32_t count = std::max(aFilm.mAudioCount, 1U);
    if (fAudio && anAudio.GetBest() == 0 && (!fVideo || aVideo.GetBest() != 0)) {
        anAudio.mEstimate = Rest(aWhole, aVideo.GetBest()) / count;
    }
    if (fVideo && aVideo.GetBest() == 0 && (!fAudio || anAudio.GetBest() != 0)) {
        aVideo.mEstimate = Rest(aWhole, std::uint64_t{anAudio.GetBest()} * count);
    }
}

/// Rate of the whole, from its size: all that is sent. The maximum is that of the parts, but not below the
/// rate.
void StoreWhole(const FilmFacts& aFilm, std::uint32_t aWhole, const Rates& anAudio, const Rates& aVideo,
                ezMediaInfo& anInfo) {
    StoreNumber(anInfo, kezInfo_BitRate, aWhole);
    const std::uint64_t highest = std::uint64_t{anAudio.GetHighest()} + aVideo.GetHighest();
    const bool fKnown = (anAudio.GetHighest() != 0 || !aFilm.mAudio.has_value()) &&
                        (aVideo.GetHighest() != 0 || !aFilm.mVideo.has_value());
    if (fKnown && highest < kezMediaInfo_VariableRate) {
        StoreNumber(anInfo, kezInfo_MaxBitRate, std::max(static_cast<std::uint32_t>(highest), aWhole));
    }
}

/// An exact length loses its fraction; an estimate is rounded up, as ezMediaInfo::SetDuration does with
/// seconds, and its bound goes down to the same least length.
void StoreLength(const FilmFacts& aFilm, ezMediaInfo& anInfo) {
    if (aFilm.mDuration == 0) {
        anInfo.Set(kezInfo_DurationMethod, aFilm.mSize.has_value() ? "" : kNoEnd, true);
        return;
    }
    const bool fEstimate = aFilm.mDurationMethod.StartsWith("estimate");
    const bool fMore = fEstimate && aFilm.mDuration % kMicrosInMilli != 0;
    const std::uint64_t milliseconds = aFilm.mDuration / kMicrosInMilli + (fMore ? 1 : 0);
    anInfo.SetDuration(milliseconds, aFilm.mDurationMethod);
    if (aFilm.mDurationBound != 0) {
        const std::uint64_t least = aFilm.mDuration - std::min(aFilm.mDurationBound, aFilm.mDuration);
        anInfo.Set(kezInfo_DurationBound, milliseconds - least / kMicrosInMilli, true);
    }
}

} // namespace

std::uint32_t FilmFacts::GetWholeBitRate() const {
    return MediaNumber_BitRate(mSize.value_or(0), mDuration, kMicro);
}

void FilmFacts::Store(ezMediaInfo& anInfo) const {
    anInfo.Set(kezInfo_Container, mContainer, true);
    StoreLength(*this, anInfo);
    Rates audio = RatesOf(mAudio);
    Rates video = RatesOf(mVideo);
    const std::uint64_t size = mSize.value_or(0);
    const std::uint64_t played = size - std::min(size, mAttachedSize);
    EstimateRest(*this, MediaNumber_BitRate(played, mDuration, kMicro), audio, video);
    StoreNumber(anInfo, kezInfo_AudioTrackCount, mAudioCount);
    StoreNumber(anInfo, kezInfo_SubtitleTrackCount, mSubtitleCount);
    anInfo.Set(kezInfo_Languages, mLanguages.c_str(), true);
    anInfo.Set(kezInfo_SubtitleLanguages, mSubtitleLanguages.c_str(), true);
    if (mAudio.has_value()) {
        StoreAudio(*mAudio, audio, anInfo);
    }
    if (mVideo.has_value()) {
        StoreVideo(*mVideo, video, anInfo);
    }
    StoreWhole(*this, GetWholeBitRate(), audio, video, anInfo);
}
