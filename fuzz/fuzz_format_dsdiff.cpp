// The door: a DSDIFF.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/dsdiff/DSDIFFParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    return FormatDoor_Enter<DSDIFFParser>(aData, aSize);
}
