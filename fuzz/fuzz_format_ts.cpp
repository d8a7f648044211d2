// The door: an MPEG-2 transport stream.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/ts/TSParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    // The block of a window and the one before it, and the payload of the tracks that play.
    constexpr std::size_t kHeap = 2 * kTS_LargestBlock + std::size_t{512} * 1024;
    return FormatDoor_Enter<TSParser>(aData, aSize, kHeap);
}
