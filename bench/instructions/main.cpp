#include "bench/instructions/Instructions.h"

#include "bench/Require.h"

#include <cstdio>

/// Prints the instructions of each request that a host makes, and how costs grow with sizes. It runs under
/// callgrind, which bench/instructions/measure starts.
int main() {
    Require(RUNNING_ON_VALGRIND != 0, "bench/instructions/measure has started this program");
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
