#include "ezHosting/detail/PoolCrew.h"

#include "ezHosting/detail/Limits.h"
#include "ezHosting/detail/Places.h"

#include "ezBytes/SignalsHeldBack.h"

#include "ez/FileMediaParserStream.h"
#include "ezPlatform/base/Log.h"

#include <algorithm>
#include <system_error>
#include <utility>

PoolCrew::PoolCrew(const ezHostPoolOptions& anOptions, ezHostPool::Callback aCallback)
    : mCallback(std::move(aCallback)), mLedger(anOptions.mBound, anOptions.mfOrderKept) {}

// --- The threads

std::string PoolCrew::Start(const std::vector<Identify>& anIdentifies) {
    const SignalsHeldBack heldBack;
    try {
        for (const Identify& identify : anIdentifies) {
            mThreads.emplace_back([self = shared_from_this(), identify] { self->Work(identify); });
            mIds.push_back(mThreads.back().get_id());
        }
    } catch (const std::system_error& error) {
        Dismiss();
        mIds.clear();
        return "no thread: " + error.code().message();
    }
    return "";
}

void PoolCrew::Dismiss() {
    Cancel();
    {
        const Lock lock(mMutex);
        mfDismissed = true;
        mMayWork.notify_all();
    }
    for (std::thread& thread : mThreads) {
        if (thread.get_id() == std::this_thread::get_id()) {
            thread.detach(); // it ends when the callback returns
        } else {
            thread.join();
        }
    }
    mThreads.clear();
    Lock lock(mMutex);
    while (mLedger.HasNext()) { // only within the callback: else the threads have given out everything
        GiveOut(lock);
    }
}

bool PoolCrew::IsOwnThread() const {
    return std::find(mIds.begin(), mIds.end(), std::this_thread::get_id()) != mIds.end();
}

void PoolCrew::Work(const Identify& anIdentify) {
    Lock lock(mMutex);
    while (true) {
        if (!mfGivingOut && mLedger.HasNext()) {
            GiveOut(lock);
        } else if (std::optional<PoolItem> item = mLedger.Take()) {
            lock.unlock();
            ezHostPoolResult result = Answer(*item, anIdentify);
            item.reset();
            lock.lock();
            mLedger.Finish(std::move(result));
        } else if (mfDismissed) {
            return;
        } else {
            mMayWork.wait(lock);
        }
    }
}

void PoolCrew::GiveOut(Lock& aLock) {
    mfGivingOut = true;
    {
        ezHostPoolResult result = mLedger.Next();
        aLock.unlock();
        Guarded([&] {
            if (mCallback) {
                mCallback(std::move(result));
            }
        });
    }
    aLock.lock();
    mfGivingOut = false;
    mLedger.Received();
    if (mLedger.HasRoom()) {
        mMaySubmit.notify_all();
    }
    if (mLedger.IsIdle()) {
        mIdle.notify_all();
    }
}

// --- An item

ezHostPoolResult PoolCrew::Answer(const PoolItem& anItem, const Identify& anIdentify) {
    ezHostPoolResult result;
    result.mName = anItem.mName;
    result.mNumber = anItem.mNumber;
    Guarded([&] {
        if (!IsCancelled()) {
            Parse(anItem, anIdentify, &result);
        }
    });
    if (IsCancelled()) {
        // A read may have been refused: what was found then is no answer.
        result.mOutcome = ezHostPoolOutcome::Cancelled;
        result.mInfo.reset();
        result.mError.clear();
    }
    return result;
}

void PoolCrew::Parse(const PoolItem& anItem, const Identify& anIdentify, ezHostPoolResult* aResult) {
    std::unique_ptr<ezMediaParserStream> stream;
    if (anItem.mMaker) {
        stream = anItem.mMaker(mCancellation);
    } else {
        stream =
            std::make_unique<ezCancellable<ezFileMediaParserStream>>(mCancellation, ezCString(anItem.mName));
    }
    if (stream == nullptr) {
        aResult->mError = ShownPath(anItem.mName) + ": there is no stream";
    } else {
        aResult->mInfo = anIdentify(*stream, &aResult->mError);
    }
    if (!aResult->mError.empty()) {
        aResult->mOutcome = ezHostPoolOutcome::NotReadable;
        if (!anItem.mMaker) {
            aResult->mError = WhyNotOpened(anItem.mName);
        }
    } else {
        const bool fKnown = aResult->mInfo != nullptr;
        aResult->mOutcome = fKnown ? ezHostPoolOutcome::Recognised : ezHostPoolOutcome::NotRecognised;
    }
}

template <typename Function>
void PoolCrew::Guarded(const Function& aFunction) {
    try {
        aFunction();
    } catch (const std::exception& error) {
        Keep(error.what());
    } catch (...) {
        Keep("something that is no std::exception");
    }
}

void PoolCrew::Keep(const char* aText) {
    ezLog_F(EZLOGLEVEL_ERROR, "ezHostPool: Cancelled by what the host threw: %s\n", aText);
    {
        const Lock lock(mMutex);
        if (mThrown == nullptr) {
            mThrown = std::current_exception();
        }
    }
    Cancel();
}

// --- The host's side

PoolCrew::Submitted PoolCrew::Submit(std::string_view aName, ezHostPool::StreamMaker aMaker) {
    Lock lock(mMutex);
    if (!IsOwnThread()) {
        mMaySubmit.wait(lock, [this] { return IsCancelled() || !mLedger.IsFull(); });
    }
    if (IsCancelled()) {
        return Submitted::Cancelled;
    }
    if (mLedger.IsFull()) {
        return Submitted::Full;
    }
    mLedger.Add(aName, std::move(aMaker));
    lock.unlock(); // whom it wakes needs the lock
    mMayWork.notify_one();
    return Submitted::Taken;
}

bool PoolCrew::Wait() {
    if (IsOwnThread()) {
        return false;
    }
    Lock lock(mMutex);
    mIdle.wait(lock, [this] { return mLedger.IsIdle(); });
    ThrowKept(lock);
    return true;
}

bool PoolCrew::WaitFor(std::chrono::milliseconds aTime) {
    if (IsOwnThread()) {
        return false;
    }
    Lock lock(mMutex);
    if (!mIdle.wait_for(lock, std::min(aTime, kHost_LongestWait), [this] { return mLedger.IsIdle(); })) {
        return false;
    }
    ThrowKept(lock);
    return true;
}

void PoolCrew::ThrowKept(Lock& aLock) {
    const std::exception_ptr thrown = std::exchange(mThrown, nullptr);
    aLock.unlock();
    if (thrown != nullptr) {
        std::rethrow_exception(thrown);
    }
}

void PoolCrew::Cancel() {
    mCancellation.Cancel();
    std::deque<PoolItem> items; // their makers go without the lock: they are the host's
    const Lock lock(mMutex);
    items = mLedger.CancelWaiting();
    mMayWork.notify_all();
    mMaySubmit.notify_all();
}

ezHostPoolProgress PoolCrew::GetProgress() const {
    const Lock lock(mMutex);
    return mLedger.GetProgress();
}
