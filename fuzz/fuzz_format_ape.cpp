// The door: an APE file.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/ape/APEParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    return FormatDoor_Enter<APEParser>(aData, aSize);
}
