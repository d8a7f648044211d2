#pragma once

#include "ezPlaylists/detail/MarkupPlaylistParser.h"

/// Reads WPL: each media element with a src, wherever it stands in the body. Locations are Windows paths as a
/// rule, relative to the playlist. The format knows neither titles nor durations of entries; a smartPlaylist
/// is a query and has no entries.
class WPLPlaylistParser : public MarkupPlaylistParser {
public:
    static constexpr const char* kMimeTypes[] = {"application/vnd.ms-wpl"};
    static constexpr const char* kExtensionList = "wpl";
    static PlaylistParser* sBuild(ezStream* aStream);

private:
    WPLPlaylistParser(ezStream* aStream, const PlaylistPlace& aPlace);
};
