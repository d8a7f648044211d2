#include "ezHosting/detail/PoolLedger.h"

#include <algorithm>
#include <array>
#include <deque>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <set>
#include <string>
#include <vector>

namespace {

constexpr std::array<ezHostPoolOutcome, 3> kParsed = {
    ezHostPoolOutcome::Recognised, ezHostPoolOutcome::NotRecognised, ezHostPoolOutcome::NotReadable};

/// What a ledger has to say, by lists of everything that ever happened.
struct Model {
    std::size_t mBound;
    bool mfOrderKept;
    std::uint64_t mAdded = 0;
    std::deque<std::uint64_t> mWaiting;
    std::vector<std::uint64_t> mParsed;
    std::vector<std::uint64_t> mFinished; ///< in the order of it
    std::size_t mNotReceived = 0;
    std::vector<ezHostPoolOutcome> mOutcomes; ///< by number
    std::vector<std::uint64_t> mGivenOut;

    std::size_t UnderWay() const {
        return mWaiting.size() + mParsed.size() + mFinished.size() + mNotReceived;
    }
    /// Of the finished the place of the one that goes out next; their count for none.
    std::size_t NextPlace() const {
        for (std::size_t i = 0; i < mFinished.size(); ++i) {
            if (!mfOrderKept || mFinished[i] == mGivenOut.size()) {
                return i;
            }
        }
        return mFinished.size();
    }
    std::uint64_t CountOf(std::initializer_list<ezHostPoolOutcome> anOutcomes) const {
        std::uint64_t count = 0;
        for (const std::uint64_t number : mGivenOut) {
            count += std::count(anOutcomes.begin(), anOutcomes.end(), mOutcomes[number]) != 0;
        }
        return count;
    }
};

void Finish(PoolLedger& aLedger, Model& aModel) {
    const std::size_t at = *rc::gen::inRange<std::size_t>(0, aModel.mParsed.size());
    const std::uint64_t number = aModel.mParsed[at];
    aModel.mParsed.erase(aModel.mParsed.begin() + static_cast<std::ptrdiff_t>(at));
    aModel.mOutcomes[number] = *rc::gen::elementOf(kParsed);
    aModel.mFinished.push_back(number);
    aLedger.Finish({std::to_string(number), number, aModel.mOutcomes[number], nullptr, ""});
}

void Take(PoolLedger& aLedger, Model& aModel) {
    const std::optional<PoolItem> item = aLedger.Take();
    RC_ASSERT(item.has_value() == !aModel.mWaiting.empty());
    if (item) {
        RC_ASSERT(item->mNumber == aModel.mWaiting.front());
        RC_ASSERT(item->mName == std::to_string(item->mNumber));
        aModel.mParsed.push_back(item->mNumber);
        aModel.mWaiting.pop_front();
    }
}

void GiveOut(PoolLedger& aLedger, Model& aModel) {
    const std::size_t place = aModel.NextPlace();
    RC_ASSERT(aLedger.HasNext() == (place < aModel.mFinished.size()));
    if (aLedger.HasNext()) {
        const ezHostPoolResult result = aLedger.Next();
        RC_ASSERT(result.mNumber == aModel.mFinished[place]);
        RC_ASSERT(result.mName == std::to_string(result.mNumber));
        RC_ASSERT(result.mOutcome == aModel.mOutcomes[result.mNumber]);
        aModel.mFinished.erase(aModel.mFinished.begin() + static_cast<std::ptrdiff_t>(place));
        aModel.mGivenOut.push_back(result.mNumber);
        ++aModel.mNotReceived;
    }
}

void CancelWaiting(PoolLedger& aLedger, Model& aModel) {
    RC_ASSERT(aLedger.CancelWaiting().size() == aModel.mWaiting.size());
    aModel.mFinished.insert(aModel.mFinished.end(), aModel.mWaiting.begin(), aModel.mWaiting.end());
    for (const std::uint64_t number : aModel.mWaiting) {
        aModel.mOutcomes[number] = ezHostPoolOutcome::Cancelled;
    }
    aModel.mWaiting.clear();
}

void Step(PoolLedger& aLedger, Model& aModel) {
    const int step = *rc::gen::inRange(0, 16);
    if (step < 5) {
        aLedger.Add(std::to_string(aModel.mAdded), {});
        aModel.mWaiting.push_back(aModel.mAdded++);
        aModel.mOutcomes.push_back(ezHostPoolOutcome::Cancelled);
    } else if (step < 9) {
        Take(aLedger, aModel);
    } else if (step < 12 && !aModel.mParsed.empty()) {
        Finish(aLedger, aModel);
    } else if (step < 14) {
        GiveOut(aLedger, aModel);
    } else if (step < 15 && aModel.mNotReceived > 0) {
        --aModel.mNotReceived;
        aLedger.Received();
    } else if (step == 15) {
        CancelWaiting(aLedger, aModel);
    }
}

void Compare(const PoolLedger& aLedger, const Model& aModel) {
    using Outcome = ezHostPoolOutcome;
    const ezHostPoolProgress progress = aLedger.GetProgress();
    RC_ASSERT(aLedger.IsFull() == (aModel.UnderWay() >= aModel.mBound));
    RC_ASSERT(aLedger.HasRoom() == (4 * aModel.UnderWay() <= 3 * aModel.mBound));
    RC_ASSERT(aLedger.IsIdle() == (aModel.UnderWay() == 0));
    RC_ASSERT(progress.mSubmitted == aModel.mAdded);
    RC_ASSERT(progress.mDone == aModel.mGivenOut.size());
    RC_ASSERT(progress.mRecognised == aModel.CountOf({Outcome::Recognised}));
    RC_ASSERT(progress.mFailed == aModel.CountOf({Outcome::NotRecognised, Outcome::NotReadable}));
    RC_ASSERT(progress.mCancelled == aModel.CountOf({Outcome::Cancelled}));
}

} // namespace

RC_GTEST_PROP(PoolLedger, CountsAndOrdersWhatIsUnderWayLikeListsOfEverything, ()) {
    const std::size_t bound = *rc::gen::inRange<std::size_t>(1, 9);
    const bool fOrderKept = *rc::gen::arbitrary<bool>();
    PoolLedger ledger(bound, fOrderKept);
    Model model = {bound, fOrderKept, 0, {}, {}, {}, 0, {}, {}};
    const int steps = *rc::gen::inRange(0, 200);
    for (int i = 0; i < steps; ++i) {
        Step(ledger, model);
        Compare(ledger, model);
    }
    // What is under way comes to its end, each once, and in order where that is kept.
    CancelWaiting(ledger, model);
    while (!model.mParsed.empty()) {
        Finish(ledger, model);
    }
    while (ledger.HasNext()) {
        GiveOut(ledger, model);
    }
    Compare(ledger, model);
    RC_ASSERT(model.mGivenOut.size() == model.mAdded);
    RC_ASSERT(!fOrderKept || std::is_sorted(model.mGivenOut.begin(), model.mGivenOut.end()));
    RC_ASSERT(std::set<std::uint64_t>(model.mGivenOut.begin(), model.mGivenOut.end()).size() == model.mAdded);
}

TEST(PoolLedger, ABoundOfZeroIsOne) {
    PoolLedger ledger(0, false);
    EXPECT_FALSE(ledger.IsFull());
    ledger.Add("song.mp3", {});
    EXPECT_TRUE(ledger.IsFull());
}
