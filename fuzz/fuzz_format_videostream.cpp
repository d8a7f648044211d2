// The door: a stream of video without a container.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/videostream/VideoStreamParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    // The longer window, and the first one, which it grows from: more than the two blocks of 64 KiB.
    constexpr std::size_t kHeap = kFormatDoor_Heap + kVideoStream_MaxWindow;
    return FormatDoor_Enter<VideoStreamParser>(aData, aSize, kHeap);
}
