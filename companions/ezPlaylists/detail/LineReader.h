#pragma once

#include "ezPlaylists/detail/StreamReader.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

/// A line of a playlist, lent until the next is read.
struct PlaylistLine {
    std::uint64_t mPos = 0;
    std::string_view mText; ///< without its end; empty for a line that is too long
};

/// Takes the lines of a playlist apart, which end in LF, CRLF or a lone CR, the last one also at the end of
/// the stream. A byte order mark at byte 0 belongs to no line. A line longer than kPlaylist_MaxLine is read
/// over and reported as an empty one. A line that an error of the stream cuts is none.
class PlaylistLineReader {
public:
    explicit PlaylistLineReader(PlaylistStreamReader& aReader) : mReader(aReader) {}

    /// Goes to the first line that begins at a position or behind it. False when the stream refuses.
    bool StartAt(std::uint64_t aPos);
    bool Next(PlaylistLine* aLine);

private:
    bool IsAtLineStart(std::uint64_t aPos);
    void SkipByteOrderMark();
    bool FindEnd(std::size_t* anEnd);
    std::size_t EndIn(std::string_view aBytes, std::size_t aFrom);
    std::size_t CRIn(std::string_view aBytes, std::size_t aFrom, std::size_t aTo);
    std::size_t EndSizeAt(std::size_t anEnd);

    PlaylistStreamReader& mReader;
    /// From the place of reading up to here there is no CR. A search for it runs ahead of the lines, as most
    /// playlists have none, and a search line by line would cost as much again as that for LF.
    std::uint64_t mNoCRBefore = 0;
};
