#include "bench/HeapPeak.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdlib>

#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || __has_feature(memory_sanitizer)
#define EZ_FOREIGN_HEAP
#endif
#endif
#if !defined(__GLIBC__) || defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define EZ_FOREIGN_HEAP
#endif

#ifdef EZ_FOREIGN_HEAP

double HeapPeak_Of(const std::function<void()>& /*aWork*/) {
    return -1;
}

#else

#include <malloc.h>

namespace {

std::atomic<bool> gfWatched{false};
std::atomic<long> gLive{0};
std::atomic<long> gPeak{0};

void* Taken(void* aBlock) {
    if (gfWatched && aBlock != nullptr) {
        gLive += static_cast<long>(malloc_usable_size(aBlock));
        gPeak = std::max<long>(gPeak, gLive);
    }
    return aBlock;
}

/// What is about to be given back.
void Given(void* aBlock) {
    if (gfWatched && aBlock != nullptr) {
        gLive -= static_cast<long>(malloc_usable_size(aBlock));
    }
}

} // namespace

double HeapPeak_Of(const std::function<void()>& aWork) {
    gLive = 0;
    gPeak = 0;
    gfWatched = true;
    aWork();
    gfWatched = false;
    return static_cast<double>(gPeak.load());
}

// The program's functions of these names serve the shared libraries too. Behind them is glibc's own heap,
// under its names for it.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {

void* __libc_malloc(std::size_t aSize);
void* __libc_calloc(std::size_t aCount, std::size_t aSize);
void* __libc_realloc(void* aBlock, std::size_t aSize);
void* __libc_memalign(std::size_t anAlignment, std::size_t aSize);
void __libc_free(void* aBlock);

// Functions of our own, which the linker knows under the names of those of the heap.
#pragma GCC visibility push(default)
void* HeapPeak_Malloc(std::size_t aSize) noexcept __asm__("malloc");
void* HeapPeak_Calloc(std::size_t aCount, std::size_t aSize) noexcept __asm__("calloc");
void* HeapPeak_Realloc(void* aBlock, std::size_t aSize) noexcept __asm__("realloc");
void* HeapPeak_MemAlign(std::size_t anAlignment, std::size_t aSize) noexcept __asm__("memalign");
void* HeapPeak_AlignedAlloc(std::size_t anAlignment, std::size_t aSize) noexcept __asm__("aligned_alloc");
int HeapPeak_PosixMemAlign(void** aBlock, std::size_t anAlignment, std::size_t aSize) noexcept
    __asm__("posix_memalign");
void HeapPeak_Free(void* aBlock) noexcept __asm__("free");
#pragma GCC visibility pop

void* HeapPeak_Malloc(std::size_t aSize) noexcept {
    return Taken(__libc_malloc(aSize));
}

void* HeapPeak_Calloc(std::size_t aCount, std::size_t aSize) noexcept {
    return Taken(__libc_calloc(aCount, aSize));
}

void* HeapPeak_Realloc(void* aBlock, std::size_t aSize) noexcept {
    const long before = gfWatched && aBlock != nullptr ? static_cast<long>(malloc_usable_size(aBlock)) : 0;
    void* const block = __libc_realloc(aBlock, aSize);
    if (block != nullptr || aSize == 0) { // else the old block stands
        gLive -= before;
    }
    return Taken(block);
}

void* HeapPeak_MemAlign(std::size_t anAlignment, std::size_t aSize) noexcept {
    return Taken(__libc_memalign(anAlignment, aSize));
}

void* HeapPeak_AlignedAlloc(std::size_t anAlignment, std::size_t aSize) noexcept {
    return Taken(__libc_memalign(anAlignment, aSize));
}

int HeapPeak_PosixMemAlign(void** aBlock, std::size_t anAlignment, std::size_t aSize) noexcept {
    void* const block = Taken(__libc_memalign(anAlignment, aSize));
    if (block == nullptr) {
        return ENOMEM;
    }
    *aBlock = block;
    return 0;
}

void HeapPeak_Free(void* aBlock) noexcept {
    Given(aBlock);
    __libc_free(aBlock);
}

} // extern "C"
  // NOLINTEND(bugprone-reserved-identifier)

#endif
