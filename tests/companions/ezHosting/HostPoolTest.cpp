#include "ezHosting/HostPool.h"

#include "PoolKit.h"

#include "support/Folders.h"
#include "support/Record.h"
#include "support/TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <stdexcept>
#include <thread>

#ifdef EZ_HAS_LIVE_STREAMS
#include "ezLiveStreams/DescriptorStream.h"
#ifdef EZ_HAS_HTTP_STREAM
#include "ezLiveStreams/HttpStream.h"

#include "support/HttpServer.h"
#endif
#include <unistd.h>
#endif

namespace {

using Outcome = ezHostPoolOutcome;
using Submitted = ezHostPool::Submitted;

std::vector<std::string> Samples() {
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(EZ_SAMPLES)) {
        if (entry.is_regular_file()) {
            paths.push_back(entry.path().string());
        }
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

ezHostPoolOptions Ordered(std::size_t aThreads, std::size_t aBound = 8) {
    return {aThreads, aBound, true};
}

} // namespace

TEST(HostPool, FindsTheRecordsOfOneHostOnAnyNumberOfThreads) {
    const std::vector<std::string> samples = Samples();
    ASSERT_GT(samples.size(), 50U);
    std::vector<std::string> expected;
    ezHost host(EZ_SAMPLES);
    for (const std::string& path : samples) {
        const Record record = host.Identify(path);
        expected.push_back(DumpRecord(record.get()));
    }
    for (const std::size_t threads : {1U, 2U, 4U}) {
        Results results;
        ezHostPool pool(EZ_SAMPLES, {}, Ordered(threads), results.Taker());
        ASSERT_TRUE(pool.IsReady()) << pool.GetError();
        EXPECT_EQ(pool.GetThreadCount(), threads);
        for (const std::string& path : samples) {
            ASSERT_EQ(pool.Submit(path), Submitted::Taken);
        }
        ASSERT_TRUE(pool.Wait());
        ASSERT_EQ(results.mAll.size(), samples.size());
        for (std::size_t i = 0; i < samples.size(); ++i) {
            const ezHostPoolResult& result = results.mAll[i];
            EXPECT_EQ(result.mName, samples[i]);
            EXPECT_EQ(DumpRecord(result.mInfo.get()), expected[i]);
            EXPECT_EQ(result.mOutcome,
                      expected[i] == "null\n" ? Outcome::NotRecognised : Outcome::Recognised);
            EXPECT_EQ(result.mError, "");
        }
        EXPECT_EQ(pool.GetProgress().mDone, samples.size());
        EXPECT_FALSE(pool.IsCancelled());
    }
}

TEST(HostPool, SaysWhyAFileCannotBeReadInTheWordsOfAHost) {
    const TemporaryFolder folder;
    ezHost host(EZ_SAMPLES);
    Results results;
    ezHostPool pool(EZ_SAMPLES, {}, Ordered(1), results.Taker());
    const std::vector<std::string> paths = {folder.Path("none.mp3"), folder.GetPath(), ""};
    for (const std::string& path : paths) {
        pool.Submit(path);
    }
    pool.Submit("a stream", ezHostPool::StreamMaker());
    pool.Submit("a stream",
                [](ezCancellation& aCancellation) { return ezMakeCancellable(aCancellation, nullptr); });
    pool.Wait();
    ASSERT_EQ(results.mAll.size(), 5U);
    for (std::size_t i = 0; i < paths.size(); ++i) {
        EXPECT_EQ(host.Identify(paths[i]), nullptr);
        EXPECT_NE(host.GetError(), "");
        EXPECT_EQ(results.mAll[i].mError, host.GetError());
    }
    EXPECT_EQ(results.mAll[3].mError, "a stream: there is no stream");
    EXPECT_EQ(results.mAll[4].mError, "the stream: cannot be opened");
    EXPECT_EQ(results.CountOf(Outcome::NotReadable), 5U);
    EXPECT_EQ(pool.GetProgress().mFailed, 5U);
}

TEST(HostPool, IsNotReadyWhereAHostIsNot) {
    const TemporaryFolder folder;
    const ezHost host(folder.GetPath());
    Results results;
    ezHostPool pool(folder.GetPath(), {}, {}, results.Taker());
    EXPECT_FALSE(pool.IsReady());
    EXPECT_EQ(pool.GetError(), host.GetError());
    EXPECT_EQ(pool.GetThreadCount(), 0U);
    EXPECT_EQ(pool.Submit("song.mp3"), Submitted::NotReady);
    EXPECT_EQ(pool.Submit("song", ezHostPool::StreamMaker()), Submitted::NotReady);
    EXPECT_TRUE(pool.Wait());
    EXPECT_TRUE(pool.WaitFor(std::chrono::milliseconds(1)));
    EXPECT_EQ(pool.GetProgress().mSubmitted, 0U);
    pool.Cancel();
    EXPECT_TRUE(pool.IsCancelled());
    EXPECT_EQ(results.mAll.size(), 0U);
}

TEST(HostPool, HasAsManyThreadsAsTheMachineRunsUnlessToldAndAtMost64) {
    const TemporaryFolder folder;
    ezHostOptions bare;
    bare.mfFormats = false;
    bare.mfTableRequired = false;
    const std::size_t machine = std::max(1U, std::thread::hardware_concurrency());
    EXPECT_EQ(ezHostPool(folder.GetPath(), bare, {}, {}).GetThreadCount(),
              std::min(machine, ezHostPool::kMaxThreads));
    EXPECT_EQ(ezHostPoolOptions().mBound, 64U);
    EXPECT_EQ(ezHostPool(folder.GetPath(), bare, {64, 1, false}, {}).GetThreadCount(), 64U);
    EXPECT_EQ(ezHostPool(folder.GetPath(), bare, {65, 1, false}, {}).GetThreadCount(), 64U);
}

TEST(HostPool, MakesAHostAThreadAndLetsOutWhatThatThrows) {
    ezHostOptions options;
    std::vector<std::thread::id> makers;
    options.mAddParsers = [&makers](ezMediaParserManager&) {
        makers.push_back(std::this_thread::get_id());
        if (makers.size() == 6) {
            throw std::runtime_error("no parser");
        }
    };
    EXPECT_TRUE(ezHostPool(EZ_SAMPLES, options, {3, 1, false}, {}).IsReady());
    EXPECT_EQ(makers, std::vector<std::thread::id>(3, std::this_thread::get_id()));
    EXPECT_THROW(ezHostPool(EZ_SAMPLES, options, {4, 1, false}, {}), std::runtime_error);
}

TEST(HostPool, TheCallbackMayDestroyIt) {
    Gate made;
    Gate gone;
    Results results;
    std::unique_ptr<ezHostPool> pool;
    pool = std::make_unique<ezHostPool>(EZ_SAMPLES, ezHostOptions(), Ordered(2, 100),
                                        [&, take = results.Taker()](ezHostPoolResult aResult) {
                                            const bool fFirst = aResult.mNumber == 0;
                                            take(std::move(aResult));
                                            if (fFirst) {
                                                made.Pass();
                                                pool.reset();
                                                gone.Open();
                                            }
                                        });
    for (const std::string& path : Samples()) {
        pool->Submit(path);
        if (pool->GetProgress().mSubmitted == 50) {
            break;
        }
    }
    made.Open();
    gone.Pass();
    EXPECT_EQ(results.Numbers(), Counting(50));
}

#ifdef EZ_HAS_LIVE_STREAMS

namespace {

std::unique_ptr<ezMediaParserStream> MakePipeStream(ezCancellation& aCancellation, int aPipe,
                                                    const ezFeedOptions& anOptions) {
    auto* const feed = new ezDescriptorStream(aPipe, "pipe.mp3", anOptions);
    return ezMakeCancellable(aCancellation, ezStreamOwner(feed), [feed] { feed->Cancel(); });
}

/// A pipe that nobody writes to.
class Silence {
public:
    Silence() { EXPECT_EQ(pipe(mEnds), 0); }
    ~Silence() {
        close(mEnds[0]);
        close(mEnds[1]);
    }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;
    int GetReadEnd() const { return mEnds[0]; }

private:
    int mEnds[2] = {-1, -1};
};

} // namespace

TEST(HostPool, CancellingDoesNotWaitForLiveStreamsThatBringNothing) {
    for (const bool fWaitForSize : {false, true}) {
        for (int i = 0; i < 20; ++i) {
            const Silence silences[3];
            Gate begun;
            begun.Open();
            Results results;
            ezHostPool pool(EZ_SAMPLES, {}, {2, 8, false}, results.Taker());
            for (const Silence& silence : silences) {
                pool.Submit("silence", [&](ezCancellation& aCancellation) {
                    ezFeedOptions options;
                    options.mfWaitForSize = fWaitForSize;
                    begun.Pass();
                    return MakePipeStream(aCancellation, silence.GetReadEnd(), options);
                });
            }
            begun.AwaitArrivals(2);
            if (i % 2 == 0) {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
            pool.Cancel();
            EXPECT_TRUE(pool.Wait());
            EXPECT_EQ(results.SortedNumbers(), Counting(3));
            EXPECT_EQ(results.CountOf(Outcome::Cancelled), 3U);
        }
    }
}

#ifdef EZ_HAS_HTTP_STREAM
TEST(HostPool, CancellingDoesNotWaitForAServerThatStalls) {
    for (const char* sent : {"", "HTTP/1.1 200 OK\r\nContent-Length: 100000\r\n\r\nID3"}) {
        Gate asked;
        asked.Open();
        const HttpServer server([&](const HttpRequest&, HttpConnection& aClient) {
            aClient.Send(sent);
            asked.Pass();
            aClient.Stall();
        });
        Results results;
        ezHostPool pool(EZ_SAMPLES, {}, {1, 8, false}, results.Taker());
        pool.Submit("stalls", [&server](ezCancellation& aCancellation) {
            ezHttpOptions options;
            options.mStallTime = std::chrono::hours(1);
            return ezMakeCancellable(
                aCancellation, ezStreamOwner(new ezHttpStream(ezCString(server.URL("/song.mp3")), options)));
        });
        asked.AwaitArrivals(1);
        pool.Cancel();
        EXPECT_TRUE(pool.WaitFor(std::chrono::minutes(4)));
        EXPECT_EQ(results.CountOf(Outcome::Cancelled), 1U);
    }
}
#endif

#endif
