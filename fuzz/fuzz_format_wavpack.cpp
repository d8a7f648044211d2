// The door: a WavPack file.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/wavpack/WavPackParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    return FormatDoor_Enter<WavPackParser>(aData, aSize);
}
