// The door: a Flash video.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/flv/FLVParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    // The largest window, and the one before it.
    constexpr std::size_t kHeap = kFormatDoor_Heap + std::size_t{256} * 1024;
    return FormatDoor_Enter<FLVParser>(aData, aSize, kHeap);
}
