// The door: what VC-1 tells of its pictures: a stream of units, what sets a decoder of WMV 9 up, and "dvc1".

#include "fuzz/support/CodecDoor.h"

#include "ezFormats/codecs/VC1Video.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    constexpr std::uint32_t kLargestSide = 8192; // twelve bits, of pairs of pixels
    CodecDoor_Enter(VC1Video_ReadStream, aData, aSize, {{"VC1"}, kLargestSide});
    CodecDoor_Enter(VC1Video_ReadStructC, aData, aSize, {{"VC1", "WMV3"}, kLargestSide});
    CodecDoor_Enter(VC1Video_ReadConfig, aData, aSize, {{"VC1", "WMV3"}, kLargestSide});
    return 0;
}
