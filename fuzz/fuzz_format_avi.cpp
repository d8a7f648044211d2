#include "fuzz/support/FormatDoor.h"

#include "ezFormats/avi/AVIParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    return FormatDoor_Enter<AVIParser>(aData, aSize);
}
