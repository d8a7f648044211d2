// The door: a True Audio file.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/tta/TTAParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    return FormatDoor_Enter<TTAParser>(aData, aSize);
}
