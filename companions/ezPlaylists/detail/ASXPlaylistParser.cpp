#include "ezPlaylists/detail/ASXPlaylistParser.h"

#include "ezPlaylists/detail/PlaylistPlace.h"

ASXPlaylistParser::ASXPlaylistParser(ezStream* aStream)
    : MarkupPlaylistParser(aStream, PlaylistPlace(aStream), kMimeTypes[0], ReadAsxEntries) {}

PlaylistParser* ASXPlaylistParser::sBuild(ezStream* aStream) {
    return aStream != nullptr ? new ASXPlaylistParser(aStream) : nullptr;
}
