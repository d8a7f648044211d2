// The door: an AU.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/au/AUParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    return FormatDoor_Enter<AUParser>(aData, aSize);
}
