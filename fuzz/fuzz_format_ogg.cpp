// The door: an Ogg.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/ogg/OggParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    return FormatDoor_Enter<OggParser>(aData, aSize);
}
