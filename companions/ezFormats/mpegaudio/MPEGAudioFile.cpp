#include "ezFormats/mpegaudio/MPEGAudioFile.h"

#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/mpegaudio/MPEGAudioLimits.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/ID3Tag.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <optional>

namespace {

ByteReader ReaderAt(ByteSource& aBytes, std::uint64_t aPosition) {
    ByteReader reader(aBytes);
    reader.Skip(aPosition);
    return reader;
}

} // namespace

MPEGAudioMeasure::MPEGAudioMeasure(MediaBytes& aBytes, MPEGAudioFrames& aFrames)
    : mBytes(aBytes), mFrames(aFrames), mSound(aFrames.GetFirst()) {}

/// Takes the Xing or VBRI header of a frame that stands at the start, and that other frames follow a little
/// later only.
void MPEGAudioMeasure::TakeCountBefore(std::uint64_t aStart) {
    const MPEGAudioFrame& first = mFrames.GetFirst();
    MPEGAudioFrame frame;
    if (first.mPosition > aStart &&
        first.mPosition - aStart <= kMPEGAudioMaxFrameSize + kMPEGAudio_MaxGapAfterCount &&
        mFrames.Read(aStart, &frame) && ezMPEGAudioHeader_IsSameStream(frame.mWord, first.mWord) &&
        frame.mSize != 0 && frame.mPosition + frame.mSize + kMPEGAudio_MaxGapAfterCount >= first.mPosition) {
        mCount = ReadMPEGAudioCount(mBytes, frame);
    }
}

void MPEGAudioMeasure::LookAtStart(std::uint64_t aStart) {
    const MPEGAudioFrame& first = mFrames.GetFirst();
    mCount = ReadMPEGAudioCount(mBytes, first);
    if (mCount.mKind == MPEGAudioCount::Kind::None) {
        TakeCountBefore(aStart);
    }
    MPEGAudioFrame second;
    // A lone frame with such a header has no sound, but tells what sound there would be.
    if (ReadMPEGAudioCount(mBytes, first).mKind != MPEGAudioCount::Kind::None &&
        mFrames.Next(first, &second)) {
        mSound = second;
    }
    const std::uint64_t limit =
        mCount.mFrames != 0 ? mFrames.GetEnd() : first.mPosition + kMPEGAudio_SurveySize;
    mSurvey = SurveyFrames(mFrames, mSound, limit);
    if (mSurvey.mLowestRate != mSurvey.mHighestRate) {
        mCount.mKind = MPEGAudioCount::Kind::Variable;
    }
}

void MPEGAudioMeasure::Finish(std::uint64_t anEnd, bool afMayReadWhole) {
    const std::uint64_t start = mFrames.GetFirst().mPosition;
    const std::optional<std::uint64_t> size = mBytes.GetSize();
    const bool fGoesOn = size && GoesOnAfterCount(anEnd);
    mLength = LengthOfCount(mCount, mSound, {anEnd - start, size, fGoesOn});
    if (!mLength.mfKnown && size) {
        Estimate(anEnd, afMayReadWhole);
    } else if (!mLength.mfKnown) {
        mLength.mAverageRate = LengthOfFrames(mSurvey, mCount, mSound).mAverageRate;
    }
}

/// Looks for frames where the counted ones end, or after the tag of another file that was put there. Only
/// where a second or more may have been forgotten: a few frames are an encoder's own way to count.
bool MPEGAudioMeasure::GoesOnAfterCount(std::uint64_t anEnd) {
    const std::uint64_t start = mFrames.GetFirst().mPosition;
    const std::uint64_t size = SizeOfCount(mCount, mSound);
    if (size == 0 || mFrames.IsFreeFormat() || size > anEnd - start ||
        anEnd - start - size < kMPEGAudio_SurveySize) {
        return false;
    }
    ByteReader reader = ReaderAt(mBytes, start + size);
    ID3Tag tag;
    const bool fTag = ReadID3Tag(reader, &tag);
    const std::uint64_t place = fTag ? reader.GetPosition() + tag.GetRest() : start + size;
    MPEGAudioFrame frame;
    return place < anEnd && mFrames.FindNear(place, kMPEGAudio_SurveySize, &frame);
}

void MPEGAudioMeasure::Estimate(std::uint64_t anEnd, bool afMayReadWhole) {
    MPEGAudioPlaces places = {mSurvey, mSurvey};
    mfAllSeen = mSurvey.mEnd + kMPEGAudioMinFrameSize > anEnd;
    if (!mfAllSeen) {
        LookAround(anEnd, &places);
    }
    const std::uint64_t size = anEnd - mSound.mPosition;
    if (!mfAllSeen && IsVariable() && !mFrames.IsFreeFormat() &&
        (afMayReadWhole || size <= kMPEGAudio_CountedSize)) {
        mfAllSeen = CountAll(anEnd, afMayReadWhole);
    }
    if (mfAllSeen) {
        mLength = LengthOfFrames(mSurvey, mCount, mSound);
    } else if (!mfPlaceMissed && !IsVariable()) {
        mLength = LengthOfRate(size, mSurvey, mSound);
    } else {
        mLength = LengthOfSize(size, mSurvey, places, mSound);
    }
}

/// Looks at three more places. One rate at the start alone may be that of silence.
void MPEGAudioMeasure::LookAround(std::uint64_t anEnd, MPEGAudioPlaces* aPlaces) {
    const std::uint64_t size = anEnd - mSound.mPosition;
    if (mSound.mHeader.mLayer != 3 || mFrames.IsFreeFormat()) {
        return; // no rate changes
    }
    if (size < std::uint64_t{8} * kMPEGAudio_SurveySize) { // of what was not seen, the end is buffered
        const std::uint64_t place =
            std::max(mSurvey.mEnd, anEnd - std::min<std::uint64_t>(size, kMPEGAudio_SurveySize));
        if (anEnd - place > std::uint64_t{2} * kMPEGAudioMaxFrameSize) {
            LookAt(place, aPlaces);
        }
        return;
    }
    for (unsigned quarter = 1; quarter < 4; ++quarter) {
        LookAt(mSound.mPosition + size / 4 * quarter, aPlaces);
    }
}

void MPEGAudioMeasure::LookAt(std::uint64_t aPlace, MPEGAudioPlaces* aPlaces) {
    MPEGAudioFrame frame;
    if (!mFrames.FindNear(aPlace, kMPEGAudio_SurveySize, &frame)) {
        mfPlaceMissed = true;
        return;
    }
    const MPEGAudioSurvey survey =
        SurveyFrames(mFrames, frame, aPlace + kMPEGAudio_SurveySize - kMPEGAudioMaxFrameSize);
    mSurvey.Add(survey);
    aPlaces->Take(survey);
}

/// Looks at all frames. False where the file holds so much else that they cannot be counted.
bool MPEGAudioMeasure::CountAll(std::uint64_t anEnd, bool afMayReadWhole) {
    if (afMayReadWhole) {
        mBytes.AllowWholeMedia();
    }
    mFrames.SetStep(kMPEGAudio_CountedStep);
    MPEGAudioSurvey all = SurveyFrames(mFrames, mSound, anEnd);
    MPEGAudioFrame frame;
    while (all.mEnd < anEnd && mFrames.FindNear(all.mEnd, kMPEGAudio_CountedStep, &frame)) {
        const MPEGAudioSurvey more = SurveyFrames(mFrames, frame, anEnd);
        all.Add(more);
        all.mEnd = more.mEnd;
    }
    // What stands after the last frame may be a tag of a kind that nobody knows.
    if (anEnd - std::min(all.mEnd, anEnd) > kMPEGAudio_CountedStep || mBytes.HasReadFailed() ||
        mBytes.IsBudgetUsedUp()) {
        return false;
    }
    mSurvey = all;
    return true;
}

bool MPEGAudioMeasure::IsVariable() const {
    return mCount.mKind == MPEGAudioCount::Kind::Variable || mSurvey.mLowestRate != mSurvey.mHighestRate;
}

void MPEGAudioMeasure::Store(ezMediaInfo& anInfo) const {
    const ezMPEGAudioHeader& header = mSound.mHeader;
    anInfo.Set(kezInfo_AudioTrackCount, 1, true);
    anInfo.Set(kezInfo_AudioCodec, ezMPEGAudioHeader_CodecOf(header.mLayer), true);
    anInfo.Set(kezInfo_AudioSamplingRate, header.mSamplingRate, true);
    anInfo.Set(kezInfo_AudioChannelCount, header.mChannels, true);
    if (mFrames.IsFreeFormat()) {
        anInfo.Set(kezInfo_AudioBitRate, LengthOfFrames(mSurvey, mCount, mSound).mAverageRate, true);
        anInfo.Set(kezInfo_PictureProcess, kezMediaInfo_FreeFormat, true);
    } else {
        anInfo.Set(kezInfo_AudioBitRate, IsVariable() ? kezMediaInfo_VariableRate : header.mBitRate, true);
    }
    if (!mFrames.IsFreeFormat() && IsVariable()) {
        anInfo.Set(kezInfo_AudioMaxBitRate, mfAllSeen ? mSurvey.mHighestRate : header.mMaxBitRate, true);
        anInfo.Set(kezInfo_AudioEstimatedBitRate, mLength.mAverageRate, true);
    }
    if (mLength.mfKnown) {
        anInfo.SetDuration(mLength.mMilliseconds, mLength.mMethod);
        if (mLength.mBound != 0) {
            anInfo.Set(kezInfo_DurationBound, mLength.mBound, true);
        }
    }
}
