#include "ezHosting/detail/HostPlaylists.h"

#include "ez/PlaylistParserFactory.h"

#ifdef EZ_HAS_PLAYLISTS
#include "ezPlaylists/Playlists.h"
#endif

std::unique_ptr<PlaylistParserFactory> NewHostPlaylists() {
#ifdef EZ_HAS_PLAYLISTS
    auto factory = std::make_unique<PlaylistParserFactory>();
    return RegisterPlaylistParsers(*factory) ? std::move(factory) : nullptr;
#else
    return nullptr;
#endif
}
