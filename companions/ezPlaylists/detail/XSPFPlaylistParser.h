#pragma once

#include "ezPlaylists/detail/MarkupPlaylistParser.h"

/// Reads XSPF: each track with a location, of which the first that is not empty counts, kept as the URI that
/// it is and so percent-encoded; where an xml:base applies, resolved against that. Title, duration in whole
/// seconds (the format has milliseconds), and in mSpecificTags the creator, album, trackNum and image of a
/// track, a line "creator=..." each.
class XSPFPlaylistParser : public MarkupPlaylistParser {
public:
    static constexpr const char* kMimeTypes[] = {"application/xspf+xml"};
    static constexpr const char* kExtensionList = "xspf";
    /// Null for a null stream.
    static PlaylistParser* sBuild(ezStream* aStream);

    /// @param aStream  opened, borrowed; its URI tells where the playlist lies
    explicit XSPFPlaylistParser(ezStream* aStream);

    /// Locations are references to URIs also in a local playlist, and are resolved against its "file:" URL:
    /// "a%20b.mp3" is the file "a b.mp3" beside it, and an absolute URL is kept. Only a Windows path, which
    /// is no URI, is taken as a path.
    ezCString GetFullURLFor(const ezCString& anEntryURI) override;
};
