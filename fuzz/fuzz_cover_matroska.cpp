// The door: a Matroska file, which is looked through for a cover.

#include "fuzz/support/CoverDoor.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    CoverDoor_Check(aData, aSize, FindMatroskaCover, false, true);
    return 0;
}
