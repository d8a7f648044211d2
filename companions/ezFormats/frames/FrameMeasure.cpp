#include "ezFormats/frames/FrameMeasure.h"

#include "ezBytes/Limits.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/detail/SoundRecord.h"
#include "ezFormats/frames/FrameLimits.h"

#include "ezPlatform/base/Checked.h"

#include <algorithm>

namespace {

std::uint64_t Less(std::uint64_t aValue, std::uint64_t aPart) {
    return aValue - std::min(aValue, aPart);
}

/// Whether one place holds less sound in its bytes than another. Both are far below 2^32.
bool IsFaster(const FrameSurvey& aPlace, const FrameSurvey& anOther) {
    return aPlace.mSamples * anOther.mBytes < anOther.mSamples * aPlace.mBytes;
}

/// The samples of so many bytes that go by as those looked at do.
std::uint64_t SamplesOf(std::uint64_t aBytes, const FrameSurvey& aSeen) {
    return MediaNumber_Scale(aBytes, aSeen.mSamples, aSeen.mBytes);
}

} // namespace

FrameMeasure::FrameMeasure(MediaBytes& aBytes, CodedFrames& aFrames)
    : mBytes(aBytes), mFrames(aFrames), mPlaceSize(kFrames_PlaceSize) {}

void FrameMeasure::LookAtStart() {
    const CodedFrame& first = mFrames.GetFirst();
    mPlaceSize =
        std::min(std::max(kFrames_PlaceLength * first.mSize, kFrames_PlaceSize), kFrames_MaxPlaceSize);
    mBytes.Load(first.mPosition, mPlaceSize);
    mStart = mFrames.SurveyBuffered(first, first.mPosition + mPlaceSize, &mWholeStart);
    mAll = mStart;
}

/// Looks at the frames of a place. False where there are none, and where the place is not before the end.
bool FrameMeasure::LookAt(std::uint64_t aPlace, std::uint64_t anEnd, FrameSurvey* aSurvey) {
    CodedFrame frame;
    if (aPlace >= anEnd || !mFrames.FindNear(aPlace, mPlaceSize, &frame)) {
        return false;
    }
    mFrames.SurveyBuffered(frame, std::min(aPlace + mPlaceSize, anEnd), aSurvey);
    mAll.Add(*aSurvey);
    return true;
}

/// The place before the end: as far as it is buffered, as tags were looked for there, if that is half of it.
std::uint64_t FrameMeasure::LastPlace(std::uint64_t anEnd) const {
    const std::uint64_t tail = Less(mBytes.GetEnd(), kAudioTail_ReadSize);
    const std::uint64_t last = Less(anEnd, mPlaceSize);
    return tail <= last + mPlaceSize / 2 ? std::max(tail, last) : last;
}

void FrameMeasure::Finish(std::uint64_t anEnd, bool afMayReadWhole) {
    const std::uint64_t start = mFrames.GetFirst().mPosition;
    mSize = Less(anEnd, start);
    if (mStart.mEnd >= anEnd) {
        mMethod = "counted";
        mSamples = mStart.mSamples;
        mfConstant = mStart.IsConstant();
        return;
    }
    const std::uint64_t last = std::max(mStart.mEnd, LastPlace(anEnd));
    FrameSurvey end;
    const bool fEnd = LookAt(last, anEnd, &end);
    FrameSurvey middle;
    if (fEnd && mAll.IsConstant() && (last == mStart.mEnd || LookAt(start + mSize / 2, anEnd, &middle)) &&
        mAll.IsConstant()) {
        TakeConstant();
        return;
    }
    if ((afMayReadWhole || mSize <= kFrames_CountedSize) && CountAll(anEnd, afMayReadWhole)) {
        return;
    }
    mStart = mWholeStart;
    Estimate(LookAround(end, anEnd), end);
}

/// The rate is stated, or the size of a frame tells it.
void FrameMeasure::TakeConstant() {
    const CodedFrame& first = mFrames.GetFirst();
    mfConstant = true;
    mMethod = "constant rate";
    mSamples = first.mBitRate != 0
                   ? MediaNumber_Scale(mSize, std::uint64_t{8} * first.mSamplingRate, first.mBitRate)
                   : SamplesOf(mSize, mAll);
}

/// Looks at all frames. False where the file holds so much else that they cannot be counted.
bool FrameMeasure::CountAll(std::uint64_t anEnd, bool afMayReadWhole) {
    if (afMayReadWhole) {
        mBytes.AllowWholeMedia();
    }
    mFrames.SetStep(kFrames_CountedStep);
    FrameSurvey all = mFrames.Survey(mFrames.GetFirst(), anEnd);
    CodedFrame frame;
    while (all.mEnd < anEnd && mFrames.FindNear(all.mEnd, kFrames_CountedStep, &frame)) {
        const FrameSurvey more = mFrames.Survey(frame, anEnd);
        all.Add(more);
        all.mEnd = more.mEnd;
    }
    // What stands after the last frame may be a tag of a kind that nobody knows.
    if (Less(anEnd, all.mEnd) > kFrames_CountedStep || mBytes.HasReadFailed() || mBytes.IsBudgetUsedUp()) {
        return false;
    }
    mAll = all;
    mSize = all.mBytes;
    mSamples = all.mSamples;
    mMethod = "counted";
    return true;
}

void FrameMeasure::Places::Take(const FrameSurvey& aPlace) {
    mSlowest = mAll.mFrames == 0 || IsFaster(mSlowest, aPlace) ? aPlace : mSlowest;
    mFastest = mAll.mFrames == 0 || IsFaster(aPlace, mFastest) ? aPlace : mFastest;
    mAll.Add(aPlace);
}

/// Looks at the middle of each part, all of one size, of what was not seen.
FrameMeasure::Places FrameMeasure::LookAround(const FrameSurvey& aLast, std::uint64_t anEnd) {
    const std::uint64_t rest = Less(Less(anEnd, aLast.mBytes), mStart.mEnd);
    const std::uint64_t half = rest / kFrames_InnerPlaces / 2;
    Places places;
    for (std::uint32_t i = 0; i < kFrames_InnerPlaces; ++i) {
        const std::uint64_t middle = mStart.mEnd + rest / kFrames_InnerPlaces * i + half;
        FrameSurvey place;
        if (LookAt(Less(middle, mPlaceSize / 2), anEnd, &place)) {
            places.Take(place);
        }
    }
    PassSilence(places.mAll, anEnd);
    return places;
}

/// Counts more at the start while that holds more than twice the sound in its bytes that the places do:
/// silence stands for none but itself.
void FrameMeasure::PassSilence(const FrameSurvey& aInner, std::uint64_t anEnd) {
    FrameSurvey next = mStart;
    for (std::uint32_t i = 0; i < kFrames_SilentPlaces && aInner.mFrames != 0 && next.mEnd < anEnd &&
                              next.mSamples * aInner.mBytes > 2 * aInner.mSamples * next.mBytes;
         ++i) {
        CodedFrame frame;
        if (!mFrames.FindNear(mStart.mEnd, mPlaceSize, &frame)) {
            return;
        }
        mFrames.SurveyBuffered(frame, frame.mPosition + mPlaceSize, &next);
        mStart.Add(next);
        mStart.mEnd = next.mEnd;
    }
}

void FrameMeasure::Estimate(const Places& aPlaces, const FrameSurvey& aLast) {
    const std::uint64_t rest = Less(mSize, mStart.mBytes + aLast.mBytes);
    const std::uint64_t seen = mStart.mSamples + aLast.mSamples;
    mMethod = "estimate: size and mean rate of places";
    if (aPlaces.mAll.mFrames == 0) {
        mSamples = SamplesOf(mSize, mAll);
        return;
    }
    const std::uint64_t mean = SamplesOf(rest, aPlaces.mAll);
    const std::uint64_t most = SamplesOf(rest, aPlaces.mSlowest);
    const std::uint64_t least = SamplesOf(rest, aPlaces.mFastest);
    // Of the means of six places at a time, nineteen in twenty lie so near the mean of all.
    const std::uint64_t error = Less(most, least) / 3;
    const std::uint64_t longest = std::min(ezSaturating_Add64(mean, error), most);
    mSamples = ezSaturating_Add64(seen, longest);
    mBound = longest - std::max(Less(mean, error), least);
}

void FrameMeasure::Tell(SoundFacts& aSound) const {
    const CodedFrame& first = mFrames.GetFirst();
    aSound.mSamplingRate = first.mSamplingRate;
    aSound.mChannels = first.mChannels;
    aSound.mSamples = mSamples;
    aSound.mBoundSamples = mBound;
    aSound.mDurationMethod = mMethod;
    aSound.mBytes = mSize;
    aSound.mEstimatedBitRate = MediaNumber_BitRate(mStart.mBytes, mStart.mSamples, first.mSamplingRate);
    // Without the whole, what is stated is believed, and one size is not.
    if (mfConstant || (mSamples == 0 && first.mBitRate != 0 && mAll.IsConstant())) {
        aSound.mBitRate = first.mBitRate != 0
                              ? first.mBitRate
                              : MediaNumber_BitRate(first.mSize, first.mSamples, first.mSamplingRate);
    }
}
