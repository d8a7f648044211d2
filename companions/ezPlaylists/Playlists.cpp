#include "ezPlaylists/Playlists.h"

#include "ezPlaylists/M3UPlaylistParser.h"
#include "ezPlaylists/PlaylistCut.h"
#include "ezPlaylists/detail/ASXPlaylistParser.h"
#include "ezPlaylists/detail/PLSPlaylistParser.h"
#include "ezPlaylists/detail/WPLPlaylistParser.h"
#include "ezPlaylists/detail/XSPFPlaylistParser.h"

#include "ez/PlaylistParserFactory.h"

PlaylistCut GetPlaylistCut(const PlaylistParser& aReader) {
    if (const auto* m3u = dynamic_cast<const M3UPlaylistParser*>(&aReader)) {
        return m3u->GetCut();
    }
    const auto* indexed = dynamic_cast<const IndexedPlaylistParser*>(&aReader);
    return indexed != nullptr ? indexed->GetCut() : PlaylistCut::None;
}

bool RegisterPlaylistParsers(PlaylistParserFactory& aFactory) {
    bool fRegistered = PlaylistParser::RegisterTo<M3UPlaylistParser>(&aFactory);
    fRegistered = PlaylistParser::RegisterTo<PLSPlaylistParser>(&aFactory) && fRegistered;
    fRegistered = PlaylistParser::RegisterTo<ASXPlaylistParser>(&aFactory) && fRegistered;
    fRegistered = PlaylistParser::RegisterTo<XSPFPlaylistParser>(&aFactory) && fRegistered;
    fRegistered = PlaylistParser::RegisterTo<WPLPlaylistParser>(&aFactory) && fRegistered;
    return fRegistered;
}
