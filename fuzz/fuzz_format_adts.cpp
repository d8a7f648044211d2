// The door: AAC in ADTS frames.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/adts/ADTSParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    return FormatDoor_Enter<ADTSParser>(aData, aSize);
}
