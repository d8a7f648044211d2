#pragma once

#include "ezHosting/HostPool.h"
#include "ezHosting/detail/PoolCrew.h"

#include "ez/MediaParserStream.h"
#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstring>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

/// Holds whoever passes, until it is opened.
class Gate {
public:
    void Open() {
        const std::lock_guard<std::mutex> lock(mMutex);
        mfOpen = true;
        mChanged.notify_all();
    }
    void Pass() {
        std::unique_lock<std::mutex> lock(mMutex);
        ++mArrived;
        mChanged.notify_all();
        mChanged.wait(lock, [this] { return mfOpen; });
    }
    /// Returns when so many have come, whether they have passed or not.
    void AwaitArrivals(std::size_t aCount) {
        std::unique_lock<std::mutex> lock(mMutex);
        mChanged.wait(lock, [&] { return mArrived >= aCount; });
    }
    std::size_t GetArrived() {
        const std::lock_guard<std::mutex> lock(mMutex);
        return mArrived;
    }

private:
    std::mutex mMutex;
    std::condition_variable mChanged;
    bool mfOpen = false;
    std::size_t mArrived = 0;
};

/// Zeros without an end, 8 KiB at a time at most, each read of which does something first.
class ReadsOf : public ezMediaParserStream {
public:
    explicit ReadsOf(std::function<void()> aOnRead) : mOnRead(std::move(aOnRead)) {}

protected:
    bool MediaSeek(const ezuint64& /*anOffset*/, bool /*afSeekImmediate*/) override { return true; }
    ezFileOffset MediaRead(void* aBuffer, std::size_t aSize) override {
        mOnRead();
        std::memset(aBuffer, 0, aSize);
        return static_cast<ezFileOffset>(aSize);
    }

private:
    const std::function<void()> mOnRead;
};

/// What came out of a pool. No lock: the pool calls one at a time, and what is read here is read after a
/// wait.
class Results {
public:
    ezHostPool::Callback Taker() {
        return [this](ezHostPoolResult aResult) { mAll.push_back(std::move(aResult)); };
    }
    std::vector<ezHostPoolResult> mAll;

    std::vector<std::uint64_t> Numbers() const {
        std::vector<std::uint64_t> numbers;
        for (const ezHostPoolResult& result : mAll) {
            numbers.push_back(result.mNumber);
        }
        return numbers;
    }
    std::vector<std::uint64_t> SortedNumbers() const {
        std::vector<std::uint64_t> numbers = Numbers();
        std::sort(numbers.begin(), numbers.end());
        return numbers;
    }
    std::size_t CountOf(ezHostPoolOutcome anOutcome) const {
        return static_cast<std::size_t>(
            std::count_if(mAll.begin(), mAll.end(),
                          [&](const ezHostPoolResult& aResult) { return aResult.mOutcome == anOutcome; }));
    }
};

/// 0, 1, ... up to a count.
inline std::vector<std::uint64_t> Counting(std::size_t aCount) {
    std::vector<std::uint64_t> numbers(aCount);
    for (std::size_t i = 0; i < aCount; ++i) {
        numbers[i] = i;
    }
    return numbers;
}

/// As a host does: opens what it is handed, and asks.
inline PoolCrew::Identify Opened(std::function<std::unique_ptr<ezMediaInfo>(ezMediaParserStream&)> anAsk) {
    return [ask = std::move(anAsk)](ezMediaParserStream& aStream, std::string* anError) {
        if (!aStream.Open()) {
            *anError = "cannot be opened";
            return std::unique_ptr<ezMediaInfo>();
        }
        return ask(aStream);
    };
}

/// Two reads that the buffer of the start does not answer; a record if both came about.
inline std::unique_ptr<ezMediaInfo> TwoReads(ezMediaParserStream& aStream) {
    std::vector<char> bytes(16 * 1024);
    if (!aStream.Read(bytes.size(), bytes.data()) || !aStream.Read(bytes.size(), bytes.data())) {
        return nullptr;
    }
    auto info = std::make_unique<ezMediaInfo>();
    info->Set(kezInfo_MimeType, "video/x-zeros", true);
    return info;
}

/// The threads of a pool, each of which does the same, dismissed in the end.
class Crew {
public:
    Crew(std::size_t aThreads, std::size_t aBound, bool afOrderKept, ezHostPool::Callback aCallback,
         std::function<std::unique_ptr<ezMediaInfo>(ezMediaParserStream&)> anAsk = TwoReads)
        : mCrew(std::make_shared<PoolCrew>(ezHostPoolOptions{aThreads, aBound, afOrderKept},
                                           std::move(aCallback))) {
        mError = mCrew->Start(std::vector<PoolCrew::Identify>(aThreads, Opened(std::move(anAsk))));
    }
    ~Crew() { Dismiss(); }
    Crew(const Crew&) = delete;
    Crew& operator=(const Crew&) = delete;

    PoolCrew* operator->() const { return mCrew.get(); }
    const std::string& GetError() const { return mError; }
    void Dismiss() {
        if (mCrew != nullptr) {
            mCrew->Dismiss();
            mCrew.reset();
        }
    }

    /// Has zeros parsed, whose every read does something first.
    ezHostPool::Submitted SubmitZeros(std::function<void()> aOnRead = [] {}) const {
        return mCrew->Submit("zeros", [aOnRead](ezCancellation& aCancellation) {
            return std::make_unique<ezCancellable<ReadsOf>>(aCancellation, aOnRead);
        });
    }

private:
    std::shared_ptr<PoolCrew> mCrew;
    std::string mError;
};
