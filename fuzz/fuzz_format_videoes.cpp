// The door: a stream of video without a container.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/videoes/VideoESParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    return FormatDoor_Enter<VideoESParser>(aData, aSize);
}
