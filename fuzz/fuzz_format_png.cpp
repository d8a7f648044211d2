// The door: a PNG.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/png/PNGParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    return FormatDoor_Enter<PNGParser>(aData, aSize);
}
