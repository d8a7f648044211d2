// The door: an MPEG program stream or system stream.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/ps/PSParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    // Two windows of 240 KiB, one of them as sectors carry it, and the payload of a track.
    return FormatDoor_Enter<PSParser>(aData, aSize, std::size_t{1024} * 1024);
}
