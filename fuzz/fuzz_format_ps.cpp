// The door: an MPEG program stream or system stream.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/ps/PSParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    return FormatDoor_Enter<PSParser>(aData, aSize);
}
