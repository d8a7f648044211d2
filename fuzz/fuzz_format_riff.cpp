// The door: a WAV.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/riff/WAVParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    return FormatDoor_Enter<WAVParser>(aData, aSize);
}
