// The door: an M3U playlist. The input is its bytes; one that begins with "8" is read as an M3U8.

#include "fuzz/support/PlaylistAgreement.h"

#include "ezPlaylists/M3UPlaylistParser.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    const bool fUTF8 = aSize != 0 && aData[0] == '8';
    PlaylistAgreement_Check<M3UPlaylistParser>(aData, aSize, fUTF8 ? "/music/list.m3u8" : "/music/list.m3u");
    return 0;
}
