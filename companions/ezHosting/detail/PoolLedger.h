#pragma once

#include "ezHosting/HostPool.h"

#include <deque>
#include <map>
#include <optional>

/// An item that waits to be parsed.
struct PoolItem {
    std::uint64_t mNumber = 0;
    std::string mName;
    ezHostPool::StreamMaker mMaker; ///< empty: the name is the path of a file
};

/// What a pool has under way, and in which order it goes out. It knows no thread: whoever shares it has the
/// lock.
class PoolLedger {
public:
    PoolLedger(std::size_t aBound, bool afOrderKept);

    bool IsFull() const { return mUnderWay >= mBound; }
    /// Whether enough is free for those who wait to submit: a quarter, so that they and the threads do not
    /// take turns item by item.
    bool HasRoom() const { return mUnderWay <= mBound - (mBound + 3) / 4; }
    bool IsIdle() const { return mUnderWay == 0; }
    /// Takes an item in, whether full or not.
    void Add(std::string_view aName, ezHostPool::StreamMaker aMaker);
    /// The item that waits longest; it is being parsed from now on. Without a value when none waits.
    std::optional<PoolItem> Take();
    /// The result of an item that was taken.
    void Finish(ezHostPoolResult aResult);
    /// Gives those that wait the result Cancelled, and them back.
    std::deque<PoolItem> CancelWaiting();

    /// Whether the next result can go out.
    bool HasNext() const;
    /// Gives it out, and counts it.
    ezHostPoolResult Next();
    /// It has been received: the item is under way no more.
    void Received() { --mUnderWay; }

    const ezHostPoolProgress& GetProgress() const { return mProgress; }

private:
    const std::size_t mBound;
    const bool mfOrderKept;
    std::size_t mUnderWay = 0;
    std::deque<PoolItem> mWaiting;
    /// By the place in which they go out: that of the submission, or that of the finishing.
    std::map<std::uint64_t, ezHostPoolResult> mFinished;
    std::uint64_t mFinishedCount = 0;
    ezHostPoolProgress mProgress;
};
