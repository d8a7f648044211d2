// The door: an elementary stream of VC-1, pushed in packets that the input cuts.

#include "fuzz/support/EltStreamDoor.h"

#include "ezFormats/elementary/VC1EltStreamParser.h"
#include "ezPlatform/media/MediaInfo.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    const MakeEltStreamParser make = [](ezMediaInfo* anInfo) -> ezElementaryStreamParser* {
        return new VC1EltStreamParser(nullptr, anInfo);
    };
    FuzzEltStream(aData, aSize, make, kezInfo_VideoCodec, {"VC1"});
    return 0;
}
