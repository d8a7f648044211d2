// The door: a JPEG.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/jpeg/JPEGParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    return FormatDoor_Enter<JPEGParser>(aData, aSize);
}
