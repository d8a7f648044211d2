// The door: DTS, in frames and in files with a head.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/dts/DTSParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    return FormatDoor_Enter<DTSParser>(aData, aSize);
}
