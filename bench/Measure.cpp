#include "bench/Measure.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <utility>

namespace {

/// The middle half of the rounds decides: single rounds are disturbed on every machine.
struct RatioResult {
    std::string mText;
    double mLowerQuartile;
    double mMedian;
    double mUpperQuartile;
    double mAim;
};

struct CountResult {
    std::string mText;
    double mValue;
    double mBound;
};

std::size_t gRounds = 0;
std::vector<RatioResult> gRatios;
std::vector<CountResult> gCounts;

double At(const std::vector<double>& aSorted, double aPart) {
    return aSorted[static_cast<std::size_t>(std::lround(aPart * static_cast<double>(aSorted.size() - 1)))];
}

RatioResult Summarise(const Claim& aClaim, const std::vector<Costs>& aRounds) {
    std::vector<double> ratios;
    ratios.reserve(aRounds.size());
    for (const Costs& costs : aRounds) {
        ratios.push_back(aClaim.mRatio(costs));
    }
    std::sort(ratios.begin(), ratios.end());
    return {aClaim.mText, At(ratios, 0.25), At(ratios, 0.5), At(ratios, 0.75), aClaim.mAim};
}

bool Holds(const CountResult& aResult) {
    return aResult.mValue <= aResult.mBound;
}

double MedianCost(const std::vector<Costs>& aRounds, std::size_t aSide) {
    std::vector<double> costs;
    costs.reserve(aRounds.size());
    for (const Costs& round : aRounds) {
        costs.push_back(round[aSide]);
    }
    std::sort(costs.begin(), costs.end());
    return At(costs, 0.5);
}

/// All sides once, every other round from the last one on.
Costs RunRound(const std::vector<Side>& aSides, bool afBackward) {
    Costs costs(aSides.size());
    for (std::size_t i = 0; i < aSides.size(); ++i) {
        const std::size_t side = afBackward ? aSides.size() - 1 - i : i;
        costs[side] = aSides[side].mCost();
    }
    return costs;
}

void RunComparison(benchmark::State& aState, const MakeSides& aMakeSides, const std::vector<Claim>& aClaims) {
    const std::vector<Side> sides = aMakeSides();
    std::vector<Costs> rounds;
    RunRound(sides, false); // does not count
    for ([[maybe_unused]] auto _ : aState) {
        const bool fBackward = rounds.size() % 2 == 1;
        Costs costs;
        aState.SetIterationTime(TimeOf([&] { costs = RunRound(sides, fBackward); }) * 1e-9);
        rounds.push_back(std::move(costs));
    }
    for (std::size_t i = 0; i < sides.size(); ++i) {
        const double cost = MedianCost(rounds, i);
        aState.counters[sides[i].mName + " (ns)"] = cost;
        if (sides[i].mUnits != nullptr) {
            aState.counters[sides[i].mName + " (" + sides[i].mUnits + "/s)"] = 1e9 / cost;
        }
    }
    for (const Claim& claim : aClaims) {
        gRatios.push_back(Summarise(claim, rounds));
    }
}

} // namespace

void AddComparison(const std::string& aName, MakeSides aMakeSides, std::vector<Claim> aClaims) {
    benchmark::RegisterBenchmark(aName.c_str(),
                                 [makeSides = std::move(aMakeSides), claims = std::move(aClaims)](
                                     benchmark::State& aState) { RunComparison(aState, makeSides, claims); })
        ->Iterations(static_cast<benchmark::IterationCount>(gRounds))
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

void AddCounting(const std::string& aName, std::function<void()> aCount) {
    benchmark::RegisterBenchmark(aName.c_str(),
                                 [count = std::move(aCount)](benchmark::State& aState) {
                                     for ([[maybe_unused]] auto _ : aState) {
                                         count();
                                     }
                                 })
        ->Iterations(1)
        ->Unit(benchmark::kMillisecond);
}

void NoteCount(const std::string& aText, double aValue, double aBound) {
    gCounts.push_back({aText, aValue, aBound});
}

void SetRounds(std::size_t aRounds) {
    gRounds = aRounds;
}

namespace {

void PrintRatios() {
    std::printf("\n%-66s %7s  %-15s  %8s\n", "Ratio, of this machine in this minute", "median", "middle half",
                "aim");
    for (const RatioResult& result : gRatios) {
        std::printf("%-66s %7.2f  %6.2f - %6.2f", result.mText.c_str(), result.mMedian, result.mLowerQuartile,
                    result.mUpperQuartile);
        if (result.mAim != 0) {
            std::printf("  <= %5.2f", result.mAim);
        }
        std::printf("\n");
    }
}

} // namespace

bool PrintResults() {
    if (!gRatios.empty()) {
        PrintRatios();
    }
    bool fAllHold = true;
    if (!gCounts.empty()) {
        std::printf("\n%-66s %7s  %8s\n", "Count", "value", "bound");
        for (const CountResult& result : gCounts) {
            std::printf("%-66s %7.2f  <= %5.2f  %s\n", result.mText.c_str(), result.mValue, result.mBound,
                        Holds(result) ? "holds" : "DOES NOT HOLD");
            fAllHold = fAllHold && Holds(result);
        }
    }
    return fAllHold;
}

double Now() {
    struct timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}
