#include "ezPlaylists/detail/WPLPlaylistParser.h"

#include "ezPlaylists/detail/PlaylistPlace.h"

WPLPlaylistParser::WPLPlaylistParser(ezStream* aStream, const PlaylistPlace& aPlace)
    : MarkupPlaylistParser(aStream, aPlace, kMimeTypes[0], ReadWplEntries) {}

PlaylistParser* WPLPlaylistParser::sBuild(ezStream* aStream) {
    return aStream != nullptr ? new WPLPlaylistParser(aStream, PlaylistPlace(aStream)) : nullptr;
}
