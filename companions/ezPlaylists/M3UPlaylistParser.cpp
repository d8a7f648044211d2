#include "ezPlaylists/M3UPlaylistParser.h"

#include "ezPlaylists/detail/Limits.h"
#include "ezPlaylists/detail/LineReader.h"
#include "ezPlaylists/detail/Location.h"
#include "ezPlaylists/detail/PlaylistPlace.h"
#include "ezPlaylists/detail/PlaylistText.h"
#include "ezPlaylists/detail/StreamReader.h"

#include "ezPlatform/streams/Stream.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

namespace {

constexpr std::string_view kInfoDirective = "#EXTINF:";
constexpr std::array<std::string_view, 2> kEntryDirectives = {"#EXT", "#KODIPROP:"};
constexpr std::array<std::string_view, 3> kPlaylistDirectives = {"#EXTM3U", "#EXTENC:", "#PLAYLIST:"};
/// RFC 8216: each playlist of HLS has one of the first two or three; the others name what no song list has.
constexpr std::array<std::string_view, 6> kHLSTags = {
    "#EXT-X-TARGETDURATION:", "#EXT-X-STREAM-INF:", "#EXT-X-I-FRAME-STREAM-INF:",
    "#EXT-X-MEDIA:",          "#EXT-X-PART-INF:",   "#EXT-X-MEDIA-SEQUENCE:"};

enum class LineKind { Nothing, Directive, Location };

template <std::size_t Count>
bool StartsWithOneOf(std::string_view aText, const std::array<std::string_view, Count>& aPrefixes) {
    return std::any_of(aPrefixes.begin(), aPrefixes.end(),
                       [aText](std::string_view aPrefix) { return ezStartsWithNoCase(aText, aPrefix); });
}

/// The line from its first byte that is no blank: what decides of what kind it is.
std::string_view WithoutIndent(std::string_view aLine) {
    return aLine.substr(std::min(aLine.find_first_not_of(" \t\v\f"), aLine.size()));
}

LineKind KindOf(std::string_view aLine) {
    const std::string_view text = WithoutIndent(aLine);
    if (text.empty()) {
        return LineKind::Nothing;
    }
    if (text.front() != '#') {
        return LineKind::Location;
    }
    return StartsWithOneOf(text, kEntryDirectives) && !StartsWithOneOf(text, kPlaylistDirectives)
               ? LineKind::Directive
               : LineKind::Nothing;
}

/// A URL without the blanks around it; they may belong to a name.
std::string_view LocationOf(std::string_view aLine) {
    const std::string_view trimmed = ezTrimmed(aLine);
    return trimmed.size() != aLine.size() && HasScheme(trimmed) ? trimmed : aLine;
}

/// The first comma outside of quotes; where a quote stays open, the first of all.
std::size_t FindTitleComma(std::string_view aText) {
    bool fQuoted = false;
    for (std::size_t i = 0; i < aText.size(); ++i) {
        if (aText[i] == '"') {
            fQuoted = !fQuoted;
        } else if (aText[i] == ',' && !fQuoted) {
            return i;
        }
    }
    return std::min(aText.find(','), aText.size());
}

/// Where a byte stands next in a row of bytes; each of these is searched once, however often is asked.
class NextByte {
public:
    NextByte(std::string_view aBytes, char aByte)
        : mEnd(aBytes.data() + aBytes.size()), mAt(aBytes.data()), mByte(aByte) {
        Search(aBytes.data());
    }

    /// At or after a place, which is not before the one asked for last; the end when it stands nowhere.
    const char* From(const char* aPlace) {
        if (mAt < aPlace) {
            Search(aPlace);
        }
        return mAt;
    }

private:
    void Search(const char* aPlace) {
        const void* found = std::memchr(aPlace, mByte, static_cast<std::size_t>(mEnd - aPlace));
        mAt = found != nullptr ? static_cast<const char*>(found) : mEnd;
    }

    const char* mEnd;
    const char* mAt;
    char mByte;
};

/// Locations among whole lines, told by the bytes that lines begin with. *afIndented is set where one begins
/// with a blank, and what it is follows that.
std::size_t CountLocations(std::string_view aLines, bool* afIndented) {
    const char* const end = aLines.data() + aLines.size();
    NextByte lf(aLines, '\n');
    NextByte cr(aLines, '\r');
    std::size_t count = 0;
    bool fIndented = false;
    for (const char* at = aLines.data(); at != end;) {
        const char first = *at;
        const bool fBlank = first == ' ' || first == '\t' || first == '\v' || first == '\f';
        count += first != '#' && first != '\n' && first != '\r' ? 1 : 0;
        fIndented = fIndented || fBlank;
        // CR ends the line where it comes first; before LF that makes one blank line more.
        at = std::min(lf.From(at), cr.From(at)) + 1; // one of them is the last byte
    }
    *afIndented = fIndented;
    return count;
}

/// Moves over locations, fewer than aCount and often nearly as many, without taking lines apart; gives how
/// many. What is rare (indented and very long lines, the end of the stream) is left to a walk.
uint32 SkipLocations(PlaylistStreamReader& aReader, uint32 aCount) {
    uint32 skipped = 0;
    while (true) {
        while (aReader.Peek().size() < kPlaylist_SkippedAtOnce && aReader.Grow()) {
        }
        const std::string_view chunk = aReader.Peek().substr(0, kPlaylist_SkippedAtOnce);
        const std::size_t end = chunk.find_last_of("\r\n");
        if (end == std::string_view::npos) {
            return skipped;
        }
        bool fIndented = false;
        const std::size_t count = CountLocations(chunk.substr(0, end + 1), &fIndented);
        if (fIndented || count >= aCount - skipped) {
            return skipped;
        }
        aReader.Skip(end + 1);
        skipped += static_cast<uint32>(count);
    }
}

/// Walks to the locations and to where their entries begin, whatever these say.
class EntryFinder {
public:
    explicit EntryFinder(PlaylistLineReader& aLines) : mLines(aLines) {}

    /// Calls the function for each directive of the next entry, and stops at its location. False when there
    /// is none.
    template <typename OnDirective>
    bool Next(const OnDirective& anOnDirective) {
        bool fBegun = false;
        while (mLines.Next(&mLine)) {
            const LineKind kind = KindOf(mLine.mText);
            if (kind == LineKind::Nothing) {
                continue;
            }
            if (!fBegun) {
                mStart = mLine.mPos;
                fBegun = true;
            }
            if (kind == LineKind::Location) {
                return true;
            }
            anOnDirective(WithoutIndent(mLine.mText));
        }
        return false;
    }

    std::uint64_t GetStart() const { return mStart; }
    std::string_view GetLocation() const { return mLine.mText; }

private:
    PlaylistLineReader& mLines;
    PlaylistLine mLine;
    std::uint64_t mStart = 0;
};

} // namespace

/// Reads the entries one by one.
class M3UPlaylistParser::EntryReader {
public:
    EntryReader(PlaylistLineReader& aLines, bool afUTF8) : mFinder(aLines), mfUTF8(afUTF8) {}

    /// Everything but index and next position.
    bool Next(PlaylistParserEntry* anEntry) {
        *anEntry = PlaylistParserEntry();
        mAttributes.clear();
        mTags.clear();
        if (!mFinder.Next([&](std::string_view aDirective) { TakeDirective(aDirective, anEntry); })) {
            return false;
        }
        anEntry->mURI = ezCString(LocationOf(mFinder.GetLocation()));
        anEntry->mStreamPos = mFinder.GetStart();
        anEntry->mSpecificTags = ezCString(Tags());
        return true;
    }

private:
    void TakeDirective(std::string_view aDirective, PlaylistParserEntry* anEntry) {
        if (ezStartsWithNoCase(aDirective, kInfoDirective)) {
            TakeInfo(aDirective.substr(kInfoDirective.size()), anEntry);
        } else if (mTags.size() + aDirective.size() < kPlaylist_MaxTags) {
            mTags.append(mTags.empty() ? "" : "\n").append(ezTrimmed(aDirective));
        }
    }

    void TakeInfo(std::string_view aText, PlaylistParserEntry* anEntry) {
        const std::size_t comma = FindTitleComma(aText);
        const std::string_view title = aText.substr(std::min(comma + 1, aText.size()));
        std::string_view attributes;
        anEntry->mDuration = PlaylistSeconds(ezTrimmed(aText.substr(0, comma)), &attributes);
        anEntry->mTitle = PlaylistText(ezTrimmed(title), mfUTF8);
        mAttributes = ezTrimmed(attributes);
    }

    std::string Tags() const {
        const bool fBoth = !mAttributes.empty() && !mTags.empty();
        return mAttributes + (fBoth ? "\n" : "") + mTags;
    }

    EntryFinder mFinder;
    std::string mAttributes;
    std::string mTags;
    bool mfUTF8;
};

PlaylistParser* M3UPlaylistParser::sBuild(ezStream* aStream) {
    return aStream != nullptr ? new M3UPlaylistParser(aStream) : nullptr;
}

M3UPlaylistParser::M3UPlaylistParser(ezStream* aStream)
    : M3UPlaylistParser(aStream, PlaylistPlace(aStream)) {}

M3UPlaylistParser::M3UPlaylistParser(ezStream* aStream, const PlaylistPlace& aPlace)
    : PlaylistParser(aPlace.GetParentURL()),
      mReader(std::make_unique<PlaylistStreamReader>(aStream)),
      mLines(std::make_unique<PlaylistLineReader>(*mReader)),
      mfUTF8(aStream != nullptr && ezIsEqualNoCase(aStream->GetExtension().View(), "m3u8")) {
    mFilePath = aPlace.GetFilePath();
    mMimeType = kMimeTypes[0];
}

M3UPlaylistParser::~M3UPlaylistParser() = default;

bool M3UPlaylistParser::LookForHLS() {
    ++mMoves;
    std::string start;
    mLines->LookAtStart(kPlaylist_HLSLook, &start);
    for (std::string_view rest = start; !rest.empty();) {
        const std::size_t end = std::min(rest.find_first_of("\r\n"), rest.size());
        if (StartsWithOneOf(WithoutIndent(rest.substr(0, end)), kHLSTags)) {
            return true;
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return false;
}

bool M3UPlaylistParser::IsHLS() {
    if (!mHLS.has_value() && mLines->StartAt(0)) {
        const bool fHLS = LookForHLS();
        if (mReader->HasFailed() && !fHLS) {
            return false; // the next look may see more
        }
        mHLS = fHLS;
    }
    return mHLS.value_or(false);
}

bool M3UPlaylistParser::SeekBytes(const ezuint64& aPos) {
    ++mMoves;
    const std::uint64_t pos = aPos.ToUInt64();
    if (!mReader->Seek(pos - std::min<std::uint64_t>(pos, 1))) { // a walk looks at the byte before, too
        return false;
    }
    mWalkPos = aPos;
    return PlaylistParser::SeekBytes(aPos);
}

void M3UPlaylistParser::ParseAll(PlaylistParserCallback aCallback, void* aUserData) {
    if (IsHLS() || !mLines->StartAt(mWalkPos.ToUInt64())) {
        return;
    }
    const unsigned move = ++mMoves;
    EntryReader reader(*mLines, mfUTF8);
    PlaylistParserEntry entry;
    PlaylistParserEntry next;
    bool fEntry = reader.Next(&entry);
    while (fEntry) {
        fEntry = reader.Next(&next); // the entry must say where it begins
        entry.mNextEntryStreamPos = fEntry ? next.mStreamPos : ezuint64(kezuint64_Max);
        entry.mRelativeEntryIndex = mRelativeEntryIndex++;
        mWalkPos = entry.mNextEntryStreamPos;
        if (aCallback(&entry, aUserData) || move != mMoves) {
            return;
        }
        std::swap(entry, next);
    }
}

bool M3UPlaylistParser::FetchEntryAtIndex(uint32 anEntryIndex, PlaylistParserEntry* anEntry) {
    // As the base does it, but what is passed by is not made into entries.
    if (anEntry == nullptr || IsHLS() || !SeekBytes(0) || !mLines->StartAt(0)) {
        return false;
    }
    // Less than what is wanted, so that the walk passes a location and knows where the wanted entry begins.
    uint32 index = mLines->IsUtf16() ? 0 : SkipLocations(*mReader, anEntryIndex);
    EntryFinder finder(*mLines);
    for (; finder.Next([](std::string_view) {}); ++index) {
        if (index == anEntryIndex) {
            return FetchEntryAtPos(finder.GetStart(), anEntry);
        }
    }
    return false;
}

PlaylistCut M3UPlaylistParser::GetCut() const {
    return mReader->GetCut();
}

ezCString M3UPlaylistParser::GetFullURLFor(const ezCString& anEntryURI) {
    return PlaylistParser::GetFullURLFor(mParentURL != nullptr ? URLReference(anEntryURI) : anEntryURI);
}
