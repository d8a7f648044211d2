// The door: a JPEG.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/detail/FormatMimeTypes.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/jpeg/JPEGParser.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    static JPEGParser sParser; // holds nothing between two parses
    FormatDoor_Check(aData, aSize, sParser, {kJPEG_MimeTypes, kJPEG_MaxReads, kJPEG_MaxBytes});
    return 0;
}
