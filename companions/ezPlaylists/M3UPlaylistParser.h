#pragma once

#include "ezPlaylists/Export.h"
#include "ezPlaylists/PlaylistCut.h"

#include "ez/PlaylistParser.h"

#include <memory>
#include <optional>

class ezStream;
class PlaylistLineReader;
class PlaylistPlace;
class PlaylistStreamReader;

/// Reads M3U and M3U8 playlists, plain and extended: a location a line, lines of directives ("#EXT...")
/// before it. There is no standard; what players write, and what becomes of it in an entry, is told by
/// docs/m3u.md.
///
/// mURI is the line of the location, byte for byte. Title and duration are those of `#EXTINF`, the title in
/// UTF-8; mSpecificTags has the directives' attributes and other directives, separated by "\n". An HLS
/// playlist describes one stream: it has no entries.
///
/// Memory is bounded (about 400 KiB and the longest lines), whatever the playlist. A walk is linear in the
/// bytes; a fetch costs its entry and the next, wherever they lie. A callback that fetches, seeks or walks
/// with the reader ends its own walk.
class EZPLAYLISTS_API M3UPlaylistParser : public PlaylistParser {
public:
    /// What PlaylistParser::RegisterTo registers the reader under. GetMimeType tells the first, whichever it
    /// was asked for by.
    static constexpr const char* kMimeTypes[] = {"audio/x-mpegurl", "audio/mpegurl", "application/x-mpegurl",
                                                 "application/vnd.apple.mpegurl"};
    /// The extensions that come with each of these, separated by ",".
    static constexpr const char* kExtensionList = "m3u,m3u8";
    /// Null for a null stream.
    static PlaylistParser* sBuild(ezStream* aStream);

    /// @param aStream  opened, borrowed; its URI tells where the playlist lies, its extension "m3u8" that the
    /// text is UTF-8
    explicit M3UPlaylistParser(ezStream* aStream);
    ~M3UPlaylistParser() override;

    void ParseAll(PlaylistParserCallback aCallback, void* aUserData) override;
    bool FetchEntryAtIndex(uint32 anEntryIndex, PlaylistParserEntry* anEntry) override;
    bool SeekBytes(const ezuint64& aPos) override;
    /// As the base, but in a relative location of a playlist from a server "\" is "/".
    ezCString GetFullURLFor(const ezCString& anEntryURI) override;

    /// Whether a tag that only HLS has (RFC 8216) stands in the first 64 KiB, and no more than a block of the
    /// reader after them is read for that. Looked at once; a walk goes on where it would have without the
    /// look.
    bool IsHLS();

    /// Of what was read so far.
    PlaylistCut GetCut() const;

private:
    class EntryReader;

    M3UPlaylistParser(ezStream* aStream, const PlaylistPlace& aPlace);
    bool LookForHLS();

    std::unique_ptr<PlaylistStreamReader> mReader;
    std::unique_ptr<PlaylistLineReader> mLines;
    std::optional<bool> mHLS; ///< not known before the first look
    ezuint64 mWalkPos = 0;    ///< where the next walk begins
    unsigned mMoves = 0;      ///< of the place of reading: a walk ends when its callback made one
    bool mfUTF8;
};
