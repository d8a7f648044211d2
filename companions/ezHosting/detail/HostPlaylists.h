#pragma once

#include <memory>

class PlaylistParserFactory;

/// A factory with the readers of ezPlaylists; null where this library was built without them.
std::unique_ptr<PlaylistParserFactory> NewHostPlaylists();
