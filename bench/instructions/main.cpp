#include "bench/instructions/Instructions.h"

#include "bench/Require.h"

#include "ezPlatform/containers/HashKey.h"
#include "support/ReplacedSystem.h"

#include <cstdio>
#include <cstring>

namespace {

/// Keyed by what is the same in every run: how many keys of a table meet moves a lookup by some percent.
void FixHashKey() {
    const ReplacedSystem chosen([](ezSystemCalls& aCalls) {
        aCalls.mGetRandom = [](void* aBuffer, std::size_t aSize) {
            std::memset(aBuffer, 0x5A, aSize);
            return static_cast<ssize_t>(aSize);
        };
    });
    ezHashKey_OfProcess();
}

} // namespace

/// Prints the instructions of each request that a host makes, and how costs grow with sizes. It runs under
/// callgrind, which bench/instructions/measure starts.
int main() {
    Require(RUNNING_ON_VALGRIND != 0, "bench/instructions/measure has started this program");
    FixHashKey();
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
    PrintParsing();
    PrintMapper();
    PrintPackets();
    PrintTables();
#ifdef EZ_BENCH_PLAYLISTS
    PrintPlaylists();
#endif
#ifdef EZ_BENCH_THUMBNAILS
    PrintThumbnails();
#endif
#ifdef EZ_BENCH_TOOL
    PrintTool();
#endif
    return 0;
}
