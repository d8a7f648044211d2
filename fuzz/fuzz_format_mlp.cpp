// The door: TrueHD and MLP.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/mlp/MLPParser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    return FormatDoor_Enter<MLPParser>(aData, aSize);
}
