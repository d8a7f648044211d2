// The door: the start of a stream of AV1, and a configuration of it.

#include "fuzz/support/CodecDoor.h"

#include "ezFormats/codecs/AV1Video.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    CodecDoor_Enter(AV1Video_Read, aData, aSize, {{"AV1"}, 1U << 16});
    CodecDoor_Enter(AV1Video_ReadConfig, aData, aSize, {{"AV1"}, 1U << 16});
    return 0;
}
