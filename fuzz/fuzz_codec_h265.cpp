// The door: what H.265 tells of its pictures, as a byte stream and as containers have it.

#include "fuzz/support/UnitsDoor.h"

#include "ezFormats/codecs/H265Video.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    return UnitsDoor_Enter(aData, aSize,
                           {H265Video_ReadStream, H265Video_ReadConfig, {{"H265"}, kH265_MaxSide * 2}});
}
