// The door: a picture of H.263 or of Sorenson H.263, the configuration of H.263, and a frame of VP6.

#include "fuzz/support/CodecDoor.h"

#include "ezFormats/codecs/H263Video.h"
#include "ezFormats/codecs/VP6Video.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    CodecDoor_Enter(H263Video_Read, aData, aSize, {{"H263"}, 2048});
    CodecDoor_Enter(H263Video_ReadConfig, aData, aSize, {{"H263"}, 2048});
    CodecDoor_Enter(SorensonVideo_Read, aData, aSize, {{"Sorenson"}, UINT16_MAX});
    CodecDoor_Enter(VP6Video_Read, aData, aSize, {{"VP6"}, 255 * 16});
    return 0;
}
