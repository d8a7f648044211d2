// The door: an MPEG audio file.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/MPEGAudioParser.h"
#include "ezFormats/detail/FormatMimeTypes.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    static MPEGAudioParser sParser; // holds nothing between two parses
    FormatDoor_Check(aData, aSize, sParser, {kMPEGAudio_MimeTypes, 32, std::uint64_t{512} * 1024});
    return 0;
}
