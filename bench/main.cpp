#include "bench/Benches.h"
#include "bench/Measure.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace {

constexpr std::size_t kRounds = 31;
constexpr std::size_t kShortRounds = 1;

/// Takes our own flag out of the arguments, whose others are Google Benchmark's.
bool TakeFlag(int& aCount, char** anArguments, const char* aFlag) {
    char** end = std::remove_if(anArguments + 1, anArguments + aCount,
                                [&](const char* anArgument) { return std::strcmp(anArgument, aFlag) == 0; });
    const bool fFound = end != anArguments + aCount;
    aCount = static_cast<int>(end - anArguments);
    return fFound;
}

} // namespace

/// Prints Google Benchmark's own lines, then the ratios, and the counts, which alone are held. Exit status 0,
/// or 1 when a count is above its bound, or 2 when nothing could be measured. `--check` is the short form: a
/// round of each comparison shows that it still runs.
int main(int aCount, char** anArguments) {
    const bool fCheck = TakeFlag(aCount, anArguments, "--check");
    SetRounds(fCheck ? kShortRounds : kRounds);
    AddIdentifyBenches();
    AddTableBenches();
    AddManagerBenches();
    AddMapperBenches();
    AddPushBenches();
    AddFormatsBenches();
#ifdef EZ_BENCH_PLAYLISTS
    AddPlaylistBenches();
#endif
#ifdef EZ_BENCH_HOSTING
    AddPoolBenches();
#endif
#ifdef EZ_BENCH_THUMBNAILS
    AddThumbnailBenches();
#endif
    benchmark::Initialize(&aCount, anArguments);
    if (benchmark::ReportUnrecognizedArguments(aCount, anArguments)) {
        return 2;
    }
#ifndef __OPTIMIZE__
    std::fprintf(stderr, "ezBench: built without optimisation, so the times say nothing of a real build\n");
#endif
    if (benchmark::RunSpecifiedBenchmarks() == 0) {
        return 2;
    }
    benchmark::Shutdown();
    return PrintResults() ? 0 : 1;
}
