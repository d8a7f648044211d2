// The door: an ASX playlist. The input is its bytes.

#include "fuzz/support/PlaylistAgreement.h"

#include "ezPlaylists/detail/ASXPlaylistParser.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    PlaylistAgreement_Check<ASXPlaylistParser>(aData, aSize, "http://h/lists/list.asx");
    return 0;
}
