// The door: the start of a stream of AV1, and a configuration of it.

#include "fuzz/support/VideoFactsDoor.h"

#include "ezFormats/codecs/AV1Video.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    VideoFactsDoor_Enter(AV1Video_Read, aData, aSize, {"AV1"});
    VideoFactsDoor_Enter(AV1Video_ReadConfig, aData, aSize, {"AV1"});
    return 0;
}
