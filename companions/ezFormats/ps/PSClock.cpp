#include "ezFormats/ps/PSClock.h"

#include "ezFormats/ps/PSLimits.h"

#include <algorithm>
#include <utility>

std::uint64_t PSFrames::GetTicks(std::uint64_t aBytes) const {
    const std::uint64_t count = mBytes != 0 ? aBytes / mBytes : 0;
    return mTicks * std::max<std::uint64_t>(count, 1);
}

void PSStretch::AddContent(const PSContent& aContent) {
    const auto fIs = [&aContent](const TrackStamps& aStamps) { return aStamps.mID == aContent.mID; };
    auto track = std::find_if(mTracks.begin(), mTracks.end(), fIs);
    if (track == mTracks.end()) {
        if (!aContent.mPTS.has_value() || mTracks.size() == kPS_MaxTracks) {
            return;
        }
        mTracks.push_back({aContent.mID, {}});
        track = mTracks.end() - 1;
    }
    if (aContent.mPTS.has_value()) {
        track->mStamps.Add(*aContent.mPTS);
        track->mTail = track->mStamps.GetLatest() == *aContent.mPTS ? 0 : track->mTail;
    }
    track->mTail += aContent.mSize;
}

std::uint64_t PSStretch::TrackStamps::GetTailTicks(const PSFrames& aFrames) const {
    const bool fFrames = mID == aFrames.mTrack && aFrames.mTicks != 0;
    return fFrames ? aFrames.GetTicks(mTail) : mStamps.GetSteps().mUsual;
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
            mEnded += mLast.GetTicks({});
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

std::uint64_t PSClock::GetTicks(const PSFrames& aFrames) const {
    return mEnded + mLast.GetTicks(aFrames);
}

bool PSClock::IsOfOtherObject(const PSClock& anOther) const {
    return mLastObject.has_value() && anOther.mFirstObject.has_value() && mLastObject != anOther.mFirstObject;
}
