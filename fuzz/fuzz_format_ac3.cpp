// The door: AC-3 and E-AC-3.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/ac3/AC3Parser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    return FormatDoor_Enter<AC3Parser>(aData, aSize);
}
