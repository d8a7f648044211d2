#include "ezPlaylists/detail/ASXPlaylistParser.h"

#include "ezPlaylists/detail/PlaylistPlace.h"

ASXPlaylistParser::ASXPlaylistParser(ezStream* aStream, const PlaylistPlace& aPlace)
    : MarkupPlaylistParser(aStream, aPlace, kMimeTypes[0], ReadAsxEntries) {}

PlaylistParser* ASXPlaylistParser::sBuild(ezStream* aStream) {
    return aStream != nullptr ? new ASXPlaylistParser(aStream, PlaylistPlace(aStream)) : nullptr;
}
