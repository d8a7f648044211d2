#include "bench/PlaylistTexts.h"
#include "bench/Require.h"
#include "bench/instructions/Instructions.h"

#include "ezPlaylists/M3UPlaylistParser.h"
#include "ezPlaylists/detail/ASXPlaylistParser.h"
#include "ezPlaylists/detail/PLSPlaylistParser.h"
#include "ezPlaylists/detail/WPLPlaylistParser.h"
#include "ezPlaylists/detail/XSPFPlaylistParser.h"

#include <string>

namespace {

constexpr std::size_t kRun = 50; ///< entries that are fetched one after the other

/// All code's and our own instructions of the next entry, with its URL, before the end of a playlist.
template <typename Reader>
Instructions NextEntries(const std::string& aText, std::size_t aSize) {
    const ezStreamOwner stream = PlaylistTexts_Stream(aText);
    Reader reader(stream.get());
    PlaylistParserEntry place;
    Require(reader.FetchEntryAtIndex(static_cast<uint32>(aSize - kRun - 1), &place), "the entry is there");
    return Instructions_Of([&] {
        PlaylistParserEntry entry;
        Require(reader.FetchEntryAtPos(place.mStreamPos, &entry), "the place is found");
        for (std::size_t i = 0; i < kRun; ++i) {
            Require(reader.FetchNextEntry(&entry), "there is a next entry");
            Require(!reader.GetFullURLFor(entry.mURI).IsEmpty(), "which has a URL");
        }
    });
}

/// An entry of a playlist of 1,000, an entry of longer ones against it, and the index that is made of them.
template <typename Reader>
void PrintPlaylist(const std::string& aKey, std::string (*aText)(std::size_t)) {
    Instructions_Print("playlist." + aKey, NextEntries<Reader>(aText(1000), 1000), kRun);
    Instructions_PrintGrowth("playlist." + aKey, {1000, 10000}, [&](std::size_t aSize) {
        return static_cast<double>(NextEntries<Reader>(aText(aSize), aSize).mAll) / kRun;
    });
    Instructions_PrintGrowth("playlist." + aKey + ".first-use", {1000, 10000}, [&](std::size_t aSize) {
        const std::string text = aText(aSize);
        return Instructions_OfUnit(aSize, [&] {
            const ezStreamOwner stream = PlaylistTexts_Stream(text);
            Reader reader(stream.get());
            PlaylistParserEntry entry;
            Require(reader.FetchEntryAtIndex(static_cast<uint32>(aSize - 1), &entry), "the last is there");
        });
    });
}

/// The first walk over a playlist, and a fetch of its last entry by the index.
template <typename Reader>
void WalkAndFetch(const std::string& aText, std::size_t aSize) {
    const ezStreamOwner stream = PlaylistTexts_Stream(aText);
    Reader reader(stream.get());
    std::size_t count = 0;
    reader.ParseAll(
        [](PlaylistParserEntry* /*anEntry*/, void* aCount) {
            ++*static_cast<std::size_t*>(aCount);
            return false;
        },
        &count);
    Require(count == aSize, "every entry is there");
    PlaylistParserEntry last;
    Require(reader.FetchEntryAtIndex(static_cast<uint32>(aSize - 1), &last), "the last is there");
}

/// An entry of what a stranger made to be costly, and how its cost grows.
template <typename Reader>
void PrintAttack(const std::string& aKey, std::string (*aText)(std::size_t)) {
    constexpr std::size_t kSmallest = 1000;
    const std::string smallest = aText(kSmallest);
    Instructions_PrintOf("playlist." + aKey, kSmallest, [&] { WalkAndFetch<Reader>(smallest, kSmallest); });
    Instructions_PrintGrowth("playlist." + aKey, {kSmallest, 4000, 16000}, [&](std::size_t aSize) {
        const std::string text = aText(aSize);
        return Instructions_OfUnit(aSize, [&] { WalkAndFetch<Reader>(text, aSize); });
    });
}

} // namespace

void PrintPlaylists() {
    PrintPlaylist<M3UPlaylistParser>("m3u", PlaylistTexts_M3U);
    PrintPlaylist<PLSPlaylistParser>("pls", PlaylistTexts_PLS);
    PrintPlaylist<ASXPlaylistParser>("asx", PlaylistTexts_ASX);
    PrintPlaylist<WPLPlaylistParser>("wpl", PlaylistTexts_WPL);
    PrintPlaylist<XSPFPlaylistParser>("xspf", PlaylistTexts_XSPF);
    PrintAttack<M3UPlaylistParser>("m3u.carriage-returns", PlaylistTexts_CarriageReturns);
    PrintAttack<XSPFPlaylistParser>("xspf.dotted-base", PlaylistTexts_DottedXSPF);
    PrintAttack<ASXPlaylistParser>("asx.dotted-base", PlaylistTexts_DottedASX);
}
