// The door: a PLS playlist. The input is its bytes.

#include "fuzz/support/PlaylistAgreement.h"

#include "ezPlaylists/detail/PLSPlaylistParser.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    PlaylistAgreement_Check<PLSPlaylistParser>(aData, aSize, "http://host/lists/list.pls");
    return 0;
}
