#include "ezFormats/iso/ISORecord.h"

#include "ezFormats/codecs/AMRFrames.h"
#include "ezFormats/detail/FilmRecord.h"
#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/iso/ISOLimits.h"

#include <algorithm>

#include <optional>

namespace {

/// Bits a second; 0: not known.
struct Rates {
    std::uint32_t mAverage = 0;
    std::uint32_t mEstimate = 0;
};

/// The rate of so many samples; what the frames of AMR take is not their rate.
std::uint32_t RateOfSamples(const ISOTrack& aTrack, std::uint64_t aSamples, std::uint64_t aBytes,
                            std::uint64_t aTicks) {
    const ISOAudio& audio = aTrack.mTables.mAudio;
    const bool fWide = audio.mCodec == "AMR-WB";
    std::uint32_t rate = 0;
    if (fWide || audio.mCodec == "AMR") {
        rate = AMRFrames_BitRate(aBytes, MediaNumber_Scale(aSamples, audio.mFramesPerSample, 1), fWide);
    }
    return rate != 0 ? rate : MediaNumber_BitRate(aBytes, aTicks, aTrack.mTimescale);
}

/// The rates by the sizes of the samples in the movie's tables: an average of them all, or an estimate of the
/// first ones.
Rates RatesByTable(const ISOTrack& aTrack, const std::optional<std::uint64_t>& aMediaSize, bool afStart) {
    const ISOSizeTable& table = aTrack.mTables.mSizes;
    const ISOAudio& audio = aTrack.mTables.mAudio;
    if (table.mConstantSize != 0 && audio.mPacketBytes != 0 && audio.mPacketSamples != 0) {
        Rates rates;
        rates.mAverage = MediaNumber_BitRate(audio.mPacketBytes, audio.mPacketSamples, audio.mSamplingRate);
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

/// The rates by what the tables and fragments tell of the samples.
Rates MeasureRates(const ISOMedia& aMedia, const ISOTrack& aTrack, const ISOFragmentTrack& aFragments) {
    const bool fAudioOfFilm = aTrack.mKind == ISOTrackKind::kAudio && aMedia.mMovie.mVideo.has_value();
    if (aFragments.mSamples == 0) {
        return RatesByTable(aTrack, aMedia.mSize, fAudioOfFilm);
    }
    if (aMedia.mfFragmentsCounted || aMedia.mfDurationEstimated || fAudioOfFilm) {
        return RatesByFragments(aTrack, aFragments,
                                aMedia.mfFragmentsCounted && aTrack.mTables.mSizes.mCount == 0);
    }
    return {}; // the rest of the whole says more than the first fragments
}

/// What is stated goes before what is measured.
template <typename Facts>
void CompleteRates(const ISOMedia& aMedia, const ISOTrack& aTrack, const ISOFragmentTrack& aFragments,
                   Facts& aFacts) {
    if (aFacts.mBitRate == 0) {
        const Rates rates = MeasureRates(aMedia, aTrack, aFragments);
        aFacts.mBitRate = rates.mAverage;
        aFacts.mEstimatedBitRate = rates.mEstimate;
    }
}

AudioFacts AudioOf(const ISOMedia& aMedia, const ISOTrack& aTrack) {
    AudioFacts facts = aTrack.mTables.mAudio;
    if (facts.mCodec == "LPCM" || facts.mCodec == "PCM-float") {
        // Some tables state the size of a channel's sample for that of all.
        const std::uint64_t bits = std::uint64_t{facts.mChannels} * facts.mBitsPerSample;
        facts.mBitRate = MediaNumber_BitRate(bits, 8, facts.mSamplingRate);
        facts.mMaxBitRate = 0;
        return facts;
    }
    CompleteRates(aMedia, aTrack, aMedia.mFragments.mAudio, facts);
    return facts;
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

/// Whether the samples last differently long. What is left of a duration that no number of ticks is, or no
/// number of milliseconds where the stamps were such once, is no difference, as long as it is small.
bool IsVarying(const ISOTrack& aTrack) {
    constexpr std::uint32_t kMillisecondsInSecond = 1000;
    const std::uint64_t difference = aTrack.mTables.mMostTicks - aTrack.mTables.mLeastTicks;
    const std::uint64_t rounding = std::max(aTrack.mTimescale / kMillisecondsInSecond, 1U);
    return difference > rounding || 2 * difference > aTrack.mTables.mLeastTicks;
}

VideoFacts VideoOf(const ISOMedia& aMedia, const ISOTrack& aTrack) {
    VideoFacts facts = aTrack.mTables.mVideo;
    facts.mFrameRate = FrameRateOf(aTrack, aMedia.mFragments.mVideo);
    facts.mfFrameRateVaries = facts.mFrameRate != 0 && IsVarying(aTrack);
    facts.mOrientation = aTrack.mMatrix.Then(aMedia.mMovie.mMatrix).GetOrientation();
    CompleteRates(aMedia, aTrack, aMedia.mFragments.mVideo, facts);
    return facts;
}

} // namespace

void StoreFacts(const ISOMedia& aMedia, const char* aContainer, ezMediaInfo& anInfo) {
    const ISOMovie& movie = aMedia.mMovie;
    FilmFacts film;
    film.mContainer = aContainer;
    if (movie.mAudio.has_value()) {
        film.mAudio = AudioOf(aMedia, *movie.mAudio);
    }
    if (movie.mVideo.has_value()) {
        film.mVideo = VideoOf(aMedia, *movie.mVideo);
    }
    film.mAudioCount = movie.mAudioCount;
    film.mLanguages = movie.mLanguages;
    film.mSubtitleCount = movie.mSubtitleCount;
    film.mSubtitleLanguages = movie.mSubtitleLanguages;
    film.mDuration = aMedia.mDuration;
    film.mDurationMethod = aMedia.mDurationMethod;
    film.mDurationBound = aMedia.mDurationBound;
    film.mSize = aMedia.mSize;
    film.Store(anInfo);
    movie.mTexts.Store(anInfo);
    movie.mCover.Store(anInfo);
}
