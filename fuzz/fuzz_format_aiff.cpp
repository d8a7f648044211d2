// The door: an AIFF.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/aiff/AIFFParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    return FormatDoor_Enter<AIFFParser>(aData, aSize);
}
