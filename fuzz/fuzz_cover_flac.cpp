// The door: a FLAC file, which is looked through for a cover.

#include "fuzz/support/CoverDoor.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    CoverDoor_Check(aData, aSize, FindFLACCover, true, false);
    return 0;
}
