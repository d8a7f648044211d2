// The door: an ASF file.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/asf/ASFParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    return FormatDoor_Enter<ASFParser>(aData, aSize);
}
