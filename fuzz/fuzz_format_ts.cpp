// The door: an MPEG-2 transport stream.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/ts/TSParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    return FormatDoor_Enter<TSParser>(aData, aSize);
}
