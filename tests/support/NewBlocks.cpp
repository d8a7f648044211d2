#include "support/NewBlocks.h"

#include <atomic>
#include <cstdlib>
#include <new>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define EZ_ALLOCATOR_IS_TAKEN
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || __has_feature(memory_sanitizer)
#define EZ_ALLOCATOR_IS_TAKEN
#endif
#endif

namespace {

std::atomic<std::size_t> gCount{0};
std::atomic<std::size_t> gLargest{0};

void Note(std::size_t aSize) {
    ++gCount;
    std::size_t largest = gLargest;
    while (aSize > largest && !gLargest.compare_exchange_weak(largest, aSize)) {
    }
}

} // namespace

std::size_t NewBlocks::Count() {
    return gCount;
}

std::size_t NewBlocks::Largest() {
    return gLargest;
}

void NewBlocks::ResetLargest() {
    gLargest = 0;
}

#ifdef EZ_ALLOCATOR_IS_TAKEN

// The sanitizers have an allocator of their own, which can be listened to.
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*aMallocHook)(const volatile void*,
                                                                             std::size_t),
                                                         void (*aFreeHook)(const volatile void*));

namespace {

const int gHooked = __sanitizer_install_malloc_and_free_hooks(
    [](const volatile void*, std::size_t aSize) { Note(aSize); }, [](const volatile void*) {});

} // namespace

#else

// These stand in for those of the C++ library in a program that asks for the numbers above, and in no other:
// the linker takes this file for their sake alone.
void* operator new(std::size_t aSize) {
    Note(aSize);
    void* block = std::malloc(aSize != 0 ? aSize : 1);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

void operator delete(void* aBlock) noexcept {
    std::free(aBlock);
}

void operator delete(void* aBlock, std::size_t /*aSize*/) noexcept {
    std::free(aBlock);
}

#endif
