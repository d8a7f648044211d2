// The door: an MP4 file, or a relative of it.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/detail/FormatMimeTypes.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/iso/ISOMediaParser.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    static ISOMediaParser sParser; // holds nothing between two parses
    // A header that is inflated, and the block that it grows from.
    constexpr std::size_t kHeap = kFormatDoor_Heap + 2 * std::size_t{kISO_MaxInflatedMovie};
    FormatDoor_Check(aData, aSize, sParser, {kISOMedia_MimeTypes, kISO_MaxReads, kISO_MaxBytes, kHeap});
    return 0;
}
