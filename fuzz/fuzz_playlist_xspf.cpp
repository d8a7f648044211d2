// The door: an XSPF playlist. The input is its bytes.

#include "fuzz/support/PlaylistAgreement.h"

#include "ezPlaylists/detail/XSPFPlaylistParser.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    PlaylistAgreement_Check<XSPFPlaylistParser>(aData, aSize, "/music/list.xspf");
    return 0;
}
