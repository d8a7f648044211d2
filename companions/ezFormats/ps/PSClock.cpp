#include "ezFormats/ps/PSClock.h"

#include "ezFormats/codecs/MPEGVideoHeaders.h"
#include "ezFormats/mpegsystem/PESHeader.h"
#include "ezFormats/ps/PSLimits.h"

#include <algorithm>
#include <utility>

void PSPictures::Add(const unsigned char* aBytes, std::size_t aSize) {
    constexpr std::size_t kHeader = 6; // start code, and the bytes of temporal_reference
    for (std::size_t i = 0; i + kHeader <= aSize; ++i) {
        const unsigned char* const unit = aBytes + i;
        if (unit[0] != 0 || unit[1] != 0 || unit[2] != 1) {
            continue;
        }
        if (unit[3] == kMPEGVideo_Group && mfStarted) { // the references begin anew
            mOffset = mLast + 1;
        } else if (unit[3] == kMPEGVideo_Picture) {
            const std::int64_t reference = unit[4] << 2 | unit[5] >> 6;
            mOffset = mfStarted ? mOffset : -reference;
            mfStarted = true;
            mLast = std::max(mLast, reference + mOffset);
        }
    }
}

void PSStretch::AddContent(const PSContent& aContent) {
    const auto fIs = [&aContent](const TrackStamps& aStamps) { return aStamps.mID == aContent.mID; };
    auto track = std::find_if(mTracks.begin(), mTracks.end(), fIs);
    if (track == mTracks.end()) {
        if (!aContent.mPTS.has_value() || mTracks.size() == kPS_MaxTracks) {
            return;
        }
        mTracks.emplace_back();
        mTracks.back().mID = aContent.mID;
        track = mTracks.end() - 1;
    }
    if (aContent.mPTS.has_value()) {
        track->mStamps.Add(*aContent.mPTS);
        const bool fLatest = track->mStamps.GetLatest() == *aContent.mPTS;
        track->mTail = fLatest ? 0 : track->mTail;
        track->mPictures = fLatest ? PSPictures() : track->mPictures;
    }
    track->mTail += aContent.mSize;
    if (StreamID_IsVideo(aContent.mID.mStream)) {
        track->mPictures.Add(aContent.mBytes, aContent.mSize);
    }
}

std::uint64_t PSStretch::TrackStamps::GetTailTicks(const PSFrames& aFrames) const {
    const bool fVideo = StreamID_IsVideo(mID.mStream) || mID.mStream == kStreamID_Extended;
    const std::uint64_t ticks = fVideo ? aFrames.mPictureTicks : aFrames.mSoundTicks;
    const std::uint64_t frames = aFrames.mSoundBytes != 0 ? mTail / aFrames.mSoundBytes : 0;
    const std::uint64_t tail = ticks * std::max<std::uint64_t>(fVideo ? mPictures.CountShown() : frames, 1);
    return ticks != 0 ? tail : mStamps.GetSteps().mUsual;
}

/// Ticks of the track of both that takes the longest, if there is one.
std::optional<std::uint64_t> PSStretch::GetTrackTicksTo(const PSStretch& aLater,
                                                        const PSFrames& aFrames) const {
    std::optional<std::uint64_t> most;
    for (const TrackStamps& track : mTracks) {
        for (const TrackStamps& later : aLater.mTracks) {
            if (track.mID == later.mID) {
                const std::uint64_t ticks =
                    StreamClock_Distance(track.mStamps.GetEarliest(), later.mStamps.GetLatest());
                most = std::max(most.value_or(0), ticks + later.GetTailTicks(aFrames));
            }
        }
    }
    return most;
}

std::uint64_t PSStretch::GetTicksTo(const PSStretch& aLater, const PSFrames& aFrames) const {
    if (mTracks.empty() || aLater.mTracks.empty()) {
        const bool fClock = !mClock.IsEmpty() && !aLater.mClock.IsEmpty();
        return fClock ? StreamClock_Distance(mClock.GetEarliest(), aLater.mClock.GetLatest()) : 0;
    }
    std::uint64_t start = mTracks.front().mStamps.GetEarliest();
    for (const TrackStamps& track : mTracks) {
        const std::uint64_t earliest = track.mStamps.GetEarliest();
        start = StreamClock_IsBefore(earliest, start) ? earliest : start;
    }
    std::uint64_t ticks = 0;
    for (const TrackStamps& later : aLater.mTracks) {
        const std::uint64_t end = StreamClock_Distance(start, later.mStamps.GetLatest());
        ticks = std::max(ticks, end + later.GetTailTicks(aFrames));
    }
    // The stamps of a track may run elsewhere.
    const std::uint64_t most = GetTrackTicksTo(aLater, aFrames).value_or(ticks);
    return ticks - std::min(most, ticks) <= kPS_MaxClockStep ? ticks : most;
}

bool PSStretch::IsBetween(const PSStretch& aFirst, const PSStretch& aLast) const {
    if (mClock.IsEmpty() || aFirst.mClock.IsEmpty() || aLast.mClock.IsEmpty()) {
        return true;
    }
    const std::uint64_t start = aFirst.mClock.GetEarliest();
    return StreamClock_Distance(start, mClock.GetLatest()) <=
           StreamClock_Distance(start, aLast.mClock.GetLatest());
}

void PSClock::AddClock(std::uint64_t aClock) {
    if (mClock.has_value()) {
        const std::uint64_t step = StreamClock_Distance(*mClock, aClock);
        const std::uint64_t slip = StreamClock_Distance(aClock, *mClock);
        if (step > kPS_MaxClockStep && slip > kPS_MaxClockSlip) {
            mEnded += mLast.GetTicks(mFrames);
            if (!mfRestarts) {
                mFirst = std::move(mLast);
            }
            mLast = PSStretch();
            mfRestarts = true;
        }
    }
    mClock = aClock;
    mLast.AddClock(aClock);
}

void PSClock::AddObject(std::uint32_t aNumber) {
    mFirstObject = mFirstObject.value_or(aNumber);
    mLastObject = aNumber;
}

std::uint64_t PSClock::GetTicks() const {
    return mEnded + mLast.GetTicks(mFrames);
}

bool PSClock::IsOfOtherObject(const PSClock& anOther) const {
    return mLastObject.has_value() && anOther.mFirstObject.has_value() && mLastObject != anOther.mFirstObject;
}
