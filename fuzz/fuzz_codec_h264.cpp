// The door: what H.264 tells of its pictures, as a byte stream and as containers have it.

#include "fuzz/support/UnitsDoor.h"

#include "ezFormats/codecs/H264Video.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    return UnitsDoor_Enter(aData, aSize,
                           {H264Video_ReadStream, H264Video_ReadConfig, {{"H264"}, kH264_MaxSideSize * 16}});
}
