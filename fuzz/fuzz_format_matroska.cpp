// The door: a Matroska or WebM file.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/matroska/MatroskaParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    return FormatDoor_Enter<MatroskaParser>(aData, aSize);
}
