#include "ezPlaylists/detail/WPLPlaylistParser.h"

#include "ezPlaylists/detail/PlaylistPlace.h"

WPLPlaylistParser::WPLPlaylistParser(ezStream* aStream)
    : MarkupPlaylistParser(aStream, PlaylistPlace(aStream), kMimeTypes[0], ReadWplEntries) {}

PlaylistParser* WPLPlaylistParser::sBuild(ezStream* aStream) {
    return aStream != nullptr ? new WPLPlaylistParser(aStream) : nullptr;
}
