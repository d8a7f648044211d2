#pragma once

#include "ezPlaylists/detail/MarkupPlaylistParser.h"

/// Reads WPL: each media element with a src, wherever it stands in the body. Locations are Windows paths as a
/// rule, relative to the playlist. The format knows neither titles nor durations of entries; a smartPlaylist
/// is a query and has no entries.
class WPLPlaylistParser : public MarkupPlaylistParser {
public:
    static constexpr const char* kMimeTypes[] = {"application/vnd.ms-wpl"};
    static constexpr const char* kExtensionList = "wpl";
    /// Null for a null stream.
    static PlaylistParser* sBuild(ezStream* aStream);

    /// @param aStream  opened, borrowed; its URI tells where the playlist lies
    explicit WPLPlaylistParser(ezStream* aStream);
};
