#pragma once

#include "ezPlaylists/detail/IndexedPlaylistParser.h"

class ezStream;

/// Reads PLS playlists: lines FileN=, TitleN= and LengthN= (seconds) of a section [playlist], keys in any
/// case and order.
///
/// - The entries are those that have a file, in the order of their numbers, whatever NumberOfEntries says and
///   however large a number is, up to 2^64-1. Of several lines with the same key the last counts that says
///   something. Lines outside of the section count for nothing.
/// - An entry's position is that of its FileN line.
/// - Line ends, encodings, UTF-16, lines that are too long, and what is no playlist are treated as in M3U.
class PLSPlaylistParser : public IndexedPlaylistParser {
public:
    static constexpr const char* kMimeTypes[] = {"audio/x-scpls", "audio/scpls"};
    static constexpr const char* kExtensionList = "pls";
    /// Null for a null stream.
    static PlaylistParser* sBuild(ezStream* aStream);

    explicit PLSPlaylistParser(ezStream* aStream);

protected:
    bool ReadEntries(PlaylistStreamReader& aReader) override;
};
