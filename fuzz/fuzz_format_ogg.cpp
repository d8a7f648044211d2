// The door: an Ogg.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/ogg/OggParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    // The largest window of a film's start, and a block of 64 KiB before it.
    constexpr std::size_t kHeap = kFormatDoor_Heap + kOgg_LargestFront - std::size_t{64} * 1024;
    return FormatDoor_Enter<OggParser>(aData, aSize, kHeap);
}
