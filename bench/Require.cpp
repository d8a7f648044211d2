#include "bench/Require.h"

#include <cstdio>
#include <cstdlib>

void Require(bool afHolds, const char* aText) {
    if (!afHolds) {
        std::fprintf(stderr, "bench: this does not hold: %s\n", aText);
        std::exit(2);
    }
}
