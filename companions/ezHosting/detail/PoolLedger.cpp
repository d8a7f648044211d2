#include "ezHosting/detail/PoolLedger.h"

#include <algorithm>
#include <utility>

PoolLedger::PoolLedger(std::size_t aBound, bool afOrderKept)
    : mBound(std::max<std::size_t>(aBound, 1)), mfOrderKept(afOrderKept) {}

void PoolLedger::Add(std::string_view aName, ezHostPool::StreamMaker aMaker) {
    mWaiting.push_back({mProgress.mSubmitted, std::string(aName), std::move(aMaker)});
    ++mProgress.mSubmitted;
    ++mUnderWay;
}

std::optional<PoolItem> PoolLedger::Take() {
    if (mWaiting.empty()) {
        return std::nullopt;
    }
    std::optional<PoolItem> item(std::move(mWaiting.front()));
    mWaiting.pop_front();
    return item;
}

void PoolLedger::Finish(ezHostPoolResult aResult) {
    const std::uint64_t place = mfOrderKept ? aResult.mNumber : mFinishedCount;
    mFinished.emplace(place, std::move(aResult));
    ++mFinishedCount;
}

std::deque<PoolItem> PoolLedger::CancelWaiting() {
    std::deque<PoolItem> items = std::exchange(mWaiting, {});
    for (PoolItem& item : items) {
        Finish({std::move(item.mName), item.mNumber, ezHostPoolOutcome::Cancelled, nullptr, ""});
    }
    return items;
}

bool PoolLedger::HasNext() const {
    return !mFinished.empty() && (!mfOrderKept || mFinished.begin()->first == mProgress.mDone);
}

ezHostPoolResult PoolLedger::Next() {
    ezHostPoolResult result = std::move(mFinished.begin()->second);
    mFinished.erase(mFinished.begin());
    ++mProgress.mDone;
    switch (result.mOutcome) {
    case ezHostPoolOutcome::Recognised:
        ++mProgress.mRecognised;
        break;
    case ezHostPoolOutcome::NotRecognised:
    case ezHostPoolOutcome::NotReadable:
        ++mProgress.mFailed;
        break;
    case ezHostPoolOutcome::Cancelled:
        ++mProgress.mCancelled;
        break;
    }
    return result;
}
