#include "bench/Allocations.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

/// Not added to in one step, which would slow every allocation down: of two threads at a time one may not be
/// counted.
std::atomic<std::size_t> gCount{0};

void Count() {
    gCount.store(gCount.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
}

} // namespace

std::size_t Allocations_Count() {
    return gCount.load(std::memory_order_relaxed);
}

// The linker (--wrap) leads the calls of malloc here and those of __real_malloc to the real one; it makes the
// names.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {

void* __real_malloc(std::size_t aSize);
void* __real_calloc(std::size_t aCount, std::size_t aSize);
void* __real_realloc(void* aBlock, std::size_t aSize);

void* __wrap_malloc(std::size_t aSize) {
    Count();
    return __real_malloc(aSize);
}

void* __wrap_calloc(std::size_t aCount, std::size_t aSize) {
    Count();
    return __real_calloc(aCount, aSize);
}

void* __wrap_realloc(void* aBlock, std::size_t aSize) {
    Count();
    return __real_realloc(aBlock, aSize);
}

} // extern "C"
// NOLINTEND(bugprone-reserved-identifier)

// The C++ library is a shared one, so its operator new is out of the linker's reach and is replaced. The
// array and non-throwing forms come through here too.
void* operator new(std::size_t aSize) {
    void* block = std::malloc(aSize != 0 ? aSize : 1);
    if (block == nullptr) {
        std::abort();
    }
    return block;
}

void operator delete(void* aBlock) noexcept {
    std::free(aBlock);
}

void operator delete(void* aBlock, std::size_t /*aSize*/) noexcept {
    std::free(aBlock);
}
