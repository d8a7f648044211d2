#include "ezFormats/iso/ISORecord.h"

#include "ezFormats/codecs/AMRFrames.h"
#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/iso/ISOLimits.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <optional>

namespace {

constexpr std::uint32_t kMicro = 1000000;
constexpr std::uint32_t kMicrosInMilli = 1000;

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

void StoreNumber(ezMediaInfo& anInfo, const char* aKey, std::uint32_t aNumber) {
    if (aNumber != 0) {
        anInfo.Set(aKey, aNumber, true);
    }
}

void StoreRates(const Rates& aRates, const RateKeys& aKeys, ezMediaInfo& anInfo) {
    StoreNumber(anInfo, aKeys.mRate, aRates.mAverage);
    StoreNumber(anInfo, aKeys.mMaximum, aRates.mMaximum);
    StoreNumber(anInfo, aKeys.mEstimate, aRates.mEstimate);
}

/// The rate of so many samples; what the frames of AMR take is not their rate.
std::uint32_t RateOfSamples(const ISOTrack& aTrack, std::uint64_t aSamples, std::uint64_t aBytes,
                            std::uint64_t aTicks) {
    const ISOCodec& codec = aTrack.mTables.mCodec;
    const bool fWide = codec.mName == "AMR-WB";
    std::uint32_t rate = 0;
    if (fWide || codec.mName == "AMR") {
        rate = AMRFrames_BitRate(aBytes, MediaNumber_Scale(aSamples, codec.mFramesPerSample, 1), fWide);
    }
    return rate != 0 ? rate : MediaNumber_BitRate(aBytes, aTicks, aTrack.mTimescale);
}

/// The rates by the sizes of the samples in the movie's tables: an average of them all, or an estimate of the
/// first ones.
Rates RatesByTable(const ISOTrack& aTrack, const std::optional<std::uint64_t>& aMediaSize, bool afStart) {
    const ISOSizeTable& table = aTrack.mTables.mSizes;
    const ISOCodec& codec = aTrack.mTables.mCodec;
    if (table.mConstantSize != 0 && codec.mPacketBytes != 0 && codec.mPacketSamples != 0) {
        Rates rates;
        rates.mAverage = MediaNumber_BitRate(codec.mPacketBytes, codec.mPacketSamples, codec.mSamplingRate);
        return rates;
    }
    const bool fWhole = table.GetBytes() <= kISO_MaxSizeTable;
    if (!fWhole && !afStart) {
        return {};
    }
    const ISOSizeSum sum = SumSizes(table, fWhole ? kISO_MaxSizeTable : kISO_SizeTableStart);
    const bool fTold = !aMediaSize || sum.mBytes <= *aMediaSize; // else the table is damaged
    Rates rates;
    if (!fTold || sum.mSamples == 0) {
        return rates;
    }
    if (sum.mSamples == table.mCount) {
        rates.mAverage = RateOfSamples(aTrack, sum.mSamples, sum.mBytes, aTrack.mDuration);
    } else {
        const std::uint64_t bytes = MediaNumber_Scale(sum.mBytes, table.mCount, sum.mSamples);
        rates.mEstimate = RateOfSamples(aTrack, table.mCount, bytes, aTrack.mDuration);
    }
    return rates;
}

/// The rates by the fragments: an average when all were read.
Rates RatesByFragments(const ISOTrack& aTrack, const ISOFragmentTrack& aFragments, bool afCounted) {
    const std::uint32_t rate =
        RateOfSamples(aTrack, aFragments.mSamples, aFragments.mBytes, aFragments.mSampleTicks);
    Rates rates;
    (afCounted ? rates.mAverage : rates.mEstimate) = rate;
    return rates;
}

bool IsPlain(const ISOCodec& aCodec) {
    return aCodec.mName == "LPCM";
}

/// What is stated goes before what is measured. A maximum below the average does not count.
Rates RatesOf(const ISOMedia& aMedia, const ISOTrack& aTrack, const ISOFragmentTrack& aFragments) {
    const ISOCodec& codec = aTrack.mTables.mCodec;
    Rates rates;
    if (IsPlain(codec) ||
        codec.mName == "PCM-float") { // some tables state the size of a channel's sample for that of all
        const std::uint64_t bits = std::uint64_t{codec.mChannels} * codec.mBitsPerSample;
        rates.mAverage = MediaNumber_BitRate(bits, 8, codec.mSamplingRate);
        return rates;
    }
    const bool fAudioOfFilm = aTrack.mKind == ISOTrackKind::kAudio && aMedia.mMovie.mVideo.has_value();
    if (codec.mBitRate != 0) {
        rates.mAverage = codec.mBitRate;
    } else if (aFragments.mSamples == 0) {
        rates = RatesByTable(aTrack, aMedia.mSize, fAudioOfFilm);
    } else if (aMedia.mfFragmentsCounted || aMedia.mfDurationEstimated || fAudioOfFilm) {
        rates = RatesByFragments(aTrack, aFragments,
                                 aMedia.mfFragmentsCounted && aTrack.mTables.mSizes.mCount == 0);
    } // else the rest of the whole says more than the first fragments
    // A maximum that is the average itself says that the rate is constant.
    rates.mMaximum = codec.mMaxBitRate > rates.mAverage ? codec.mMaxBitRate : 0;
    return rates;
}

void StoreAudio(const ISOCodec& aCodec, const Rates& aRates, ezMediaInfo& anInfo) {
    anInfo.Set(kezInfo_AudioCodec, aCodec.mName, true);
    StoreNumber(anInfo, kezInfo_AudioChannelCount, aCodec.mChannels);
    StoreNumber(anInfo, kezInfo_AudioBitsPerSample, aCodec.mBitsPerSample);
    if (IsPlain(aCodec)) { // its sampling rate stands where others have the bit rate
        StoreNumber(anInfo, kezInfo_AudioBitRate, aCodec.mSamplingRate);
        return;
    }
    StoreNumber(anInfo, kezInfo_AudioSamplingRate, aCodec.mSamplingRate);
    StoreRates(aRates, kAudioKeys, anInfo);
}

/// Pictures in 1000 seconds, of the movie's tables or else of its fragments.
std::uint32_t FrameRateOf(const ISOTrack& aTrack, const ISOFragmentTrack& aFragments) {
    const ISOTables& tables = aTrack.mTables;
    if (tables.mTicks != 0) {
        return MediaNumber_FrameRate(tables.mTimedSamples, tables.mTicks, aTrack.mTimescale);
    }
    if (tables.mSizes.mCount != 0) {
        return MediaNumber_FrameRate(tables.mSizes.mCount, aTrack.mDuration, aTrack.mTimescale);
    }
    return MediaNumber_FrameRate(aFragments.mSamples, aFragments.mSampleTicks, aTrack.mTimescale);
}

void StoreVideo(const ISOCodec& aCodec, std::uint32_t aFrameRate, const Rates& aRates, ezMediaInfo& anInfo) {
    anInfo.Set(kezInfo_HasVideoTrack, 1, true);
    anInfo.Set(kezInfo_VideoCodec, aCodec.mName, true);
    anInfo.Set(kezInfo_VideoProfile, aCodec.mProfile, true);
    if (aCodec.mLevel != ISOCodec::kNoLevel) {
        anInfo.Set(kezInfo_VideoLevel, aCodec.mLevel, true);
    }
    anInfo.Set(kezInfo_PictureProcess, aCodec.mScan, true);
    StoreNumber(anInfo, kezInfo_PictureWidth, aCodec.mWidth);
    StoreNumber(anInfo, kezInfo_PictureHeight, aCodec.mHeight);
    StoreNumber(anInfo, kezInfo_FrameRate, aFrameRate);
    StoreRates(aRates, kVideoKeys, anInfo);
}

/// What is left of a whole for one track, when others take so much.
std::uint32_t Rest(std::uint32_t aWhole, std::uint64_t aOthers) {
    return aOthers < aWhole ? static_cast<std::uint32_t>(aWhole - aOthers) : 0;
}

/// Estimates what is known of one kind of track alone, or of none, by the rate of the whole. Audio tracks are
/// taken for alike.
void EstimateRest(const ISOMovie& aMovie, std::uint32_t aWhole, Rates& anAudio, Rates& aVideo) {
    const bool fAudio = aMovie.mAudio.has_value();
    const bool fVideo = aMovie.mVideo.has_value();
    if (fAudio && anAudio.GetBest() == 0 && (!fVideo || aVideo.GetBest() != 0)) {
        anAudio.mEstimate = Rest(aWhole, aVideo.GetBest()) / std::max(aMovie.mAudioCount, 1U);
    }
    if (fVideo && aVideo.GetBest() == 0 && (!fAudio || anAudio.GetBest() != 0)) {
        aVideo.mEstimate = Rest(aWhole, std::uint64_t{anAudio.GetBest()} * aMovie.mAudioCount);
    }
}

/// Rate of the whole, from its size: all that is sent. The maximum is that of the parts, but not below the
/// rate.
void StoreWhole(const ISOMedia& aMedia, std::uint32_t aWhole, const Rates& anAudio, const Rates& aVideo,
                ezMediaInfo& anInfo) {
    StoreNumber(anInfo, kezInfo_BitRate, aWhole);
    const std::uint64_t highest = std::uint64_t{anAudio.GetHighest()} + aVideo.GetHighest();
    const bool fKnown = (anAudio.GetHighest() != 0 || !aMedia.mMovie.mAudio.has_value()) &&
                        (aVideo.GetHighest() != 0 || !aMedia.mMovie.mVideo.has_value());
    if (fKnown && highest < kezMediaInfo_VariableRate) {
        StoreNumber(anInfo, kezInfo_MaxBitRate, std::max(static_cast<std::uint32_t>(highest), aWhole));
    }
}

} // namespace

void StoreFacts(const ISOMedia& aMedia, ezMediaInfo& anInfo) {
    const ISOMovie& movie = aMedia.mMovie;
    if (aMedia.mDuration != 0) {
        anInfo.SetDuration(aMedia.mDuration / kMicrosInMilli, aMedia.mDurationMethod);
        if (aMedia.mDurationBound != 0) {
            anInfo.Set(kezInfo_DurationBound, aMedia.mDurationBound / kMicrosInMilli, true);
        }
    }
    const std::uint32_t whole = MediaNumber_BitRate(aMedia.mSize.value_or(0), aMedia.mDuration, kMicro);
    Rates audio;
    Rates video;
    if (movie.mAudio.has_value()) {
        audio = RatesOf(aMedia, *movie.mAudio, aMedia.mFragments.mAudio);
    }
    if (movie.mVideo.has_value()) {
        video = RatesOf(aMedia, *movie.mVideo, aMedia.mFragments.mVideo);
    }
    EstimateRest(movie, whole, audio, video);
    if (movie.mAudioCount != 0) {
        anInfo.Set(kezInfo_AudioTrackCount, movie.mAudioCount, true);
    }
    if (movie.mAudio.has_value()) {
        StoreAudio(movie.mAudio->mTables.mCodec, audio, anInfo);
    }
    if (movie.mVideo.has_value()) {
        const std::uint32_t frameRate = FrameRateOf(*movie.mVideo, aMedia.mFragments.mVideo);
        StoreVideo(movie.mVideo->mTables.mCodec, frameRate, video, anInfo);
        const unsigned orientation = movie.mVideo->mMatrix.Then(movie.mMatrix).GetOrientation();
        StoreNumber(anInfo, kezInfo_Orientation, orientation != 1 ? orientation : 0);
    }
    StoreWhole(aMedia, whole, audio, video, anInfo);
    movie.mTexts.Store(anInfo);
    movie.mCover.Store(anInfo);
}
