// The door: a PNG.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/detail/FormatMimeTypes.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/png/PNGParser.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    static PNGParser sParser; // holds nothing between two parses
    FormatDoor_Check(aData, aSize, sParser, {kPNG_MimeTypes, kPNG_MaxReads, kPNG_MaxBytes});
    return 0;
}
