// The door: a DSF.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/dsf/DSFParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    return FormatDoor_Enter<DSFParser>(aData, aSize);
}
