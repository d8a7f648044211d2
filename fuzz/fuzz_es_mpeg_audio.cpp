// The door: an elementary stream of MPEG audio, pushed in packets that the input cuts.

#include "fuzz/support/EltStreamDoor.h"

#include "ezFormats/elementary/MPEGAudioEltStreamParser.h"
#include "ezPlatform/media/MediaInfo.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    const MakeEltStreamParser make = [](ezMediaInfo* anInfo) -> ezElementaryStreamParser* {
        return new MPEGAudioEltStreamParser(nullptr, anInfo);
    };
    FuzzEltStream(aData, aSize, make, kezInfo_AudioCodec, {"MP1", "MP2", "MP3"});
    return 0;
}
