#include "bench/Measure.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <utility>

namespace {

/// The middle half of the rounds decides: single rounds are disturbed on every machine.
struct RatioResult {
    std::string mText;
    double mLowerQuartile;
    double mMedian;
    double mUpperQuartile;
    double mBound;
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
    return {aClaim.mText, At(ratios, 0.25), At(ratios, 0.5), At(ratios, 0.75), aClaim.mBound};
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

void RunComparison(benchmark::State& aState, const MakeSides& aMakeSides, const std::vector<Claim>& aClaims) {
    const std::vector<Side> sides = aMakeSides();
    const auto runSide = [&sides](Costs& aCosts, std::size_t aSide) { aCosts[aSide] = sides[aSide].mCost(); };
    std::vector<Costs> rounds;
    Costs warmUp(sides.size());
    for (std::size_t i = 0; i < sides.size(); ++i) {
        runSide(warmUp, i);
    }
    for ([[maybe_unused]] auto _ : aState) {
        const bool fBackward = rounds.size() % 2 == 1;
        Costs costs(sides.size());
        aState.SetIterationTime(TimeOf([&] {
                                    for (std::size_t i = 0; i < sides.size(); ++i) {
                                        runSide(costs, fBackward ? sides.size() - 1 - i : i);
                                    }
                                }) *
                                1e-9);
        rounds.push_back(std::move(costs));
    }
    for (std::size_t i = 0; i < sides.size(); ++i) {
        aState.counters[sides[i].mName + " (ns)"] = MedianCost(rounds, i);
    }
    for (const Claim& claim : aClaims) {
        gRatios.push_back(Summarise(claim, rounds));
    }
}

const char* Verdict(bool afHolds, double aBound) {
    if (aBound == 0) {
        return "shown only";
    }
    return afHolds ? "holds" : "DOES NOT HOLD";
}

/// A ratio fails when three quarters of the rounds are above the bound: that is no longer noise.
bool Holds(const RatioResult& aResult) {
    return aResult.mBound == 0 || aResult.mLowerQuartile <= aResult.mBound;
}

bool Holds(const CountResult& aResult) {
    return aResult.mValue <= aResult.mBound;
}

void PrintBound(double aBound) {
    if (aBound == 0) {
        std::printf("  %8s", "");
    } else {
        std::printf("  <= %5.2f", aBound);
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

bool PrintResults() {
    bool fAllHold = true;
    if (!gRatios.empty()) {
        std::printf("\n%-66s %7s  %-15s  %8s\n", "Ratio", "median", "middle half", "bound");
        for (const RatioResult& result : gRatios) {
            std::printf("%-66s %7.2f  %6.2f - %6.2f", result.mText.c_str(), result.mMedian,
                        result.mLowerQuartile, result.mUpperQuartile);
            PrintBound(result.mBound);
            std::printf("  %s\n", Verdict(Holds(result), result.mBound));
            fAllHold = fAllHold && Holds(result);
        }
    }
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

void Require(bool afHolds, const char* aText) {
    if (!afHolds) {
        std::fprintf(stderr, "ezBench: this does not hold: %s\n", aText);
        std::exit(2);
    }
}
