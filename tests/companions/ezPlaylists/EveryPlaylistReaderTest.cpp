#include "ezPlaylists/PlaylistCut.h"
#include "ezPlaylists/Playlists.h"

#include "PlaylistKit.h"

#include "ezPlaylists/detail/Limits.h"

#include "ez/PlaylistParserFactory.h"

#include <set>

// What holds of every reader of playlists: each is made as a host makes it, by the extension of a playlist.

namespace {

/// How a playlist of a format is written: "$" is the number of an entry, from 1 on.
struct PlaylistFormat {
    const char* mExtension;
    const char* mMimeType;
    const char* mHead;
    const char* mEntry;
    const char* mFoot;
    const char* mLocation;
    const char* mTitle;
    bool mfTimed;    ///< entry n lasts n seconds
    bool mfURIs;     ///< locations are URIs, in which "\" parts no folders
    bool mfDocument; ///< of elements with an end
};

const PlaylistFormat kFormats[] = {
    {"m3u", "audio/x-mpegurl", "#EXTM3U\n", "#EXTINF:$,Tune $\nsome folder/song $.mp3\n", "",
     "some folder/song $.mp3", "Tune $", true, false, false},
    {"pls", "audio/x-scpls", "[playlist]\n", "File$=folder/song $.mp3\nTitle$=Tune $\nLength$=$\n", "",
     "folder/song $.mp3", "Tune $", true, false, false},
    {"asx", "video/x-ms-asx", "<asx version=3>\n",
     "<Entry><Title>Tune & $</title><ref href=song$.mp3></ENTRY>\n", "</ASX>", "song$.mp3", "Tune & $", false,
     false, true},
    {"xspf", "application/xspf+xml", "<playlist version=\"1\"><trackList>\n",
     "<track><location>song$.mp3</location><title>Tune $</title><creator>C</creator>"
     "<duration>$000</duration></track>\n",
     "</trackList></playlist>\n", "song$.mp3", "Tune $", true, true, true},
    {"wpl", "application/vnd.ms-wpl", "<smil><body><seq>\n", "<media src=\"folder\\song $.mp3\"/>\n",
     "</seq></body></smil>", "folder\\song $.mp3", "", false, false, true},
};

std::ostream& operator<<(std::ostream& aStream, const PlaylistFormat& aFormat) {
    return aStream << aFormat.mExtension;
}

std::string Replaced(std::string aText, const std::string& anOld, const std::string& aNew) {
    for (std::size_t at = aText.find(anOld); at != std::string::npos;
         at = aText.find(anOld, at + aNew.size())) {
        aText.replace(at, anOld.size(), aNew);
    }
    return aText;
}

std::string Numbered(const char* aPattern, std::size_t aNumber) {
    return Replaced(aPattern, "$", std::to_string(aNumber));
}

class EveryPlaylistReader : public testing::TestWithParam<PlaylistFormat> {
protected:
    EveryPlaylistReader() { EXPECT_TRUE(RegisterPlaylistParsers(mFactory)); }

    std::unique_ptr<PlaylistParser> Reader(ezStream* aStream) const {
        return std::unique_ptr<PlaylistParser>(
            mFactory.NewPlaylistParser(aStream, "", GetParam().mExtension));
    }

    static std::string Text(std::size_t aCount) {
        std::string text = GetParam().mHead;
        for (std::size_t i = 1; i <= aCount; ++i) {
            text += Numbered(GetParam().mEntry, i);
        }
        return text + GetParam().mFoot;
    }

    PlaylistEntries Agreed(const std::string& aText) const {
        const ezStreamOwner stream = MemoryPlaylist(aText, "/music/list");
        return CheckAgreement(*Reader(stream.get()), aText.size());
    }

    /// How many entries end before a place of a playlist.
    static std::size_t WholeBefore(std::size_t aPlace, const PlaylistEntries& anEntries,
                                   const std::string& aText) {
        std::size_t count = 0;
        for (const PlaylistParserEntry& entry : anEntries) {
            const std::size_t end = entry.mNextEntryStreamPos == kezuint64_Max
                                        ? aText.size() - std::string(GetParam().mFoot).size()
                                        : static_cast<std::size_t>(entry.mNextEntryStreamPos.ToUInt64());
            count += end <= aPlace ? 1 : 0;
        }
        return count;
    }

    /// The first locations of some entries.
    static std::vector<std::string> FirstOf(const PlaylistEntries& anEntries, std::size_t aCount) {
        std::vector<std::string> locations = Locations(anEntries);
        locations.resize(aCount);
        return locations;
    }

    PlaylistParserFactory mFactory;
};

INSTANTIATE_TEST_SUITE_P(All, EveryPlaylistReader, testing::ValuesIn(kFormats),
                         [](const auto& anInfo) { return std::string(anInfo.param.mExtension); });

} // namespace

TEST_P(EveryPlaylistReader, IsFoundByExtensionAndMimeType) {
    const ezStreamOwner stream = MemoryPlaylist(Text(1), "http://host/x/list");
    const std::unique_ptr<PlaylistParser> reader = Reader(stream.get());
    ASSERT_NE(reader, nullptr);
    EXPECT_EQ(Str(reader->GetMimeType()), GetParam().mMimeType);
    const std::unique_ptr<PlaylistParser> byType(
        mFactory.NewPlaylistParser(stream.get(), GetParam().mMimeType, ""));
    ASSERT_NE(byType, nullptr);
    EXPECT_EQ(Str(byType->GetMimeType()), GetParam().mMimeType);
    EXPECT_EQ(Str(reader->GetFullURLFor("a.mp3")), "http://host/x/a.mp3");
    EXPECT_FALSE(reader->GetFilePath().IsValid());
    EXPECT_EQ(Reader(nullptr), nullptr) << "without a stream there is none";
}

TEST_P(EveryPlaylistReader, WhatHoldsNoEntryIsEmpty) {
    const std::string head = GetParam().mHead;
    for (const std::string& text : {std::string(), head, head + GetParam().mFoot, std::string(1000, ' ')}) {
        EXPECT_TRUE(Agreed(text).empty()) << text;
    }
}

TEST_P(EveryPlaylistReader, HundredThousandEntriesAgree) {
    constexpr std::size_t kCount = 100000;
    const PlaylistEntries entries = Agreed(Text(kCount));
    ASSERT_EQ(entries.size(), kCount);
    EXPECT_EQ(Str(entries.back().mURI), Numbered(GetParam().mLocation, kCount));
    EXPECT_EQ(Str(entries.back().mTitle), Numbered(GetParam().mTitle, kCount));
    EXPECT_EQ(entries.back().mDuration, GetParam().mfTimed ? kCount : 0U);
}

TEST_P(EveryPlaylistReader, LinesMayEndInAnyWay) {
    const PlaylistEntries whole = Agreed(Text(3));
    for (const std::string end : {"\r\n", "\r"}) {
        const PlaylistEntries entries = Agreed(WithLineEnds(Text(3), end));
        ASSERT_EQ(Locations(entries), Locations(whole));
        EXPECT_EQ(entries[2].mTitle, whole[2].mTitle);
        EXPECT_EQ(entries[2].mDuration, whole[2].mDuration);
    }
}

TEST_P(EveryPlaylistReader, TextOf16BitUnitsIsReadInEitherOrderWithThePositionsOfItsBytes) {
    const PlaylistEntries plain = Agreed(Text(2));
    const auto foreign = [](const std::string& aText) {
        return Replaced(Replaced(aText, "song", "s\xC3\xB6ng"), "Tune", "T\xE2\x82\xACne");
    };
    for (const bool fBigEndian : {false, true}) {
        const PlaylistEntries entries = Agreed(InUtf16(foreign(Text(2)), fBigEndian));
        ASSERT_EQ(entries.size(), 2U);
        for (std::size_t i = 0; i < 2; ++i) {
            EXPECT_EQ(Str(entries[i].mURI), foreign(Numbered(GetParam().mLocation, i + 1)));
            EXPECT_EQ(Str(entries[i].mTitle), foreign(Numbered(GetParam().mTitle, i + 1)));
            EXPECT_EQ(entries[i].mStreamPos.ToUInt64(), 2 + 2 * plain[i].mStreamPos.ToUInt64());
        }
    }
}

TEST_P(EveryPlaylistReader, BackslashesOfAPlaylistFromAServerPartFolders) {
    const ezStreamOwner stream = MemoryPlaylist("", "https://h/m/lists/list");
    if (!GetParam().mfURIs) {
        EXPECT_EQ(Str(Reader(stream.get())->GetFullURLFor("..\\a b\\c.mp3")), "https://h/m/a%20b/c.mp3");
    }
    EXPECT_EQ(Str(Reader(stream.get())->GetFullURLFor("../c.mp3")), "https://h/m/c.mp3");
}

TEST_P(EveryPlaylistReader, NewReaderWalksFromTheStart) {
    const ezStreamOwner stream = MemoryPlaylist(Text(2), "/music/list");
    stream->Seek(9); // whatever looked at the stream before
    const std::unique_ptr<PlaylistParser> reader = Reader(stream.get());
    PlaylistEntries entries;
    reader->ParseAll(sCollect, &entries);
    EXPECT_EQ(entries.size(), 2U);
}

TEST_P(EveryPlaylistReader, CallbackThatMovesTheReaderEndsTheWalk) {
    struct Walk {
        PlaylistParser* mReader;
        int mMove;
        int mCalls;
    };
    const auto disturb = [](PlaylistParserEntry*, void* aUserData) {
        Walk* walk = static_cast<Walk*>(aUserData);
        PlaylistParserEntry entry;
        PlaylistEntries entries;
        switch (walk->mMove) {
        case 0:
            EXPECT_TRUE(walk->mReader->FetchEntryAtPos(0, &entry));
            break;
        case 1:
            EXPECT_TRUE(walk->mReader->FetchEntryAtIndex(1, &entry));
            break;
        case 2:
            EXPECT_TRUE(walk->mReader->SeekBytes(0));
            break;
        default:
            walk->mReader->ParseAll(sCollect, &entries);
        }
        return ++walk->mCalls == 100;
    };
    const ezStreamOwner stream = MemoryPlaylist(Text(3), "/music/list");
    const std::unique_ptr<PlaylistParser> reader = Reader(stream.get());
    for (int move = 0; move < 4; ++move) {
        Walk walk = {reader.get(), move, 0};
        ASSERT_TRUE(reader->SeekBytes(0));
        reader->ParseAll(disturb, &walk);
        EXPECT_EQ(walk.mCalls, 1) << move;
        EXPECT_EQ(WalkFrom(*reader, 0).size(), 3U);
    }
}

TEST_P(EveryPlaylistReader, PlaylistThatIsCutHasTheEntriesBeforeTheCut) {
    const std::string text = Text(3);
    const PlaylistEntries whole = Agreed(text);
    for (std::size_t size = 0; size <= text.size(); ++size) {
        const PlaylistEntries entries = Agreed(text.substr(0, size));
        ASSERT_LE(entries.size(), whole.size()) << size;
        // Whether what the cut ends counts as an entry is left open; in a document half a location never
        // does.
        EXPECT_GE(entries.size(), WholeBefore(size, whole, text)) << size;
        const std::size_t sure = GetParam().mfDocument ? entries.size() : WholeBefore(size, whole, text);
        EXPECT_EQ(FirstOf(entries, sure), FirstOf(whole, sure)) << size;
    }
}

TEST_P(EveryPlaylistReader, StreamThatFailsGivesWholeEntriesUpToTheFailure) {
    const std::string text = Text(3);
    const PlaylistEntries whole = Agreed(text);
    for (std::size_t failing = 0; failing <= text.size(); ++failing) {
        const ezStreamOwner stream(new ScriptedStream(text, 7, failing));
        const PlaylistEntries entries = CheckAgreement(*Reader(stream.get()), text.size());
        ASSERT_LE(entries.size(), whole.size()) << failing;
        EXPECT_GE(entries.size(), WholeBefore(failing, whole, text)) << failing;
        EXPECT_EQ(Locations(entries), FirstOf(whole, entries.size())) << failing;
    }
}

TEST_P(EveryPlaylistReader, StreamThatGivesLittleAtATimeReadsTheSame) {
    const std::string text = Text(20);
    const PlaylistEntries whole = Agreed(text);
    for (std::size_t maximum = 1; maximum < 9; ++maximum) {
        const ezStreamOwner stream(new ScriptedStream(text, maximum));
        EXPECT_EQ(CheckAgreement(*Reader(stream.get()), text.size()), whole) << maximum;
    }
}

TEST_P(EveryPlaylistReader, WaitsForWhatHasNotArrived) {
    const std::string text = Text(60);
    auto* const stream = new ArrivingStream(text);
    const ezStreamOwner owner(stream);
    {
        const std::unique_ptr<PlaylistParser> reader = Reader(stream);
        EXPECT_EQ(WalkFrom(*reader, 0), Agreed(text));
        EXPECT_EQ(CheckAgreement(*reader, text.size()), Agreed(text));
    }
    EXPECT_GT(stream->mWaits, 0U);
    EXPECT_EQ(stream->mRegistered, 0); // no callback stays
}

TEST_P(EveryPlaylistReader, IsReadOnceAndNotBeforeItIsAsked) {
    const std::string text = Text(1000);
    auto* const stream = new ScriptedStream(text);
    const ezStreamOwner owner(stream);
    const std::unique_ptr<PlaylistParser> reader = Reader(stream);
    EXPECT_EQ(stream->GetBytes(), 0U);
    EXPECT_EQ(CheckAgreement(*reader, text.size()).size(), 1000U);
    EXPECT_EQ(stream->GetBytes(), text.size());
    EXPECT_EQ(GetPlaylistCut(*reader), PlaylistCut::None);
}

TEST_P(EveryPlaylistReader, DocumentThatIsTooLongHasNoEntries) {
    if (GetParam().mfDocument) {
        std::string text = Text(1);
        text.resize(kPlaylist_MaxDocument, ' ');
        EXPECT_EQ(Agreed(text).size(), 1U);
        EXPECT_EQ(Agreed(text + " ").size(), 0U);
    }
}
