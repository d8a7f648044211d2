// The door: a Musepack file.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/musepack/MusepackParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    return FormatDoor_Enter<MusepackParser>(aData, aSize);
}
