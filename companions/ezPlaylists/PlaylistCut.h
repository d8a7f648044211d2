#pragma once

#include "ezPlaylists/Export.h"

class PlaylistParser;

/// Why a playlist was not read to the end of its stream, by the limits on what playlists of strangers may
/// cost.
enum class PlaylistCut {
    None, ///< it was, as far as it was read
    Size, ///< it is larger, or has more entries, than is read of a playlist: what follows is left out
    Line  ///< it is no playlist: a line of more than 1 MiB stands in it, which ended the reading
};

/// What is known of that after the walks and fetches so far. None for a reader that is not of this library.
EZPLAYLISTS_API PlaylistCut GetPlaylistCut(const PlaylistParser& aReader);
