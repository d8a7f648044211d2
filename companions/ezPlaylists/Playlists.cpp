#include "ezPlaylists/Playlists.h"

#include "ezPlaylists/M3UPlaylistParser.h"
#include "ezPlaylists/detail/PLSPlaylistParser.h"

#include "ez/PlaylistParserFactory.h"

bool RegisterPlaylistParsers(PlaylistParserFactory& aFactory) {
    bool fRegistered = PlaylistParser::RegisterTo<M3UPlaylistParser>(&aFactory);
    fRegistered = PlaylistParser::RegisterTo<PLSPlaylistParser>(&aFactory) && fRegistered;
    return fRegistered;
}
