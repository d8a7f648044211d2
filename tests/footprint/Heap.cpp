#include "Heap.h"

#include <malloc.h>

namespace {

Heap gHeap = {};

std::size_t BytesOf(void* aBlock) {
    return malloc_usable_size(aBlock) + sizeof(std::size_t);
}

void* Taken(void* aBlock) {
    if (aBlock != nullptr) {
        gHeap.mBytes += BytesOf(aBlock);
        ++gHeap.mBlocks;
        ++gHeap.mTaken;
        if (gHeap.mBytes > gHeap.mPeak) {
            gHeap.mPeak = gHeap.mBytes;
        }
    }
    return aBlock;
}

void GivenBack(void* aBlock) {
    if (aBlock != nullptr) {
        gHeap.mBytes -= BytesOf(aBlock);
        --gHeap.mBlocks;
    }
}

} // namespace

Heap Heap_Now() {
    return gHeap;
}

void Heap_BeginPeak() {
    gHeap.mPeak = gHeap.mBytes;
}

// The program's own malloc is found before the C library's, by every library that is loaded; the C library's
// is reached by its second name. One thread allocates at a time here, so nothing is locked.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {

void* __libc_malloc(std::size_t aSize);
void* __libc_calloc(std::size_t aCount, std::size_t aSize);
void* __libc_realloc(void* aBlock, std::size_t aSize);
void __libc_free(void* aBlock);

__attribute__((visibility("default"))) void* malloc(std::size_t aSize) {
    return Taken(__libc_malloc(aSize));
}

__attribute__((visibility("default"))) void* calloc(std::size_t aCount, std::size_t aSize) {
    return Taken(__libc_calloc(aCount, aSize));
}

__attribute__((visibility("default"))) void* realloc(void* aBlock, std::size_t aSize) {
    const std::size_t old = aBlock != nullptr ? BytesOf(aBlock) : 0;
    void* block = __libc_realloc(aBlock, aSize);
    if (block != nullptr && aBlock != nullptr) {
        gHeap.mBytes -= old;
        --gHeap.mBlocks;
    }
    return Taken(block);
}

__attribute__((visibility("default"))) void free(void* aBlock) {
    GivenBack(aBlock);
    __libc_free(aBlock);
}

} // extern "C"
// NOLINTEND(bugprone-reserved-identifier)
