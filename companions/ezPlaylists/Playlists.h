#pragma once

#include "ezPlaylists/Export.h"

class PlaylistParserFactory;

/// Registers the readers of the playlists that a home meets: M3U and M3U8, PLS, ASX, XSPF and WPL. What a
/// host registered before wins over them.
///
/// Where a playlist lies, a reader takes from its stream (ezStream::GetURI): an http or https URL is the
/// parent URL of its entries; a "file:" URL and every other text is the path of a local playlist. A "file:"
/// URL that names another host than "localhost" is the path "\\host\share\...".
///
/// False when a registration was refused.
EZPLAYLISTS_API bool RegisterPlaylistParsers(PlaylistParserFactory& aFactory);
