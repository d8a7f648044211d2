#pragma once

#include "ezPlaylists/detail/StreamReader.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// A line of a playlist, borrowed until the next is read.
struct PlaylistLine {
    std::uint64_t mPos = 0;
    std::string_view mText; ///< without its end; empty for a line that is too long
};

/// Takes the lines of a playlist apart, which end in LF, CRLF or a lone CR, the last one also at the end of
/// the stream. A byte order mark at byte 0 belongs to no line; after that of UTF-16 the lines are handed out
/// in UTF-8, and half a unit at the end is in no line. A line longer than kPlaylist_MaxLine is read over and
/// reported as an empty one. A line longer than kPlaylist_MaxSkippedLine ends the playlist before it. A line
/// that an error of the stream or the bound of the playlist cuts is no line.
class PlaylistLineReader {
public:
    explicit PlaylistLineReader(PlaylistStreamReader& aReader) : mReader(aReader) {}

    /// Goes to the first line that begins at a position or after it. False when the stream refuses, or fails
    /// before it is known how lines are written.
    bool StartAt(std::uint64_t aPos);
    bool Next(PlaylistLine* aLine);

    /// The first bytes, without their mark, in UTF-8: aSize at most, fewer where the stream ends or fails
    /// before. Goes to the start. False as StartAt.
    bool LookAtStart(std::size_t aSize, std::string* aText);

    /// Whether lines are of 16-bit units. Known after StartAt.
    bool IsUtf16() const { return mEncoding == Encoding::Utf16Little || mEncoding == Encoding::Utf16Big; }

private:
    enum class Encoding { NotKnown, Bytes, Utf16Little, Utf16Big };

    /// From the place of reading up to mNoneBefore there is no such byte. The search runs ahead of the lines,
    /// as most playlists have but one of the two line ends: line by line, that for the other would go over
    /// the same bytes each time.
    struct Search {
        char mByte;
        std::uint64_t mNoneBefore = 0;
    };

    bool FindMark();
    std::size_t UnitSize() const { return IsUtf16() ? 2 : 1; }
    char32_t UnitAt(std::string_view aBytes, std::size_t aPlace) const;
    bool IsAtLineStart();
    bool FindEnd(std::size_t* anEnd);
    bool EndIn(std::string_view aBytes, std::size_t aFrom, std::size_t* anEnd);
    std::size_t Find(Search* aSearch, std::string_view aBytes, std::size_t aFrom, std::size_t aTo) const;
    std::size_t EndSizeAt(std::size_t anEnd);
    void TakeText(std::string_view aBytes, std::string* aText) const;

    PlaylistStreamReader& mReader;
    Encoding mEncoding = Encoding::NotKnown;
    std::size_t mMarkSize = 0;
    Search mLF = {'\n'};
    Search mCR = {'\r'};
    std::string mConverted; ///< a line
};
