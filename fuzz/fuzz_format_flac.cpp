// The door: a FLAC.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/flac/FLACParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    return FormatDoor_Enter<FLACParser>(aData, aSize);
}
