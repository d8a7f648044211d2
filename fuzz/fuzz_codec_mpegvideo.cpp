// The door: the start of a stream of MPEG-1 or MPEG-2 video, as a container of films holds it.

#include "fuzz/support/CodecDoor.h"

#include "ezFormats/codecs/MPEGVideo.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    CodecDoor_Enter(MPEGVideo_Read, aData, aSize, {{"", "MPEG1", "MPEG2"}, (1U << 14) - 1});
    return 0;
}
