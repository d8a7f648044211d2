// The door: an elementary stream of MPEG-4 video, pushed in packets that the input cuts.

#include "fuzz/support/EltStreamDoor.h"

#include "ezFormats/elementary/MPEG4EltStreamParser.h"
#include "ezPlatform/media/MediaInfo.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    const MakeEltStreamParser make = [](ezMediaInfo* anInfo) -> ezElementaryStreamParser* {
        return new MPEG4EltStreamParser(nullptr, anInfo);
    };
    FuzzEltStream(aData, aSize, make, kezInfo_VideoCodec, {"MPEG4"});
    return 0;
}
