// The door: AMR and AMR-WB.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/amr/AMRParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    return FormatDoor_Enter<AMRParser>(aData, aSize);
}
