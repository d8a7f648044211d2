#pragma once

#include "ezHosting/HostPool.h"
#include "ezHosting/detail/PoolLedger.h"

#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

/// The threads of a pool, and what they share. Each of them owns it, as one may outlive the pool: that on
/// which the callback destroyed it.
class PoolCrew : public std::enable_shared_from_this<PoolCrew> {
public:
    using Submitted = ezHostPool::Submitted;
    /// What a thread does with a stream, which it opens: one of its own for each thread. Why it could not be
    /// read goes to *anError, which is empty before.
    using Identify =
        std::function<std::unique_ptr<ezMediaInfo>(ezMediaParserStream& aStream, std::string* anError)>;

    PoolCrew(const ezHostPoolOptions& anOptions, ezHostPool::Callback aCallback);

    /// Starts a thread for each. Why that failed, or ""; after a failure there are none.
    std::string Start(const std::vector<Identify>& anIdentifies);
    /// Cancels, gives all results out, and ends the threads.
    void Dismiss();

    Submitted Submit(std::string_view aName, ezHostPool::StreamMaker aMaker);
    bool Wait();
    bool WaitFor(std::chrono::milliseconds aTime);
    void Cancel();
    bool IsCancelled() const { return mCancellation.IsCancelled(); }
    ezHostPoolProgress GetProgress() const;
    std::size_t GetThreadCount() const { return mIds.size(); }

private:
    using Lock = std::unique_lock<std::mutex>;

    bool IsOwnThread() const;
    void Work(const Identify& anIdentify);
    void GiveOut(Lock& aLock);
    ezHostPoolResult Answer(const PoolItem& anItem, const Identify& anIdentify);
    void Parse(const PoolItem& anItem, const Identify& anIdentify, ezHostPoolResult* aResult);
    template <typename Function>
    void Guarded(const Function& aFunction);
    void Keep(const char* aText);
    /// What was thrown, once everything is done.
    void ThrowKept(Lock& aLock);

    const ezHostPool::Callback mCallback;
    ezCancellation mCancellation;
    std::vector<std::thread> mThreads;
    std::vector<std::thread::id> mIds; ///< of the threads; as they were started

    mutable std::mutex mMutex;        ///< over everything below
    std::condition_variable mMayWork; ///< something is to be parsed or given out, or the threads are to end
    std::condition_variable mMaySubmit;
    std::condition_variable mIdle;
    PoolLedger mLedger;
    std::exception_ptr mThrown;
    bool mfGivingOut = false; ///< the callback runs, or is about to
    bool mfDismissed = false;
};
