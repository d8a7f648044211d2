#include "bench/Allocations.h"
#include "bench/Benches.h"
#include "bench/CountedSystem.h"
#include "bench/FormatFiles.h"
#include "bench/Hosts.h"
#include "bench/Measure.h"

#include "ezHosting/HostPool.h"

#include "ez/FileMediaParserStream.h"
#include "support/Folders.h"
#include "support/TemporaryFolder.h"

#include <unistd.h>

#include <chrono>
#include <ctime>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kFiles = 10000;
constexpr std::size_t kCounted = 1000; ///< files whose calls and allocations are counted
constexpr std::size_t kThreads[] = {1, 2, 4};

/// So many files of all families in turn, each path a link to one of some dozen files; a host, and pools.
class Library {
public:
    explicit Library(std::size_t aCount) : mCount(aCount) {
        std::vector<std::string> originals;
        std::vector<std::string> extensions;
        for (const FormatFamily& family : FormatFiles_Families()) {
            for (const FormatFile& file : family.mFiles()) {
                const std::string name = "original-" + std::to_string(originals.size());
                originals.push_back(mFolder.Write(name, file.mBytes));
                extensions.emplace_back(file.mExtension);
            }
        }
        for (std::size_t i = 0; i < aCount; ++i) {
            const std::size_t kind = i % originals.size();
            mPaths.push_back(mFolder.Path("file-" + std::to_string(100000 + i) + "." + extensions[kind]));
            Require(link(originals[kind].c_str(), mPaths.back().c_str()) == 0, "a file can have many names");
        }
    }

    void ParseByHost() const {
        for (const std::string& path : mPaths) {
            mHost.Parse(ezCString(path));
        }
    }

    /// @param aBeforeWait  called when all is submitted
    template <typename BeforeWait>
    void ParseByPool(ezHostPool& aPool, const BeforeWait& aBeforeWait) const {
        const std::uint64_t before = aPool.GetProgress().mRecognised;
        for (const std::string& path : mPaths) {
            aPool.Submit(path);
        }
        aBeforeWait();
        Require(aPool.Wait() && aPool.GetProgress().mRecognised == before + mCount,
                "the pool knows all files");
    }

    static std::shared_ptr<ezHostPool> MakePool(std::size_t aThreads, std::size_t aBound) {
        auto pool = std::make_shared<ezHostPool>(EZ_SAMPLES, ezHostOptions(),
                                                 ezHostPoolOptions{aThreads, aBound, false}, nullptr);
        Require(pool->IsReady(), "there is a pool");
        return pool;
    }

    std::size_t GetCount() const { return mCount; }

private:
    const std::size_t mCount;
    TemporaryFolder mFolder;
    BenchHost mHost{EZ_SAMPLES, BenchHost::Parsers::Formats};
    std::vector<std::string> mPaths;
};

/// Of all threads together, and of the clock on the wall.
double NanosecondsOf(clockid_t aClock) {
    struct timespec time = {};
    clock_gettime(aClock, &time);
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

/// Nanoseconds a file by a clock.
Side MakeSide(const std::string& aName, const std::shared_ptr<Library>& aLibrary, clockid_t aClock,
              const std::function<void()>& aWork) {
    return {aName,
            [aLibrary, aClock, aWork] {
                const double start = NanosecondsOf(aClock);
                aWork();
                return (NanosecondsOf(aClock) - start) / static_cast<double>(aLibrary->GetCount());
            },
            "files"};
}

/// One host, then the pools.
std::vector<Side> Sides(clockid_t aClock) {
    const auto library = std::make_shared<Library>(kFiles);
    std::vector<Side> sides = {MakeSide("host", library, aClock, [library] { library->ParseByHost(); })};
    for (const std::size_t threads : kThreads) {
        const auto pool = Library::MakePool(threads, ezHostPoolOptions().mBound);
        sides.push_back(MakeSide("pool of " + std::to_string(threads), library, aClock,
                                 [library, pool] { library->ParseByPool(*pool, [] {}); }));
    }
    return sides;
}

std::vector<Claim> Claims(const std::string& aWhat) {
    std::vector<Claim> claims;
    for (std::size_t i = 0; i < std::size(kThreads); ++i) {
        claims.push_back(
            {"10,000 files, " + aWhat + ": pool of " + std::to_string(kThreads[i]) + " / one manager",
             [i](const Costs& aCosts) { return aCosts[i + 1] / aCosts[0]; }, 0});
    }
    return claims;
}

/// System calls and allocations a file of one host and of a pool of one thread, which begins when all is
/// submitted: the counters are for one thread at a time.
void CountPool() {
    const Library library(kCounted);
    const auto perFile = [&](std::size_t aCount) {
        return static_cast<double>(aCount) / static_cast<double>(kCounted);
    };
    struct Cost {
        double mCalls;
        double mBytes;
        double mAllocations;
    };
    const auto costOf = [&](const std::function<void()>& aWork) {
        aWork(); // lists that serve all requests have their memory after the first
        const CountedSystem system;
        const std::size_t before = Allocations_Count();
        aWork();
        const std::size_t allocations = Allocations_Count() - before;
        const CountedSystem::Counts& counts = system.GetCounts();
        return Cost{perFile(counts.mStat + counts.mOpen + counts.mFStat + counts.mRead + counts.mClose +
                            counts.mOther),
                    perFile(counts.mReadBytes), perFile(allocations)};
    };
    const Cost host = costOf([&] { library.ParseByHost(); });
    const auto pool = Library::MakePool(1, kCounted + 1);
    const Cost pooled = costOf([&] {
        std::mutex submitting;
        std::unique_lock<std::mutex> lock(submitting);
        pool->Submit("gate", [&submitting](ezCancellation&) {
            const std::lock_guard<std::mutex> passed(submitting);
            return nullptr;
        });
        library.ParseByPool(*pool, [&lock] { lock.unlock(); });
    });
    NoteCount("pool of 1, system calls a file above one manager's", pooled.mCalls - host.mCalls, 0);
    NoteCount("pool of 1, bytes read a file above one manager's", pooled.mBytes - host.mBytes, 0);
    NoteCount("pool of 1, allocations a file above one manager's", pooled.mAllocations - host.mAllocations,
              5);
}

} // namespace

void AddPoolBenches() {
    AddComparison(
        "Pool/Time", [] { return Sides(CLOCK_MONOTONIC); }, Claims("time"));
    AddComparison(
        "Pool/Work", [] { return Sides(CLOCK_PROCESS_CPUTIME_ID); }, Claims("work"));
    AddCounting("Pool/Counts", CountPool);
}
