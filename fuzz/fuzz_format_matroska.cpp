// The door: a Matroska or WebM file.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/matroska/MatroskaParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    // The block of a window that the last cluster is searched in, and the one before it.
    constexpr std::size_t kHeap = kFormatDoor_Heap + std::size_t{1024} * 1024;
    return FormatDoor_Enter<MatroskaParser>(aData, aSize, kHeap);
}
