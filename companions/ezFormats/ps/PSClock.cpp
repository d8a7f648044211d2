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

std::uint64_t PSStretch::GetTicksTo(const PSStretch& aLater, const PSFrames& aFrames) const {
    std::uint64_t most = 0;
    bool fCommon = false;
    for (const TrackStamps& track : mTracks) {
        for (const TrackStamps& later : aLater.mTracks) {
            if (track.mID == later.mID) {
                const std::uint64_t ticks =
                    StreamClock_Distance(track.mStamps.GetEarliest(), later.mStamps.GetLatest());
                most = std::max(most, ticks + later.GetTailTicks(aFrames));
                fCommon = true;
            }
        }
    }
    const bool fClock = !fCommon && !mClock.IsEmpty() && !aLater.mClock.IsEmpty();
    return fClock ? StreamClock_Distance(mClock.GetEarliest(), aLater.mClock.GetLatest()) : most;
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
