// The door: an MP4 file, or a relative of it.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/iso/ISOMediaParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    // A header that is inflated, and the block that it grows from.
    constexpr std::size_t kHeap = kFormatDoor_Heap + 2 * std::size_t{kISO_MaxInflatedMovie};
    return FormatDoor_Enter<ISOMediaParser>(aData, aSize, kHeap);
}
