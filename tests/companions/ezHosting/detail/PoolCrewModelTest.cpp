#include "ezHosting/detail/PoolCrew.h"

#include "companions/ezHosting/PoolKit.h"

#include "support/Catchers.h"

#include <chrono>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <stdexcept>
#include <thread>

namespace {

using Outcome = ezHostPoolOutcome;
using Submitted = ezHostPool::Submitted;
using std::chrono::microseconds;

constexpr std::uint64_t kNever = UINT64_MAX;
constexpr int kNoTime = 2'000'000'000;

/// What is to happen.
struct Scene {
    std::size_t mThreads = *rc::gen::inRange<std::size_t>(1, 5);
    std::size_t mBound = *rc::gen::inRange<std::size_t>(1, 10);
    std::size_t mSubmitters = *rc::gen::inRange<std::size_t>(1, 4);
    bool mfOrderKept = *rc::gen::arbitrary<bool>();
    /// Microseconds that each read of an item takes; one more read an item than its place in this, modulo 3.
    std::vector<int> mItems = *rc::gen::container<std::vector<int>>(rc::gen::element(0, 0, 0, 50, 400));
    int mCallbackTime = *rc::gen::element(0, 0, 50, 300);
    /// Who cancels at which item.
    std::uint64_t mSubmitterCancels = Sometimes();
    std::uint64_t mReaderCancels = Sometimes();
    std::uint64_t mCallbackCancels = Sometimes();
    std::uint64_t mCallbackThrows = Sometimes();
    std::uint64_t mCallbackSubmits = Sometimes();
    /// A thread that knows nothing of the items cancels after so many microseconds.
    int mOtherCancels = *rc::gen::element(kNoTime, 0, 100, 500, 3'000);
    bool mfWaits = *rc::gen::arbitrary<bool>();

    static std::uint64_t Sometimes() {
        return *rc::gen::weightedOneOf<std::uint64_t>(
            {{3, rc::gen::just(kNever)}, {1, rc::gen::inRange<std::uint64_t>(0, 60)}});
    }
};

void Pass(int aMicroseconds) {
    if (aMicroseconds > 0) {
        std::this_thread::sleep_for(microseconds(aMicroseconds));
    } else {
        std::this_thread::yield();
    }
}

/// A pool to which that happens, and what came of it.
class Play {
public:
    explicit Play(const Scene& aScene) : mScene(aScene) {
        auto crew = std::make_unique<Crew>(
            mScene.mThreads, mScene.mBound, mScene.mfOrderKept,
            [this](ezHostPoolResult aResult) { Take(std::move(aResult)); },
            [](ezMediaParserStream& aStream) { return Read(aStream); });
        mCrew = crew->operator->();
        std::atomic<bool> fOver{false};
        std::thread other([&] { Watch(fOver); });
        std::vector<std::thread> submitters;
        for (std::size_t i = 1; i < mScene.mSubmitters; ++i) {
            submitters.emplace_back([this, i] { SubmitPart(i); });
        }
        SubmitPart(0);
        for (std::thread& submitter : submitters) {
            submitter.join();
        }
        Await();
        fOver = true;
        other.join(); // it uses what goes now
        crew->Dismiss();
    }

    void Judge() const {
        std::vector<std::uint64_t> numbers = mResults.Numbers();
        RC_ASSERT(!mScene.mfOrderKept || std::is_sorted(numbers.begin(), numbers.end()));
        RC_ASSERT(mResults.SortedNumbers() == Counting(mTaken));
        RC_ASSERT(!mfTwoAtATime);
        RC_ASSERT(!mfBoundBroken);
        RC_ASSERT(!mfBadProgress);
        for (const ezHostPoolResult& result : mResults.mAll) {
            RC_ASSERT((result.mInfo != nullptr) == (result.mOutcome == Outcome::Recognised));
            if (result.mInfo != nullptr) {
                RC_ASSERT(result.mInfo->GetUInt32("failed", 1) == 0U);
                RC_ASSERT(result.mInfo->GetUInt32("reads", 0) == 3U);
            }
        }
        RC_ASSERT(mfCancelled || (mRefused == mFullRefused && mResults.CountOf(Outcome::Cancelled) == 0));
        RC_ASSERT(mScene.mCallbackThrows >= mResults.mAll.size() || !mScene.mfWaits || mfThrown);
    }

private:
    /// Three reads of the source, whatever they say: a record that tells what they said.
    static std::unique_ptr<ezMediaInfo> Read(ezMediaParserStream& aStream) {
        std::vector<char> bytes(10 * 1024);
        uint32 failed = 0;
        for (int i = 0; i < 3; ++i) {
            failed += aStream.Read(bytes.size(), bytes.data()) ? 0 : 1;
        }
        auto info = std::make_unique<ezMediaInfo>();
        info->Set("failed", failed, true);
        info->Set("reads", uint32{3}, true);
        return info;
    }

    /// The items of one of those who submit, who take turns.
    void SubmitPart(std::size_t aFirst) {
        for (std::uint64_t i = aFirst; i < mScene.mItems.size(); i += mScene.mSubmitters) {
            if (i == mScene.mSubmitterCancels) {
                mCrew->Cancel();
            }
            mRefused += Submit() != Submitted::Taken ? 1 : 0;
        }
    }

    Submitted Submit() {
        const std::uint64_t number = mAsked++;
        const int time = number < mScene.mItems.size() ? mScene.mItems[number] : 0;
        const bool fCancels = number == mScene.mReaderCancels;
        const Submitted submitted =
            mCrew->Submit("item", [this, time, fCancels](ezCancellation& aCancellation) {
                return std::make_unique<ezCancellable<ReadsOf>>(aCancellation, [this, time, fCancels] {
                    Pass(time);
                    if (fCancels) {
                        mCrew->Cancel();
                    }
                });
            });
        mTaken += submitted == Submitted::Taken ? 1 : 0;
        return submitted;
    }

    void Take(ezHostPoolResult aResult) {
        const std::uint64_t place = mResults.mAll.size();
        mfTwoAtATime = mfTwoAtATime || mInside.exchange(true);
        Pass(mScene.mCallbackTime);
        if (place == mScene.mCallbackCancels) {
            mCrew->Cancel();
        }
        if (place == mScene.mCallbackSubmits) {
            const Submitted submitted = Submit();
            mRefused += submitted != Submitted::Taken ? 1 : 0;
            mFullRefused += submitted == Submitted::Full ? 1 : 0;
        }
        mResults.mAll.push_back(std::move(aResult));
        mInside = false;
        if (place == mScene.mCallbackThrows) {
            throw std::runtime_error("thrown");
        }
    }

    /// Asks for the progress all the time, and cancels at its time.
    void Watch(const std::atomic<bool>& afOver) {
        const auto start = std::chrono::steady_clock::now();
        while (!afOver) {
            const ezHostPoolProgress progress = mCrew->GetProgress();
            const std::uint64_t sum = progress.mRecognised + progress.mFailed + progress.mCancelled;
            mfBadProgress = mfBadProgress || sum != progress.mDone || progress.mDone > progress.mSubmitted;
            mfBoundBroken = mfBoundBroken || progress.mSubmitted - progress.mDone > mScene.mBound;
            if (std::chrono::steady_clock::now() - start > microseconds(mScene.mOtherCancels)) {
                mCrew->Cancel();
            }
            std::this_thread::sleep_for(microseconds(20));
        }
    }

    void Await() {
        if (!mScene.mfWaits) {
            mfCancelled = true; // by the end
            return;
        }
        try {
            mCrew->Wait();
        } catch (const std::runtime_error&) {
            mfThrown = true;
            mCrew->Wait();
        }
        mfCancelled = mCrew->IsCancelled();
    }

    const Scene& mScene;
    PoolCrew* mCrew = nullptr;
    Results mResults;
    std::atomic<std::uint64_t> mAsked{0};
    std::atomic<std::uint64_t> mTaken{0};
    std::atomic<std::uint64_t> mRefused{0};
    std::atomic<std::uint64_t> mFullRefused{0};
    std::atomic<bool> mInside{false};
    std::atomic<bool> mfTwoAtATime{false};
    std::atomic<bool> mfBoundBroken{false};
    std::atomic<bool> mfBadProgress{false};
    bool mfCancelled = false;
    bool mfThrown = false;
};

} // namespace

RC_GTEST_PROP(PoolCrew, KeepsItsWordWhateverCancelsItWhen, ()) {
    const LogCatcher log(0);
    const Scene scene;
    const Play play(scene);
    play.Judge();
}
