// The door: a CAF.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/caf/CAFParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    return FormatDoor_Enter<CAFParser>(aData, aSize);
}
