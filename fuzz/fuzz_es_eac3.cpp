// The door: an elementary stream of E-AC-3, pushed in packets that the input cuts.

#include "fuzz/support/EltStreamDoor.h"

#include "ezFormats/elementary/EAC3EltStreamParser.h"
#include "ezPlatform/media/MediaInfo.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    const MakeEltStreamParser make = [](ezMediaInfo* anInfo) -> ezElementaryStreamParser* {
        return new EAC3EltStreamParser(nullptr, anInfo);
    };
    FuzzEltStream(aData, aSize, make, kezInfo_AudioCodec, {"EAC3"});
    return 0;
}
