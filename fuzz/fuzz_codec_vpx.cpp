// The door: a frame of VP8 or VP9, and both ways of a configuration of VP9.

#include "fuzz/support/CodecDoor.h"

#include "ezFormats/codecs/VPXVideo.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    CodecDoor_Enter(VP8Video_Read, aData, aSize, {{"VP8"}, (1U << 14) - 1});
    CodecDoor_Enter(VP9Video_Read, aData, aSize, {{"VP9"}, 1U << 16});
    CodecDoor_Enter(VP9Video_ReadConfig, aData, aSize, {{"VP9"}, 1U << 16});
    CodecDoor_Enter(VP9Video_ReadFeatures, aData, aSize, {{"VP9"}, 1U << 16});
    return 0;
}
