// The door: an elementary stream of H.265, pushed in packets that the input cuts.

#include "fuzz/support/EltStreamDoor.h"

#include "ezFormats/elementary/H265EltStreamParser.h"
#include "ezPlatform/media/MediaInfo.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    const MakeEltStreamParser make = [](ezMediaInfo* anInfo) -> ezElementaryStreamParser* {
        return new H265EltStreamParser(nullptr, anInfo);
    };
    FuzzEltStream(aData, aSize, make, kezInfo_VideoCodec, {"H265"});
    return 0;
}
