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
/// before it. There is no standard; this is what players write.
///
/// - Lines end in LF, CRLF or CR, the last one also at the end of the stream. Blank lines, comments (other
///   lines that begin with "#", blanks before it allowed) and lines of more than 64 KiB are read over.
/// - An entry begins at its first directive, or at its location where it has none. Comments and the
///   directives of the playlist as a whole (`#EXTM3U`, `#EXTENC:`, `#PLAYLIST:`) belong to no entry. A
///   position inside a line stands for the next line, so that inside an entry what is left of it is read.
/// - mURI is the line of the location, byte for byte, in whatever encoding. Blanks around a URL are left out,
///   those of a name belong to it. So a title that FixEntry makes of a location is in the encoding of that.
/// - mDuration are the whole seconds of `#EXTINF`, 0 when negative or absent. The title is what follows the
///   first comma outside of quotes, in UTF-8: what is not valid UTF-8 is taken as Latin-1 with the additions
///   of Windows, or in a stream with the extension "m3u8" mended with U+FFFD. Of several `#EXTINF` the last
///   counts.
/// - mSpecificTags are lines parted by "\n": the attributes of `#EXTINF` (key="value", as they are written)
///   first, then all further directives, as they are written, up to 64 KiB.
/// - A playlist in UTF-16, told by its byte order mark, is read too: its texts are handed out in UTF-8, its
/// positions are those of its bytes.
/// - A line of more than 1 MiB is in no playlist: the reading ends before it. So it does after 64 MiB.
/// - An HLS playlist describes one media, not a list of songs: it has no entries.
///
/// Nothing keeps a playlist from naming itself, or another that names it: who opens entries that are
/// playlists remembers where it has been. A last line that a failing stream cuts is no entry.
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
    /// The extensions that come with each of these, parted by ",".
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
