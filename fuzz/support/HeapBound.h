#pragma once

#include "fuzz/support/Check.h"

#include <cstddef>

extern "C" {
/// Of the sanitizers' heap; not there without one.
int __sanitizer_install_malloc_and_free_hooks( // NOLINT(bugprone-reserved-identifier)
    void (*aMalloc)(const volatile void*, std::size_t), void (*aFree)(const volatile void*))
    __attribute__((weak));
std::size_t __sanitizer_get_allocated_size( // NOLINT(bugprone-reserved-identifier)
    const volatile void* aBlock) __attribute__((weak));
}

/// While it lives, more memory of the heap at a time than the bound is a finding; under a sanitizer with a
/// heap of its own, else nothing is looked at. One thread, one at a time.
class HeapBound {
public:
    explicit HeapBound(std::size_t aBound) {
        if (__sanitizer_install_malloc_and_free_hooks != nullptr &&
            __sanitizer_get_allocated_size != nullptr) {
            static const int sInstalled = __sanitizer_install_malloc_and_free_hooks(sTaken, sGiven);
            FuzzCheck(sInstalled != 0);
        }
        sLive = 0;
        sBound = static_cast<long long>(aBound);
    }
    ~HeapBound() { sBound = 0; }
    HeapBound(const HeapBound&) = delete;
    HeapBound& operator=(const HeapBound&) = delete;

private:
    static void sTaken(const volatile void* /*aBlock*/, std::size_t aSize) {
        if (sBound != 0) {
            sLive += static_cast<long long>(aSize);
            const bool fWithinTheBound = sLive <= sBound;
            sBound = fWithinTheBound ? sBound : 0; // saying so takes memory too
            FuzzCheck(fWithinTheBound);
        }
    }
    static void sGiven(const volatile void* aBlock) {
        if (sBound != 0 && aBlock != nullptr) {
            sLive -= static_cast<long long>(__sanitizer_get_allocated_size(aBlock));
        }
    }

    inline static long long sLive = 0;
    inline static long long sBound = 0; ///< 0: not looked at
};
