// The door: a WPL playlist. The input is its bytes.

#include "fuzz/support/PlaylistAgreement.h"

#include "ezPlaylists/detail/WPLPlaylistParser.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    PlaylistAgreement_Check<WPLPlaylistParser>(aData, aSize, "/music/list.wpl");
    return 0;
}
