#pragma once

#include "ezPlaylists/detail/MarkupPlaylistParser.h"

/// Reads ASX, which looks like XML and often is not: names are read in any case, values without quotes, and
/// stray "&"; so too the older form with a section "[Reference]" and lines "Ref1=".
///
/// An ENTRY is the first of its REFs, with TITLE, DURATION in whole seconds, and AUTHOR as "author=..." in
/// mSpecificTags. BASE, of the document or of the entry, is put before relative locations. An ENTRYREF,
/// another playlist, is listed as an entry whose mSpecificTags is "entryref" and never followed: the host
/// looks whether it has been there, and how deep it is. An entry without a location is left out.
///
/// The type video/x-ms-asf, by which servers send ASX too, is not registered: it is that of media.
class ASXPlaylistParser : public MarkupPlaylistParser {
public:
    static constexpr const char* kMimeTypes[] = {"video/x-ms-asx", "audio/x-ms-wax", "video/x-ms-wvx"};
    static constexpr const char* kExtensionList = "asx,wax,wvx";
    /// Null for a null stream.
    static PlaylistParser* sBuild(ezStream* aStream);

    /// @param aStream  opened, borrowed; its URI tells where the playlist lies
    explicit ASXPlaylistParser(ezStream* aStream);
};
