#include "ezLiveStreams/FeedBuffer.h"

#include "ezPlatform/base/Checked.h"

#include <algorithm>
#include <cstring>
#include <utility>

ezFeedBuffer::ezFeedBuffer(const ezFeedLimits& aLimits, Notice aThreshold, Notice anInterrupt)
    : mLimits{std::max<std::size_t>(aLimits.mWindow, 1), std::max(aLimits.mLargest, aLimits.mWindow)},
      mThreshold(std::move(aThreshold)),
      mInterrupt(std::move(anInterrupt)),
      mWindow(mLimits.mWindow) {}

ezFeedBuffer::~ezFeedBuffer() = default;

// --- The window

std::size_t ezFeedBuffer::HeldForReader() const {
    return mPosition >= mStart && mPosition < mEnd ? static_cast<std::size_t>(mEnd - mPosition) : 0;
}

void ezFeedBuffer::DropBefore(std::uint64_t aPosition) {
    std::size_t count = static_cast<std::size_t>(aPosition - mStart) + mFirstOffset;
    mStart = aPosition;
    while (count >= kBlockSize) {
        mBlocks.pop_front();
        count -= kBlockSize;
    }
    mFirstOffset = count;
}

std::size_t ezFeedBuffer::MakeRoom() {
    if (Held() >= mWindow && mWantedEnd > mEnd) {
        const std::uint64_t needed = mWantedEnd > mWindow ? mWantedEnd - mWindow : 0;
        const std::uint64_t kept = mWindow - mWindow / 4; // else every request would wait for the writer anew
        const std::uint64_t start = std::max(needed, mPosition > kept ? mPosition - kept : 0);
        DropBefore(std::max(mStart, std::min({start, mPosition, mEnd})));
    }
    return mWindow - std::min(Held(), mWindow);
}

void ezFeedBuffer::TakeIn(const unsigned char* aData, std::size_t aSize) {
    while (aSize > 0) {
        const std::size_t offset = (mFirstOffset + Held()) % kBlockSize;
        if ((mFirstOffset + Held()) / kBlockSize == mBlocks.size()) {
            mBlocks.push_back(std::make_unique<Block>());
        }
        const std::size_t count = std::min(aSize, kBlockSize - offset);
        std::memcpy(mBlocks.back()->data() + offset, aData, count);
        aData += count;
        aSize -= count;
        mEnd += count;
    }
    mfAnyArrived = true;
}

void ezFeedBuffer::GiveOut(unsigned char* aBuffer, std::size_t aSize) {
    while (aSize > 0) {
        const std::size_t at = mFirstOffset + static_cast<std::size_t>(mPosition - mStart);
        const std::size_t offset = at % kBlockSize;
        const std::size_t count = std::min(aSize, kBlockSize - offset);
        std::memcpy(aBuffer, mBlocks[at / kBlockSize]->data() + offset, count);
        aBuffer += count;
        aSize -= count;
        mPosition += count;
    }
}

// --- The writer's side

void ezFeedBuffer::WaitForRoom(Lock& aLock) {
    mfFull = true;
    mSizeMayBeKnown.notify_all();
    aLock.unlock();
    mThreshold(); // for a reader who waits for more than can ever be held
    aLock.lock();
    mWriterMayGoOn.wait(aLock, [this] { return mfClosed || mMoveTo || MakeRoom() > 0; });
    mfFull = false;
}

ezFeedBuffer::Push ezFeedBuffer::Append(const void* aData, std::size_t aSize) {
    const auto* data = static_cast<const unsigned char*>(aData);
    while (aSize > 0) {
        {
            Lock lock(mMutex);
            if (!mfClosed && !mMoveTo && mEnd != mSize && MakeRoom() == 0) {
                WaitForRoom(lock);
            }
            if (mfClosed) {
                return Push::Closed;
            }
            if (mMoveTo) {
                return Push::Moved;
            }
            const std::uint64_t wanted = mSize ? *mSize - mEnd : UINT64_MAX;
            if (wanted == 0) {
                return Push::Full;
            }
            const auto count = static_cast<std::size_t>(std::min<std::uint64_t>({aSize, MakeRoom(), wanted}));
            TakeIn(data, count);
            data += count;
            aSize -= count;
        }
        mThreshold();
    }
    return Push::Taken;
}

bool ezFeedBuffer::SetSize(std::uint64_t aSize) {
    bool fSame = false;
    {
        const Lock lock(mMutex);
        if (mMoveTo) { // mEnd is the place asked for, which may well lie past the size
            return true;
        }
        fSame = aSize >= mEnd && (!mSize || *mSize == aSize);
        if (fSame) {
            mSize = aSize;
        } else {
            SetFailure(ezStreamingStatus_ReadError, "the media changed while it was read");
        }
        mSizeMayBeKnown.notify_all();
    }
    mThreshold();
    return fSame;
}

void ezFeedBuffer::SetMovable(bool afBack, bool afAhead) {
    const Lock lock(mMutex);
    mfMovableBack = afBack;
    mfMovableAhead = afAhead;
}

void ezFeedBuffer::SetFailure(ezStreamingStatus aStatus, const std::string& aText) {
    if (mFailure == ezStreamingStatus_NoError) {
        mFailure = aStatus;
        mErrorText = aText;
    }
}

void ezFeedBuffer::End() {
    {
        const Lock lock(mMutex);
        if (mMoveTo) {
            return;
        }
        if (!mSize) {
            mSize = mEnd;
        } else if (mEnd < *mSize) {
            SetFailure(ezStreamingStatus_ReadError, "the media ends after " + std::to_string(mEnd) + " of " +
                                                        std::to_string(*mSize) + " bytes");
        }
        mSizeMayBeKnown.notify_all();
    }
    mThreshold();
}

void ezFeedBuffer::Fail(ezStreamingStatus aStatus, const std::string& aText) {
    {
        const Lock lock(mMutex);
        if (mMoveTo) {
            return;
        }
        SetFailure(aStatus, aText);
        mSizeMayBeKnown.notify_all();
    }
    mThreshold();
}

bool ezFeedBuffer::IsInterrupted() const {
    const Lock lock(mMutex);
    return mfClosed || mMoveTo;
}

bool ezFeedBuffer::WaitForMove(std::uint64_t* aPosition) {
    Lock lock(mMutex);
    mWriterMayGoOn.wait(lock, [this] { return mfClosed || mMoveTo; });
    if (mfClosed) {
        return false;
    }
    *aPosition = *mMoveTo;
    mMoveTo.reset();
    return true;
}

void ezFeedBuffer::StartAt(std::uint64_t aPosition) {
    const Lock lock(mMutex);
    if (!mMoveTo) { // else that is out of date already, and Append says so
        mStart = aPosition;
        mEnd = aPosition;
    }
}

// --- The reader's side

std::uint64_t ezFeedBuffer::Possible(std::size_t anAsked) const {
    if (!mSize) {
        return anAsked;
    }
    return std::min<std::uint64_t>(anAsked, *mSize - std::min(mPosition, *mSize));
}

bool ezFeedBuffer::IsBeyondLargest(std::uint64_t aWanted, std::size_t aHeld) const {
    // Where the size is not known the media may still end within it; that shows when nothing more fits.
    return aWanted > mLimits.mLargest && (mSize || (mfFull && aHeld >= mLimits.mLargest));
}

ezStreamingStatus ezFeedBuffer::Read(void* aBuffer, std::size_t* aSize, int aFlag) {
    const std::size_t asked = *aSize;
    *aSize = 0;
    const Lock lock(mMutex);
    mWantedEnd = 0;
    if (mfClosed) {
        return ezStreamingStatus_InvalidState;
    }
    const std::uint64_t wanted = Possible(asked);
    const std::size_t held = HeldForReader();
    const bool fSome = (aFlag & ezStreamReadFlag_Whole) == 0 && held > 0;
    if (held >= wanted || fSome) {
        *aSize = static_cast<std::size_t>(std::min<std::uint64_t>(held, wanted));
        GiveOut(static_cast<unsigned char*>(aBuffer), *aSize);
        return *aSize < asked && *aSize == wanted ? ezStreamingStatus_EOS : ezStreamingStatus_NoError;
    }
    if (mFailure != ezStreamingStatus_NoError) {
        mfFailureSeen = true;
        return mFailure;
    }
    if (IsBeyondLargest(wanted, held)) {
        mfFailureSeen = true;
        mErrorText = "a read of " + std::to_string(asked) + " bytes is larger than what is held";
        return ezStreamingStatus_OutOfInternalBuffer;
    }
    mWantedEnd = ezSaturating_Add64(mPosition, wanted);
    mWindow = static_cast<std::size_t>(
        std::max<std::uint64_t>(mWindow, std::min<std::uint64_t>(wanted, mLimits.mLargest)));
    mWriterMayGoOn.notify_all();
    return ezStreamingStatus_NoError;
}

void ezFeedBuffer::MoveTo(std::uint64_t aPosition) {
    mBlocks.clear();
    mFirstOffset = 0;
    mStart = aPosition;
    mEnd = aPosition;
    mPosition = aPosition;
    mMoveTo = aPosition;
    mFailure = ezStreamingStatus_NoError;
    mWriterMayGoOn.notify_all();
}

ezStreamingStatus ezFeedBuffer::Seek(std::uint64_t aPosition) {
    {
        const Lock lock(mMutex);
        mWantedEnd = 0;
        if (mfClosed) {
            return ezStreamingStatus_InvalidState;
        }
        if (mSize && aPosition > *mSize) {
            return ezStreamingStatus_OutOfRange;
        }
        const bool fAhead = aPosition > mEnd;
        const bool fFailed = mFailure != ezStreamingStatus_NoError;
        const bool fReadsOn = !mfMovableAhead || (!fFailed && aPosition - mEnd <= kWorthMoving);
        const bool fNear = fAhead && fReadsOn;
        const bool fInWindow = aPosition >= mStart && !fAhead;
        const bool fLeft = (fFailed && mRetriesLeft == 0) || aPosition == mSize;
        if (fInWindow || fNear || (fAhead && fLeft)) {
            mPosition = aPosition;
            return ezStreamingStatus_NoError;
        }
        if (fLeft || !(fAhead ? mfMovableAhead : mfMovableBack)) {
            return ezStreamingStatus_OutOfRange;
        }
        mRetriesLeft -= fFailed ? 1 : 0;
        MoveTo(aPosition);
    }
    mInterrupt();
    return ezStreamingStatus_NoError;
}

std::optional<std::uint64_t> ezFeedBuffer::GetSize(bool afWait) {
    Lock lock(mMutex);
    if (afWait) {
        mSizeMayBeKnown.wait(lock, [this] {
            const bool fSettled = mfFull && mWantedEnd <= mEnd && !mMoveTo;
            return mSize || mfClosed || mFailure != ezStreamingStatus_NoError || fSettled;
        });
    }
    if (!mSize && mFailure != ezStreamingStatus_NoError) {
        mfFailureSeen = mfFailureSeen || afWait;
    }
    return mSize;
}

bool ezFeedBuffer::IsOpened() const {
    const Lock lock(mMutex);
    return !mfClosed && (mFailure == ezStreamingStatus_NoError || mfAnyArrived);
}

bool ezFeedBuffer::HasFailed() const {
    const Lock lock(mMutex);
    return mfFailureSeen;
}

std::string ezFeedBuffer::GetErrorText() const {
    const Lock lock(mMutex);
    return mErrorText;
}

void ezFeedBuffer::Close() {
    {
        const Lock lock(mMutex);
        mfClosed = true;
        mWriterMayGoOn.notify_all();
        mSizeMayBeKnown.notify_all();
    }
    mInterrupt();
}
