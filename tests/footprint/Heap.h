#pragma once

#include <cstddef>

/// What this process has on the heap, whoever took it: its own malloc stands before the C library's.
struct Heap {
    std::size_t
        mBytes; ///< in use, as the allocator rounds them up, and with the word that it keeps beside each
    std::size_t mPeak;   ///< the most that was in use since the last Heap_BeginPeak
    std::size_t mBlocks; ///< in use
    std::size_t mTaken;  ///< blocks ever asked for, a block made larger counted again
};

Heap Heap_Now();
/// Lets the peak begin at what is in use now.
void Heap_BeginPeak();
