#include "bench/Benches.h"
#include "bench/HeapPeak.h"
#include "bench/Measure.h"
#include "bench/PlaylistTexts.h"

#include "ezPlaylists/M3UPlaylistParser.h"
#include "ezPlaylists/detail/ASXPlaylistParser.h"
#include "ezPlaylists/detail/Limits.h"
#include "ezPlaylists/detail/PLSPlaylistParser.h"
#include "ezPlaylists/detail/WPLPlaylistParser.h"
#include "ezPlaylists/detail/XSPFPlaylistParser.h"

#include "ezPlatform/streams/MemoryStream.h"

#include <array>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr std::array<std::size_t, 3> kSizes = {1000, 10000, 100000};
/// Entries fetched one after the other at each place, and how often that is repeated in a round.
constexpr std::size_t kRun = 100;
constexpr std::size_t kRepeats = 100;

/// A playlist in memory, its reader, and an entry a run before its end, in its middle, and at its start.
template <typename Reader>
class Playlist {
public:
    explicit Playlist(const std::string& aText, std::size_t aSize)
        : mStream(PlaylistTexts_Stream(aText)), mReader(mStream.get()) {
        const std::array<std::size_t, 3> indexes = {0, aSize / 2, aSize - kRun - 1};
        for (std::size_t i = 0; i < indexes.size(); ++i) {
            Require(mReader.FetchEntryAtIndex(static_cast<uint32>(indexes[i]), &mPlaces[i]),
                    "the entry is there");
        }
    }

    /// Nanoseconds of a fetch of the next entry at a place.
    double NextCost(std::size_t aPlace) {
        double cost = 0;
        for (std::size_t i = 0; i < kRepeats; ++i) {
            PlaylistParserEntry entry;
            Require(mReader.FetchEntryAtPos(mPlaces[aPlace].mStreamPos, &entry), "the place is found");
            cost += TimeOf([&] {
                for (std::size_t j = 0; j < kRun; ++j) {
                    Require(mReader.FetchNextEntry(&entry), "there is a next entry");
                }
            });
        }
        return cost / (kRun * kRepeats);
    }

    Reader& GetReader() { return mReader; }

private:
    ezStreamOwner mStream;
    Reader mReader;
    std::array<PlaylistParserEntry, 3> mPlaces;
};

/// Start, middle and end of each size.
template <typename Reader>
std::vector<Side> NextSides(std::string (*aText)(std::size_t)) {
    std::vector<Side> sides;
    for (const std::size_t size : kSizes) {
        const auto playlist = std::make_shared<Playlist<Reader>>(aText(size), size);
        std::size_t place = 0;
        for (const char* name : {"start", "middle", "end"}) {
            sides.push_back({std::to_string(size) + ", " + name,
                             [playlist, place] { return playlist->NextCost(place); }});
            ++place;
        }
    }
    return sides;
}

std::vector<Claim> NextClaims(const std::string& aFormat) {
    const std::array<const char*, 9> names = {"",
                                              "middle / start of 1,000",
                                              "end / start of 1,000",
                                              "start of 10,000 / of 1,000",
                                              "middle of 10,000 / start of 1,000",
                                              "end of 10,000 / start of 1,000",
                                              "start of 100,000 / of 1,000",
                                              "middle of 100,000 / start of 1,000",
                                              "end of 100,000 / start of 1,000"};
    std::vector<Claim> claims;
    for (std::size_t i = 1; i < names.size(); ++i) {
        claims.push_back({"next entry of " + aFormat + ", " + names[i],
                          [i](const Costs& aCosts) { return aCosts[i] / aCosts[0]; }, 1.3});
    }
    return claims;
}

/// Nanoseconds an entry of finding an entry by its index.
double IndexCost(M3UPlaylistParser& aReader, std::size_t anIndex) {
    constexpr std::size_t kEntries = 200000;
    PlaylistParserEntry entry;
    const std::size_t repeats = kEntries / anIndex;
    return TimeOf([&] {
               for (std::size_t i = 0; i < repeats; ++i) {
                   Require(aReader.FetchEntryAtIndex(static_cast<uint32>(anIndex), &entry),
                           "the entry is there");
               }
           }) /
           static_cast<double>(repeats * anIndex);
}

/// Nanoseconds an entry of finding the ends of all lines in memory.
double LineScanCost(const std::string& aText, std::size_t anEntries) {
    constexpr std::size_t kScans = 2;
    std::size_t lines = 0;
    const double cost = TimeOf([&] {
        for (std::size_t i = 0; i < kScans; ++i) {
            const char* const end = aText.data() + aText.size();
            for (const char* at = aText.data(); at != end; ++lines) {
                const void* found = std::memchr(at, '\n', static_cast<std::size_t>(end - at));
                at = static_cast<const char*>(found) + 1; // every line has an end
            }
        }
    });
    Require(lines == kScans * (2 * anEntries + 1), "every line is found");
    return cost / static_cast<double>(kScans * anEntries);
}

std::vector<Side> IndexSides() {
    const std::size_t size = kSizes.back();
    const auto text = std::make_shared<std::string>(PlaylistTexts_M3U(size));
    const auto playlist = std::make_shared<Playlist<M3UPlaylistParser>>(*text, size);
    std::vector<Side> sides;
    for (const std::size_t index : {size / 100, size / 10, size - 1}) {
        sides.push_back({"index " + std::to_string(index),
                         [playlist, index] { return IndexCost(playlist->GetReader(), index); }});
    }
    sides.push_back({"line scan", [text] { return LineScanCost(*text, kSizes.back()); }});
    return sides;
}

/// A document of so many bytes of which a piece is said over and over.
std::string Repeated(const std::string& aHead, const std::string& aPiece, std::size_t aSize) {
    std::string text = aHead;
    text.reserve(aSize);
    while (text.size() + aPiece.size() <= aSize) {
        text += aPiece;
    }
    return text;
}

std::string InUtf16(const std::string& anAsciiText) {
    std::string text = "\xFF\xFE";
    for (const char letter : anAsciiText) {
        text += letter;
        text += '\0';
    }
    return text;
}

/// The most memory that the first walk over a document takes, without the document's own stream.
template <typename Reader>
void NoteMemory(const std::string& aName, const std::string& aText) {
    constexpr double kPromised = 64;
    const ezStreamOwner stream = PlaylistTexts_Stream(aText);
    const double peak = HeapPeak_Of([&] {
        Reader reader(stream.get());
        PlaylistParserEntry entry;
        reader.FetchEntryAtIndex(0, &entry);
    });
    if (peak >= 0) {
        NoteCount("first use of " + aName + ", MiB of heap", peak / (1 << 20), kPromised);
    }
}

/// Documents that were made to take memory.
void CountMemory() {
    const std::size_t most = kPlaylist_MaxDocument;
    const std::string xspf = "<playlist><trackList>";
    const std::string wpl = "<smil><body>";
    const std::string track = "<track><location>a</location></track>";
    NoteMemory<XSPFPlaylistParser>("XSPF of 8 MB of small elements", Repeated(xspf, "<a>b</a>", 8'000'000));
    NoteMemory<XSPFPlaylistParser>("XSPF of 16 MiB of small elements", Repeated(xspf, "<a/>", most));
    NoteMemory<XSPFPlaylistParser>("XSPF of 16 MiB of tracks", Repeated(xspf, track, most));
    NoteMemory<XSPFPlaylistParser>(
        "XSPF of 16 MiB under a base of 2 KiB",
        Repeated("<playlist xml:base='http://h/" + std::string(2000, 'x') + "/'><trackList>", track, most));
    NoteMemory<XSPFPlaylistParser>("XSPF of 16 MiB in UTF-16", InUtf16(Repeated(xspf, track, most / 2 - 2)));
    NoteMemory<XSPFPlaylistParser>("XSPF of 16 MiB, the longest texts",
                                   Repeated(xspf,
                                            "<track><location>a</location><title>" +
                                                std::string(kPlaylist_MaxText, 'x') + "</title><creator>" +
                                                std::string(kPlaylist_MaxText, 'y') + "</creator><album>" +
                                                std::string(kPlaylist_MaxText, 'z') + "</album></track>",
                                            most));
    NoteMemory<WPLPlaylistParser>("WPL of 16 MiB of small elements", Repeated(wpl, "<a/>", most));
    NoteMemory<WPLPlaylistParser>("WPL of 16 MiB of media", Repeated(wpl, "<media src='a'/>", most));
    NoteMemory<WPLPlaylistParser>("WPL of 16 MiB of attributes", Repeated(wpl + "<media", " a=''", most));
}

} // namespace

void AddPlaylistBenches() {
    AddCounting("Playlist/Memory", CountMemory);
    AddComparison(
        "Playlist/Next of M3U", [] { return NextSides<M3UPlaylistParser>(PlaylistTexts_M3U); },
        NextClaims("M3U"));
    AddComparison(
        "Playlist/Next of PLS", [] { return NextSides<PLSPlaylistParser>(PlaylistTexts_PLS); },
        NextClaims("PLS"));
    AddComparison(
        "Playlist/Next of ASX", [] { return NextSides<ASXPlaylistParser>(PlaylistTexts_ASX); },
        NextClaims("ASX"));
    AddComparison(
        "Playlist/Next of WPL", [] { return NextSides<WPLPlaylistParser>(PlaylistTexts_WPL); },
        NextClaims("WPL"));
    AddComparison(
        "Playlist/Next of XSPF", [] { return NextSides<XSPFPlaylistParser>(PlaylistTexts_XSPF); },
        NextClaims("XSPF"));
    AddComparison("Playlist/Index of M3U", IndexSides,
                  {{"entry at index 10,000 / 1,000 of M3U, by the entry",
                    [](const Costs& aCosts) { return aCosts[1] / aCosts[0]; }, 1.3},
                   {"entry at index 99,999 / 1,000 of M3U, by the entry",
                    [](const Costs& aCosts) { return aCosts[2] / aCosts[0]; }, 1.3},
                   {"entry at index 99,999 of M3U / memchr over its lines",
                    [](const Costs& aCosts) { return aCosts[2] / aCosts[3]; }, 2}});
}
