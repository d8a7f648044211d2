#include "ezHosting/detail/PoolCrew.h"

#include "companions/ezHosting/PoolKit.h"

#include "support/Catchers.h"
#include "support/TemporaryFolder.h"

#include <chrono>
#include <gtest/gtest.h>
#include <stdexcept>
#include <thread>

namespace {

using Outcome = ezHostPoolOutcome;
using Submitted = ezHostPool::Submitted;
using std::chrono::milliseconds;

constexpr std::size_t kThreads[] = {1, 2, 4};

/// A record that is counted as long as it lives.
class CountedInfo : public ezMediaInfo {
public:
    CountedInfo(std::atomic<int>& aAlive, std::atomic<int>& aMost) : mAlive(aAlive) {
        const int alive = ++mAlive;
        int most = aMost;
        while (most < alive && !aMost.compare_exchange_weak(most, alive)) {
        }
    }
    ~CountedInfo() override { --mAlive; }

private:
    std::atomic<int>& mAlive;
};

} // namespace

TEST(PoolCrew, EveryItemGetsOneResultAndTheNumbersTell) {
    for (const std::size_t threads : kThreads) {
        Results results;
        const Crew crew(threads, 8, false, results.Taker());
        ASSERT_EQ(crew.GetError(), "");
        EXPECT_EQ(crew->GetThreadCount(), threads);
        for (int i = 0; i < 200; ++i) {
            ASSERT_EQ(crew.SubmitZeros(), Submitted::Taken);
        }
        EXPECT_TRUE(crew->Wait());
        EXPECT_EQ(results.SortedNumbers(), Counting(200));
        EXPECT_EQ(results.CountOf(Outcome::Recognised), 200U);
        for (const ezHostPoolResult& result : results.mAll) {
            EXPECT_EQ(result.mName, "zeros");
            ASSERT_NE(result.mInfo, nullptr);
            EXPECT_EQ(result.mInfo->GetCString(kezInfo_MimeType, ""), "video/x-zeros");
        }
        const ezHostPoolProgress progress = crew->GetProgress();
        EXPECT_EQ(progress.mSubmitted, 200U);
        EXPECT_EQ(progress.mDone, 200U);
        EXPECT_EQ(progress.mRecognised, 200U);
        EXPECT_EQ(progress.mFailed, 0U);
        EXPECT_EQ(progress.mCancelled, 0U);
    }
}

TEST(PoolCrew, TellsWhatIsNotReadableFromWhatIsNotRecognised) {
    const TemporaryFolder folder;
    const std::string whole = folder.Write("whole.bin", std::string(40'000, 'x'));
    const std::string brief = folder.Write("brief.bin", "x");
    Results results;
    const Crew crew(1, 8, true, results.Taker());
    crew->Submit(whole, {});
    crew->Submit(brief, {});
    crew->Submit(folder.Path("none.bin"), {});
    crew->Submit(folder.GetPath(), {});
    crew->Submit("no stream", [](ezCancellation&) { return nullptr; });
    crew->Wait();
    const std::vector<Outcome> expected = {Outcome::Recognised, Outcome::NotRecognised, Outcome::NotReadable,
                                           Outcome::NotReadable, Outcome::NotReadable};
    ASSERT_EQ(results.mAll.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(results.mAll[i].mOutcome, expected[i]) << i;
        EXPECT_EQ(results.mAll[i].mInfo != nullptr, expected[i] == Outcome::Recognised) << i;
        EXPECT_EQ(results.mAll[i].mError.empty(), expected[i] != Outcome::NotReadable) << i;
    }
    EXPECT_EQ(results.mAll[2].mError, folder.Path("none.bin") + ": not found");
    EXPECT_EQ(results.mAll[3].mError, folder.GetPath() + ": not a regular file");
    EXPECT_EQ(results.mAll[4].mError, "no stream: there is no stream");
    EXPECT_EQ(results.mAll[0].mName, whole);
    EXPECT_EQ(crew->GetProgress().mRecognised, 1U);
    EXPECT_EQ(crew->GetProgress().mFailed, 4U);
}

TEST(PoolCrew, KeepsTheOrderOfSubmissionOnRequestAlone) {
    for (const bool fOrderKept : {false, true}) {
        Results results;
        Gate first;
        const Crew crew(2, 8, fOrderKept, results.Taker());
        crew.SubmitZeros([&] { first.Pass(); });
        first.AwaitArrivals(1);
        for (int i = 0; i < 5; ++i) {
            crew.SubmitZeros();
        }
        while (!fOrderKept && crew->GetProgress().mDone < 5) {
            std::this_thread::yield();
        }
        first.Open();
        crew->Wait();
        const std::vector<std::uint64_t> finished = {1, 2, 3, 4, 5, 0};
        EXPECT_EQ(results.Numbers(), fOrderKept ? Counting(6) : finished);
    }
}

TEST(PoolCrew, WhatIsHeldBackForTheOrderCountsForTheBound) {
    Results results;
    Gate first;
    const Crew crew(2, 3, true, results.Taker());
    crew.SubmitZeros([&] { first.Pass(); });
    first.AwaitArrivals(1);
    crew.SubmitZeros();
    crew.SubmitZeros();
    std::atomic<bool> fTaken{false};
    std::thread submitter([&] {
        crew.SubmitZeros();
        fTaken = true;
    });
    std::this_thread::sleep_for(milliseconds(30));
    EXPECT_FALSE(fTaken) << "the two that are done have not gone out";
    EXPECT_EQ(crew->GetProgress().mSubmitted, 3U);
    first.Open();
    submitter.join();
    crew->Wait();
    EXPECT_EQ(results.Numbers(), Counting(4));
}

TEST(PoolCrew, MemoryIsBoundedWhateverIsSlow) {
    for (const std::size_t threads : kThreads) {
        for (const bool fOrderKept : {false, true}) {
            constexpr std::size_t kBound = 5;
            std::atomic<int> alive{0};
            std::atomic<int> most{0};
            std::size_t mostUnderWay = 0;
            {
                std::unique_ptr<Crew> crew;
                const auto slow = [&](const ezHostPoolResult&) {
                    std::this_thread::sleep_for(milliseconds(1));
                    const ezHostPoolProgress progress = (*crew)->GetProgress();
                    mostUnderWay =
                        std::max<std::size_t>(mostUnderWay, progress.mSubmitted - (progress.mDone - 1));
                };
                crew = std::make_unique<Crew>(threads, kBound, fOrderKept, slow, [&](ezMediaParserStream&) {
                    return std::make_unique<CountedInfo>(alive, most);
                });
                for (int i = 0; i < 60; ++i) {
                    crew->SubmitZeros();
                }
                (*crew)->Wait();
            }
            EXPECT_EQ(alive, 0);
            EXPECT_GE(most, threads == 1 ? 1 : 2) << "the callback is slower than the parsing";
            EXPECT_LE(most, static_cast<int>(kBound));
            EXPECT_EQ(mostUnderWay, kBound) << "this fills it up, and no more";
        }
    }
}

TEST(PoolCrew, GivesOneResultAtATime) {
    std::atomic<int> inside{0};
    std::atomic<int> most{0};
    const Crew crew(4, 16, false, [&](const ezHostPoolResult&) {
        most = std::max(most.load(), ++inside);
        std::this_thread::yield();
        --inside;
    });
    for (int i = 0; i < 300; ++i) {
        crew.SubmitZeros();
    }
    crew->Wait();
    EXPECT_EQ(most, 1);
}

TEST(PoolCrew, ParsesOnAllThreadsAtATimeAlsoWhileTheCallbackRuns) {
    Gate all;
    Gate callback;
    const Crew crew(3, 16, false, [&](const ezHostPoolResult&) { callback.Pass(); });
    crew.SubmitZeros();
    callback.AwaitArrivals(1);
    crew.SubmitZeros([&] { all.Pass(); });
    crew.SubmitZeros([&] { all.Pass(); });
    all.AwaitArrivals(2);
    all.Open();
    callback.Open();
    EXPECT_TRUE(crew->Wait());
}

TEST(PoolCrew, WithoutACallbackTheResultsCount) {
    const Crew crew(2, 4, false, {});
    for (int i = 0; i < 20; ++i) {
        crew.SubmitZeros();
    }
    EXPECT_TRUE(crew->Wait());
    EXPECT_EQ(crew->GetProgress().mRecognised, 20U);
}

TEST(PoolCrew, TheMakerOfAStreamIsCalledOnceAndGoesBeforeTheResult) {
    auto token = std::make_shared<int>(); // const, a closure could not move its copy and would leave an owner
    std::atomic<int> calls{0};
    long owners = 0;
    const Crew crew(1, 4, false, [&](const ezHostPoolResult&) { owners = token.use_count(); });
    crew->Submit("zeros", [token, &calls](ezCancellation&) {
        ++calls;
        return std::make_unique<ReadsOf>([token] {});
    });
    crew->Wait();
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(owners, 1);
}

TEST(PoolCrew, SeveralThreadsMaySubmit) {
    Results results;
    const Crew crew(2, 5, true, results.Taker());
    std::vector<std::thread> submitters;
    for (int i = 0; i < 3; ++i) {
        submitters.emplace_back([&crew] {
            for (int j = 0; j < 50; ++j) {
                EXPECT_EQ(crew.SubmitZeros(), Submitted::Taken);
            }
        });
    }
    for (std::thread& submitter : submitters) {
        submitter.join();
    }
    crew->Wait();
    EXPECT_EQ(results.Numbers(), Counting(150));
}

// Waiting

TEST(PoolCrew, AWaitOfLimitedTimeTellsWhetherAllIsDone) {
    Gate gate;
    const Crew crew(1, 4, false, {});
    EXPECT_TRUE(crew->WaitFor(milliseconds(0)));
    EXPECT_TRUE(crew->WaitFor(milliseconds(-1)));
    crew.SubmitZeros([&] { gate.Pass(); });
    EXPECT_FALSE(crew->WaitFor(milliseconds(1)));
    gate.Open();
    EXPECT_TRUE(crew->WaitFor(milliseconds::max()));
}

TEST(PoolCrew, AWaitLastsUntilTheLastCallbackHasReturned) {
    Gate gate;
    std::atomic<bool> fReturned{false};
    const Crew crew(1, 4, false, [&](const ezHostPoolResult&) {
        gate.Pass();
        fReturned = true;
    });
    crew.SubmitZeros();
    gate.AwaitArrivals(1);
    EXPECT_EQ(crew->GetProgress().mDone, 1U) << "given out";
    EXPECT_FALSE(crew->WaitFor(milliseconds(1)));
    gate.Open();
    EXPECT_TRUE(crew->Wait());
    EXPECT_TRUE(fReturned);
}

TEST(PoolCrew, AThreadOfThePoolNeverWaitsForItself) {
    std::vector<Submitted> submitted;
    std::vector<bool> waited;
    const Crew* self = nullptr;
    const Crew crew(1, 2, false, [&](ezHostPoolResult aResult) {
        waited.push_back((*self)->Wait());
        waited.push_back((*self)->WaitFor(milliseconds(1)));
        if (aResult.mNumber == 0) {
            submitted.push_back(self->SubmitZeros()); // beside the one that this call is about
            submitted.push_back(self->SubmitZeros());
        }
    });
    self = &crew;
    crew.SubmitZeros();
    EXPECT_TRUE(crew->Wait());
    EXPECT_EQ(submitted, (std::vector<Submitted>{Submitted::Taken, Submitted::Full}));
    EXPECT_EQ(waited, std::vector<bool>(4, false));
    EXPECT_EQ(crew->GetProgress().mDone, 2U);
}

// Cancelling

TEST(PoolCrew, CancellingAnswersWhatWaitsWithoutOpeningIt) {
    Results results;
    Gate gate;
    std::atomic<int> made{0};
    const Crew crew(1, 8, true, results.Taker());
    crew.SubmitZeros([&] { gate.Pass(); });
    gate.AwaitArrivals(1);
    for (int i = 0; i < 4; ++i) {
        crew->Submit("waiting", [&made](ezCancellation&) {
            ++made;
            return nullptr;
        });
    }
    EXPECT_FALSE(crew->IsCancelled());
    crew->Cancel();
    EXPECT_TRUE(crew->IsCancelled());
    gate.Open();
    EXPECT_TRUE(crew->Wait());
    EXPECT_EQ(made, 0);
    EXPECT_EQ(results.Numbers(), Counting(5));
    EXPECT_EQ(results.CountOf(Outcome::Cancelled), 5U);
    EXPECT_EQ(crew->GetProgress().mCancelled, 5U);
    EXPECT_EQ(crew.SubmitZeros(), Submitted::Cancelled) << "it stays cancelled";
}

TEST(PoolCrew, NothingIsOpenedOnceTheCancellingHasBegun) {
    ezCancellation* cancellation = nullptr;
    Gate gate;
    std::atomic<int> made{0};
    const Crew crew(1, 8, false, {});
    crew->Submit("zeros", [&](ezCancellation& aCancellation) {
        cancellation = &aCancellation;
        return std::make_unique<ReadsOf>([&] { gate.Pass(); });
    });
    gate.AwaitArrivals(1);
    crew->Submit("waiting", [&made](ezCancellation&) {
        ++made;
        return nullptr;
    });
    {
        // Before those that wait are answered the thread is free to take one.
        const ezCancellation::Watch watch(*cancellation, [&] {
            gate.Open();
            while (crew->GetProgress().mDone < 2) {
                std::this_thread::yield();
            }
        });
        crew->Cancel();
    }
    crew->Wait();
    EXPECT_EQ(made, 0);
}

TEST(PoolCrew, ARequestWaitsForOneReadAtMost) {
    for (const std::size_t threads : kThreads) {
        Results results;
        Gate gate;
        std::atomic<std::size_t> reads{0};
        const Crew crew(threads, 8, false, results.Taker(), [](ezMediaParserStream& aStream) {
            std::vector<char> bytes(16 * 1024);
            for (int i = 0; i < 1'000; ++i) { // whatever the reads say
                aStream.Read(bytes.size(), bytes.data());
            }
            return std::make_unique<ezMediaInfo>();
        });
        for (std::size_t i = 0; i < threads; ++i) {
            crew.SubmitZeros([&] {
                ++reads;
                gate.Pass();
            });
        }
        gate.AwaitArrivals(threads);
        crew->Cancel();
        gate.Open();
        crew->Wait();
        EXPECT_EQ(reads, threads);
        EXPECT_EQ(results.CountOf(Outcome::Cancelled), threads) << "a record that was cut is not given out";
        for (const ezHostPoolResult& result : results.mAll) {
            EXPECT_EQ(result.mInfo, nullptr);
        }
    }
}

TEST(PoolCrew, AStreamThatDoesNotWatchIsReadOnAndItsItemIsCancelledAllTheSame) {
    Results results;
    Gate gate;
    std::atomic<int> reads{0};
    const Crew crew(1, 8, false, results.Taker());
    crew->Submit("zeros", [&](ezCancellation&) {
        return std::make_unique<ReadsOf>([&] {
            ++reads;
            gate.Pass();
        });
    });
    gate.AwaitArrivals(1);
    crew->Cancel();
    gate.Open();
    crew->Wait();
    EXPECT_EQ(reads, 2);
    EXPECT_EQ(results.CountOf(Outcome::Cancelled), 1U);
}

TEST(PoolCrew, AFileIsCancelledToo) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("long.bin", std::string(100'000, 'x'));
    Results results;
    Gate gate;
    std::atomic<int> passed{0};
    const Crew crew(1, 8, false, results.Taker(), [&](ezMediaParserStream& aStream) {
        gate.Pass();
        passed += aStream.Read(50'000, std::vector<char>(50'000).data()) ? 1 : 0;
        return std::make_unique<ezMediaInfo>();
    });
    crew->Submit(path, {});
    gate.AwaitArrivals(1);
    crew->Cancel();
    gate.Open();
    crew->Wait();
    EXPECT_EQ(passed, 0);
    EXPECT_EQ(results.CountOf(Outcome::Cancelled), 1U);
}

TEST(PoolCrew, WhatWasDoneBeforeTheCancellingIsGivenOut) {
    Results results;
    Gate callback;
    const Crew crew(2, 8, false, [&, take = results.Taker()](ezHostPoolResult aResult) {
        callback.Pass();
        take(std::move(aResult));
    });
    crew.SubmitZeros();
    callback.AwaitArrivals(1);
    Gate second;
    crew.SubmitZeros();
    crew.SubmitZeros([&] { second.Pass(); }); // begins when the one before is done
    second.AwaitArrivals(1);
    crew->Cancel();
    second.Open();
    callback.Open();
    crew->Wait();
    EXPECT_EQ(results.Numbers(), Counting(3));
    EXPECT_EQ(results.mAll[1].mOutcome, Outcome::Recognised);
    EXPECT_EQ(results.mAll[2].mOutcome, Outcome::Cancelled);
}

TEST(PoolCrew, CancellingLetsASubmitGoThatWaits) {
    Gate gate;
    const Crew crew(1, 1, false, {});
    crew.SubmitZeros([&] { gate.Pass(); });
    gate.AwaitArrivals(1);
    Submitted submitted = Submitted::Taken;
    std::thread submitter([&] { submitted = crew.SubmitZeros(); });
    std::this_thread::sleep_for(milliseconds(10));
    crew->Cancel();
    submitter.join();
    EXPECT_EQ(submitted, Submitted::Cancelled);
    gate.Open();
}

TEST(PoolCrew, TheCallbackMayCancel) {
    for (const std::size_t threads : kThreads) {
        Results results;
        const Crew* self = nullptr;
        const Crew crew(threads, 8, true, [&, take = results.Taker()](ezHostPoolResult aResult) {
            if (aResult.mNumber == 10) {
                (*self)->Cancel();
            }
            take(std::move(aResult));
        });
        self = &crew;
        std::uint64_t taken = 0;
        while (crew.SubmitZeros() == Submitted::Taken) {
            ++taken;
        }
        crew->Wait();
        EXPECT_EQ(results.Numbers(), Counting(taken));
        EXPECT_GE(taken, 11U);
        EXPECT_LE(results.CountOf(Outcome::Cancelled), 8U);
    }
}

// The end

TEST(PoolCrew, DestructionCancelsAndGivesEverythingOut) {
    for (const std::size_t threads : kThreads) {
        Results results;
        {
            const Crew crew(threads, 100, false, results.Taker());
            for (int i = 0; i < 50; ++i) {
                crew->Submit("endless", [](ezCancellation& aCancellation) {
                    return std::make_unique<ezCancellable<ReadsOf>>(aCancellation, [&aCancellation] {
                        while (!aCancellation.IsCancelled()) {
                            std::this_thread::yield();
                        }
                    });
                });
            }
        }
        EXPECT_EQ(results.SortedNumbers(), Counting(50));
        EXPECT_EQ(results.CountOf(Outcome::Cancelled), 50U);
    }
}

TEST(PoolCrew, TheCallbackMayDestroyThePoolAndGetsTheRestWithinThat) {
    for (const std::size_t threads : kThreads) {
        Results results;
        Gate started;
        Gate gone;
        int depth = 0;
        int deepest = 0;
        std::unique_ptr<Crew> crew;
        crew =
            std::make_unique<Crew>(threads, 100, true, [&, take = results.Taker()](ezHostPoolResult aResult) {
                deepest = std::max(deepest, ++depth);
                const bool fFirst = aResult.mNumber == 0;
                take(std::move(aResult));
                if (fFirst) {
                    started.Pass();
                    crew.reset();
                    EXPECT_EQ(results.Numbers(), Counting(20)) << "all of them have come when it is gone";
                }
                --depth;
                if (fFirst) {
                    gone.Open();
                }
            });
        for (int i = 0; i < 20; ++i) {
            crew->SubmitZeros();
        }
        started.Open();
        gone.Pass();
        EXPECT_EQ(deepest, 2);
        EXPECT_EQ(results.Numbers(), Counting(20));
    }
}

// What throws

TEST(PoolCrew, ACallbackThatThrowsCancelsAndIsHeardOf) {
    LogCatcher log(EZLOGLEVEL_WARNING);
    Results results;
    Gate gate;
    const Crew crew(1, 8, true, [&, take = results.Taker()](ezHostPoolResult aResult) {
        const std::uint64_t number = aResult.mNumber;
        take(std::move(aResult));
        if (number < 2) {
            throw std::runtime_error("the disk is full, " + std::to_string(number));
        }
    });
    crew.SubmitZeros([&] { gate.Pass(); });
    crew.SubmitZeros();
    crew.SubmitZeros();
    gate.Open();
    try {
        crew->Wait();
        FAIL() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "the disk is full, 0");
    }
    EXPECT_TRUE(crew->Wait()) << "once";
    EXPECT_TRUE(crew->IsCancelled());
    EXPECT_EQ(results.Numbers(), Counting(3)) << "the others have their results all the same";
    EXPECT_TRUE(log.Has("ezHostPool: Cancelled by what the host threw: the disk is full, 0\n"));
    EXPECT_TRUE(log.Has("ezHostPool: Cancelled by what the host threw: the disk is full, 1\n"));
}

TEST(PoolCrew, AStreamThatThrowsDoesTheSame) {
    const LogCatcher log(EZLOGLEVEL_WARNING);
    Results results;
    const Crew crew(1, 8, true, results.Taker());
    crew->Submit("maker", [](ezCancellation&) -> std::unique_ptr<ezMediaParserStream> { throw 7; });
    EXPECT_THROW(crew->WaitFor(milliseconds::max()), int);
    EXPECT_EQ(results.CountOf(Outcome::Cancelled), 1U);
    EXPECT_TRUE(
        log.Has("ezHostPool: Cancelled by what the host threw: something that is no std::exception\n"));

    const Crew other(1, 8, true, results.Taker());
    other.SubmitZeros([] { throw std::runtime_error("the cable is out"); });
    EXPECT_THROW(other->Wait(), std::runtime_error);
    EXPECT_EQ(results.CountOf(Outcome::Cancelled), 2U);
}

TEST(PoolCrew, WhatWasThrownAndNotWaitedForIsLoggedAlone) {
    const LogCatcher log(EZLOGLEVEL_WARNING);
    {
        const Crew crew(1, 8, true, [](const ezHostPoolResult&) { throw std::runtime_error("nobody asks"); });
        crew.SubmitZeros();
    }
    EXPECT_TRUE(log.Has("ezHostPool: Cancelled by what the host threw: nobody asks\n"));
}
