// footprint-load LIBRARY...: loads the libraries, each bound in full, and prints what that took.
#include "Heap.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>

namespace {

/// Sums a field of the mappings of the two libraries, in KiB; -1 where the system does not tell.
long MappedKiB(const char* aField) {
    // Of the thread: an emulator answers for the process itself, with less.
    std::FILE* file = std::fopen("/proc/thread-self/smaps", "r");
    if (file == nullptr) {
        return -1;
    }
    char line[1024];
    bool fOurs = false;
    long sum = 0;
    while (std::fgets(line, sizeof line, file) != nullptr) {
        unsigned long long begin = 0;
        unsigned long long end = 0;
        long value = 0;
        char name[32];
        if (std::sscanf(line, "%llx-%llx ", &begin, &end) == 2) {
            fOurs = std::strstr(line, "/libezP") != nullptr;
        } else if (fOurs && std::sscanf(line, "%31s %ld kB", name, &value) == 2 &&
                   std::strcmp(name, aField) == 0) {
            sum += value;
        }
    }
    std::fclose(file);
    return sum;
}

void Require(bool afLoaded) {
    if (!afLoaded) {
        std::fprintf(stderr, "footprint-load: %s\n", dlerror());
        std::exit(1);
    }
}

} // namespace

int main(int anArgCount, char** anArgs) {
    // Every C++ program has this one already.
    Require(dlopen("libstdc++.so.6", RTLD_NOW | RTLD_GLOBAL) != nullptr);
    const Heap before = Heap_Now();
    for (int i = 1; i < anArgCount; ++i) {
        Require(dlopen(anArgs[i], RTLD_NOW | RTLD_GLOBAL) != nullptr);
    }
    const Heap after = Heap_Now();
    std::printf("load.heap %zu\n", after.mBytes - before.mBytes);
    std::printf("load.private %ld\n", MappedKiB("Anonymous:") * 1024);
    return 0;
}
