#include "ezPlaylists/M3UPlaylistParser.h"

#include "PlaylistKit.h"

#include "ezPlaylists/detail/Limits.h"

namespace {

using Texts = std::vector<std::string>;

PlaylistEntries M3U(const std::string& aText, const char* aURI = "/music/list.m3u") {
    return Agreed<M3UPlaylistParser>(aText, aURI);
}

/// The only entry.
PlaylistParserEntry One(const std::string& aText, const char* aURI = "/music/list.m3u") {
    const PlaylistEntries entries = M3U(aText, aURI);
    EXPECT_EQ(entries.size(), 1U) << aText;
    return entries.empty() ? PlaylistParserEntry() : entries.front();
}

std::string ManyEntries(std::size_t aCount) {
    std::string text = "#EXTM3U\n";
    for (std::size_t i = 0; i < aCount; ++i) {
        text += "#EXTINF:" + std::to_string(i % 600) + ",Artist - Title " + std::to_string(i) +
                "\nsome folder/song " + std::to_string(i) + ".mp3\n";
    }
    return text;
}

} // namespace

TEST(M3UPlaylistParser, EntryBeginsAtItsFirstDirectiveAndKnowsItsNext) {
    const std::string text = "#EXTM3U\n"
                             "#EXTINF:123,First\n"
                             "a/first.mp3\n"
                             "plain.mp3\n"
                             "# a comment\n"
                             "#EXTGRP:Group\n"
                             "#EXTINF:5,Last\n"
                             "last.mp3\n";
    const PlaylistEntries entries = M3U(text);
    ASSERT_EQ(entries.size(), 3U);
    EXPECT_EQ(entries[0].mStreamPos, text.find("#EXTINF:123"));
    EXPECT_EQ(entries[0].mTitle, "First");
    EXPECT_EQ(entries[0].mURI, "a/first.mp3");
    EXPECT_EQ(entries[0].mDuration, 123U);
    EXPECT_EQ(entries[0].mSpecificTags, "");
    EXPECT_EQ(entries[1].mStreamPos, text.find("plain.mp3"));
    EXPECT_EQ(entries[1].mTitle, "");
    EXPECT_EQ(entries[1].mDuration, 0U);
    EXPECT_EQ(entries[2].mStreamPos, text.find("#EXTGRP"));
    EXPECT_EQ(entries[2].mSpecificTags, "#EXTGRP:Group");
    EXPECT_EQ(entries[2].mNextEntryStreamPos, kezuint64_Max);
}

TEST(M3UPlaylistParser, PositionInsideAnEntryReadsWhatIsLeftOfIt) {
    const std::string text = "#EXTINF:9,One\none.mp3\n#EXTINF:8,Two\ntwo.mp3\n";
    const ezStreamOwner stream = MemoryPlaylist(text);
    M3UPlaylistParser reader(stream.get());
    PlaylistParserEntry entry;
    ASSERT_TRUE(reader.FetchEntryAtPos(1, &entry));
    EXPECT_EQ(entry.mURI, "one.mp3");
    EXPECT_EQ(entry.mTitle, "");
    EXPECT_EQ(entry.mStreamPos, 1U);
    EXPECT_EQ(entry.mNextEntryStreamPos, text.find("#EXTINF:8"));
    ASSERT_TRUE(reader.FetchEntryAtPos(text.find("one.mp3") + 1, &entry));
    EXPECT_EQ(entry.mURI, "two.mp3");
    EXPECT_EQ(entry.mTitle, "Two");
    EXPECT_FALSE(reader.FetchEntryAtPos(text.find("two.mp3") + 1, &entry));
    EXPECT_FALSE(reader.FetchEntryAtPos(text.size(), &entry));
}

TEST(M3UPlaylistParser, LinesEndInAnyWay) {
    const Texts expected = {"a.mp3", "b.mp3", "c.mp3"};
    for (const std::string end : {"\n", "\r\n", "\r"}) {
        const std::string text =
            WithLineEnds("#EXTM3U\n\n#EXTINF:1,A\na.mp3\n  \t\nb.mp3\n# comment\n\nc.mp3", end);
        EXPECT_EQ(Locations(M3U(text)), expected);
        EXPECT_EQ(Locations(M3U(text + end)), expected);
        EXPECT_EQ(M3U(text)[0].mTitle, "A");
    }
    EXPECT_EQ(Locations(M3U("a.mp3\r\nb.mp3\rc.mp3\n\r")), expected);
    EXPECT_EQ(Locations(M3U("a.mp3\r\r\nb.mp3\n\n\rc.mp3\r")), expected);
}

TEST(M3UPlaylistParser, HasNoEntriesWithoutALocation) {
    for (const char* text :
         {"", "\n", "\r\n\r\n", "#EXTM3U", "#EXTM3U\n#EXTINF:1,No location\n", "# x\n", "   "}) {
        EXPECT_TRUE(M3U(text).empty()) << text;
    }
}

TEST(M3UPlaylistParser, ByteOrderMarkBelongsToNoLine) {
    const PlaylistEntries entries = M3U("\xEF\xBB\xBF#EXTM3U\n#EXTINF:1,A\na.mp3\n");
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].mTitle, "A");
    const PlaylistEntries first = M3U("\xEF\xBB\xBF"
                                      "a.mp3\nb.mp3");
    ASSERT_EQ(Locations(first), (Texts{"a.mp3", "b.mp3"}));
    EXPECT_EQ(first[0].mStreamPos, 3U);
    EXPECT_EQ(Locations(M3U("\xEF\xBB\xBF")), Texts());
    EXPECT_EQ(Locations(M3U("\xEF\xBB")), (Texts{"\xEF\xBB"})); // no whole mark: a name
}

TEST(M3UPlaylistParser, TitlesBecomeUTF8AndLocationsStayAsWritten) {
    const PlaylistParserEntry latin = One("#EXTINF:1,Caf\xE9 \x96 B\xE4r\nCaf\xE9.mp3\n");
    EXPECT_EQ(latin.mTitle, "Caf\xC3\xA9 \xE2\x80\x93 B\xC3\xA4r");
    EXPECT_EQ(latin.mURI, "Caf\xE9.mp3");
    const PlaylistParserEntry utf8 = One("#EXTINF:1,Caf\xC3\xA9 \xF0\x9F\x8E\xB5\nCaf\xC3\xA9.mp3\n");
    EXPECT_EQ(utf8.mTitle, "Caf\xC3\xA9 \xF0\x9F\x8E\xB5");
    EXPECT_EQ(utf8.mURI, "Caf\xC3\xA9.mp3");
}

TEST(M3UPlaylistParser, TitlesOfM3U8AreUTF8EvenWhereTheyAreBroken) {
    EXPECT_EQ(One("#EXTINF:1,Caf\xE9 \xC3\xA9\nx.mp3\n", "/music/list.m3u8").mTitle,
              "Caf\xEF\xBF\xBD \xC3\xA9");
    EXPECT_EQ(One("#EXTINF:1,Caf\xC3\xA9\nx.mp3\n", "/music/LIST.M3U8").mTitle, "Caf\xC3\xA9");
}

TEST(M3UPlaylistParser, InfoGivesDurationTitleAndAttributes) {
    struct Case {
        const char* mInfo;
        uint32 mDuration;
        const char* mTitle;
        const char* mTags;
    };
    const Case cases[] = {
        {"#EXTINF:123,Title", 123, "Title", ""},
        {"#EXTINF:-1,Radio", 0, "Radio", ""},
        {"#EXTINF:0,Radio", 0, "Radio", ""},
        {"#EXTINF:12.75,Title", 12, "Title", ""},
        {"#EXTINF:-0.5,Title", 0, "Title", ""},
        {"#EXTINF: 12 , Title ", 12, "Title", ""},
        {"#EXTINF:12,One, Two, Three", 12, "One, Two, Three", ""},
        {"#EXTINF:12", 12, "", ""},
        {"#EXTINF:12,", 12, "", ""},
        {"#EXTINF:,Title", 0, "Title", ""},
        {"#EXTINF:", 0, "", ""},
        {"#EXTINF:4294967295,T", 4294967295U, "T", ""},
        {"#EXTINF:4294967296,T", 4294967295U, "T", ""},
        {"#EXTINF:99999999999999999999999999,T", 4294967295U, "T", ""},
        {"#extinf:7,Title", 7, "Title", ""},
        {"  #EXTINF:7,Title", 7, "Title", ""},
        {R"(#EXTINF:-1 tvg-id="a" group-title="News, World",The, Title)", 0, "The, Title",
         R"(tvg-id="a" group-title="News, World")"},
        {"#EXTINF:5 name=\"open,Title", 5, "Title", "name=\"open"},
        {"#EXTINF:5,Twelve 12\" Mix, long", 5, "Twelve 12\" Mix, long", ""},
        {"#EXTINF:1,A\n#EXTINF:2,B", 2, "B", ""},
    };
    for (const Case& item : cases) {
        const PlaylistParserEntry entry = One(std::string(item.mInfo) + "\nsong.mp3\n");
        EXPECT_EQ(entry.mDuration, item.mDuration) << item.mInfo;
        EXPECT_EQ(entry.mTitle, item.mTitle) << item.mInfo;
        EXPECT_EQ(entry.mSpecificTags, item.mTags) << item.mInfo;
        EXPECT_EQ(entry.mURI, "song.mp3");
    }
}

TEST(M3UPlaylistParser, FurtherDirectivesAreCarriedAsTheyAreWritten) {
    const PlaylistParserEntry entry =
        One("#EXTM3U url-tvg=\"x\"\n#PLAYLIST:My list\n#EXTENC: UTF-8\n"
            "#EXTVLCOPT:network-caching=1000 \n#comment\n"
            "#EXTINF:3 logo=\"l\",T\n#KODIPROP:a=b\n#EXTIMG:caf\xE9.jpg\ns.mp3\n");
    EXPECT_EQ(entry.mSpecificTags,
              "logo=\"l\"\n#EXTVLCOPT:network-caching=1000\n#KODIPROP:a=b\n#EXTIMG:caf\xE9.jpg");
    EXPECT_EQ(entry.mTitle, "T");
}

TEST(M3UPlaylistParser, DirectivesAfterTheLastLocationBelongToNoEntry) {
    EXPECT_EQ(One("s.mp3\n#EXTINF:3,T\n#EXTGRP:x\n").mTitle, "");
}

TEST(M3UPlaylistParser, CarriesABoundedNumberOfDirectives) {
    std::string text;
    for (int i = 0; i < 5000; ++i) {
        text += "#EXTGRP:a group with a name that is long\n";
    }
    const ezStreamOwner stream = MemoryPlaylist(text + "s.mp3\n");
    M3UPlaylistParser reader(stream.get());
    PlaylistParserEntry entry;
    ASSERT_TRUE(reader.FetchEntryAtPos(0, &entry));
    EXPECT_LE(entry.mSpecificTags.GetLength(), kPlaylist_MaxTags);
    EXPECT_GT(entry.mSpecificTags.GetLength(), kPlaylist_MaxTags - 100);
    EXPECT_EQ(entry.mURI, "s.mp3");
}

TEST(M3UPlaylistParser, LocationsOfEveryKindAreListed) {
    const Texts locations = {"http://host/a b.mp3?x=1#2",
                             "C:\\Music\\a.mp3",
                             "..\\up\\b.mp3",
                             "../c.mp3",
                             "file:///m/d.mp3",
                             "100%.mp3",
                             "/abs/e.mp3",
                             "\xE9t\xE9.mp3",
                             "\xC3\xA9.mp3",
                             "list.m3u",
                             " blank in front.mp3",
                             "\x80.mp3",
                             "trailing.mp3 "};
    std::string text;
    for (const std::string& location : locations) {
        text += location + "\r\n";
    }
    EXPECT_EQ(Locations(M3U(text)), locations);
}

TEST(M3UPlaylistParser, BlanksAroundAURLGoAndThoseOfANameStay) {
    EXPECT_EQ(Locations(M3U("http://h/a.mp3 \n\t https://h/b.mp3\t\nname.mp3 \n C: d.mp3 \nC:\\e.mp3 \n")),
              (Texts{"http://h/a.mp3", "https://h/b.mp3", "name.mp3 ", " C: d.mp3 ", "C:\\e.mp3 "}));
}

TEST(M3UPlaylistParser, TextOf16BitUnitsIsReadInEitherOrder) {
    for (const bool fBigEndian : {false, true}) {
        for (const std::string end : {"\n", "\r\n", "\r"}) {
            const std::string text = WithLineEnds(
                "#EXTM3U\n#EXTINF:7 a=\"b\",A\xC3\xA9\xF0\x9F\x98\x80\na.mp3\n\n"
                "#EXTVLCOPT:x\nhttp://h/b.mp3 \n\xE0\xA8\x8A\xC4\x8A.mp3", // no LF: U+0A0A, U+010A
                end);
            const PlaylistEntries entries = M3U(InUtf16(text, fBigEndian));
            ASSERT_EQ(Locations(entries), (Texts{"a.mp3", "http://h/b.mp3", "\xE0\xA8\x8A\xC4\x8A.mp3"}));
            EXPECT_EQ(entries[0].mTitle, "A\xC3\xA9\xF0\x9F\x98\x80");
            EXPECT_EQ(entries[0].mDuration, 7U);
            EXPECT_EQ(entries[0].mSpecificTags, "a=\"b\"");
            EXPECT_EQ(entries[1].mSpecificTags, "#EXTVLCOPT:x");
            EXPECT_EQ(entries[0].mStreamPos, 2 + 2 * (7 + end.size()));
        }
    }
    EXPECT_EQ(Locations(M3U("a.mp3\n\xFF\xFE.mp3\n")), (Texts{"a.mp3", "\xFF\xFE.mp3"}));
    EXPECT_EQ(Locations(M3U("\xFF\xFE")), Texts{});
    EXPECT_EQ(Locations(M3U("\xFF\xFE"
                            "a")),
              Texts{}); // half a unit is none
    EXPECT_EQ(Locations(M3U(std::string("\xFF\xFE"
                                        "a\0b",
                                        5))),
              Texts{"a"});
    EXPECT_EQ(Locations(M3U(std::string("\xFF\xFE"
                                        "a\0\x00\xD8"
                                        "b\0",
                                        8))),
              Texts{"a\xEF\xBF\xBD"
                    "b"});
}

TEST(M3UPlaylistParser, LineOf16BitUnitsAtTheLimitIsRead) {
    for (const std::size_t more : {0U, 1U}) {
        const std::string longest(kPlaylist_MaxLine / 2 + more, 'x');
        for (const std::string end : {"\n", "\r\n", "\r", ""}) {
            const ezStreamOwner stream = MemoryPlaylist(InUtf16("a\n" + longest + end, true));
            M3UPlaylistParser reader(stream.get());
            EXPECT_EQ(Locations(WalkFrom(reader, 0)), more == 0 ? (Texts{"a", longest}) : Texts{"a"});
        }
    }
}

TEST(M3UPlaylistParser, HLSIn16BitUnitsIsHLS) {
    const ezStreamOwner stream =
        MemoryPlaylist(InUtf16("#EXTM3U\r\n#EXT-X-TARGETDURATION:9\r\na\r\n", false));
    EXPECT_TRUE(M3UPlaylistParser(stream.get()).IsHLS());
}

TEST(M3UPlaylistParser, BackslashesOfAPlaylistFromAServerPartFolders) {
    const ezStreamOwner stream = MemoryPlaylist("", "https://h:8443/m/lists/list.m3u");
    M3UPlaylistParser reader(stream.get());
    EXPECT_EQ(Str(reader.GetFullURLFor("..\\a b\\c.mp3?d=\\")), "https://h:8443/m/a%20b/c.mp3?d=%5C");
    EXPECT_EQ(Str(reader.GetFullURLFor("\\root.mp3")), "https://h:8443/root.mp3");
    EXPECT_EQ(Str(reader.GetFullURLFor("http://o/x\\y")), "http://o/x%5Cy");
    EXPECT_EQ(Str(reader.GetFullURLFor("c.mp3")), "https://h:8443/m/lists/c.mp3");
    for (const char* location : {"C:\\Music\\a.mp3", "\\\\srv\\share\\a.mp3"}) { // never a host of the net
        EXPECT_EQ(Str(reader.GetFullURLFor(location)), Str(reader.PlaylistParser::GetFullURLFor(location)));
    }
    EXPECT_EQ(reader.GetFullURLFor(""), "");
}

TEST(M3UPlaylistParser, NULIsAByteLikeAnyOther) {
    const std::string text("#EXTINF:1,T\0x\na\0b.mp3\nc.mp3\n", 27);
    const PlaylistEntries entries = M3U(text);
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(Str(entries[0].mTitle), std::string("T\0x", 3));
    EXPECT_EQ(Str(entries[0].mURI), std::string("a\0b.mp3", 7));
    const ezStreamOwner stream = MemoryPlaylist(text);
    EXPECT_EQ(M3UPlaylistParser(stream.get()).GetFullURLFor(entries[0].mURI), "");
}

TEST(M3UPlaylistParser, LineThatIsTooLongIsReadOverAndNeverCut) {
    for (const std::size_t size :
         {kPlaylist_MaxLine + 1, kPlaylist_MaxLine + 2, kPlaylist_MaxLine * 2, std::size_t{1000000}}) {
        for (const std::string end : {"\n", "\r\n", "\r"}) {
            std::string text = "a.mp3\n";
            text.append(size, 'x').append("\n#EXTINF:1,").append(size, 'y').append("\nb.mp3\n");
            text = WithLineEnds(text, end);
            EXPECT_EQ(Locations(M3U(text)), (Texts{"a.mp3", "b.mp3"})) << size;
        }
    }
    EXPECT_EQ(Locations(M3U("a.mp3\n" + std::string(1000000, 'x'))), (Texts{"a.mp3"}));
    EXPECT_EQ(Locations(M3U(std::string(kPlaylist_MaxLine + 1, 'x') + "\na.mp3")), (Texts{"a.mp3"}));
}

TEST(M3UPlaylistParser, LineAtTheLimitIsRead) {
    const std::string longest(kPlaylist_MaxLine, 'x');
    for (const std::string end : {"\n", "\r\n", "\r", ""}) {
        EXPECT_EQ(Locations(M3U(std::string("a\n").append(longest).append(end))), (Texts{"a", longest}));
    }
}

TEST(M3UPlaylistParser, HLSHasNoEntriesFromAnyPosition) {
    const Texts playlists = {
        "#EXTM3U\n#EXT-X-TARGETDURATION:10\n#EXTINF:9.009,\nfirst.ts\n#EXTINF:9,\nsecond.ts\n#EXT-X-"
        "ENDLIST\n",
        "#EXTM3U\n#EXT-X-STREAM-INF:BANDWIDTH=1280000\nlow/index.m3u8\n",
        "\xEF\xBB\xBF#EXTM3U\r\n#EXT-X-MEDIA:TYPE=AUDIO\r\n#EXT-X-VERSION:3\r\na.m3u8\r\n",
        "#EXTM3U\n#EXTINF:9,\nfirst.ts\n#ext-x-targetduration:10\nsecond.ts"};
    for (const std::string& text : playlists) {
        EXPECT_TRUE(M3U(text).empty()) << text;
        const ezStreamOwner stream = MemoryPlaylist(text);
        M3UPlaylistParser reader(stream.get());
        EXPECT_TRUE(reader.IsHLS()) << text;
    }
}

TEST(M3UPlaylistParser, SongsAreNoHLS) {
    for (const char* text : {"", "a.mp3\n", "#EXTM3U\n#EXTINF:1,A\na.mp3\n", "#EXT-X-VERSION:3\na.mp3\n",
                             "#EXTINF:1,#EXT-X-TARGETDURATION:\na.mp3\n", "EXT-X-STREAM-INF:.mp3\n"}) {
        const ezStreamOwner stream = MemoryPlaylist(text);
        M3UPlaylistParser reader(stream.get());
        EXPECT_FALSE(reader.IsHLS()) << text;
    }
}

TEST(M3UPlaylistParser, HLSIsRecognisedOnceItsStreamRecovers) {
    const std::string text = "#EXTM3U\n#EXTINF:9,\nfirst.ts\n#EXT-X-TARGETDURATION:10\nsecond.ts\n";
    for (std::size_t failing = 0; failing < text.find("10\n"); ++failing) {
        ScriptedStream* stream = new ScriptedStream(text, ScriptedStream::kNever, failing);
        const ezStreamOwner owner(stream);
        M3UPlaylistParser reader(stream);
        EXPECT_FALSE(reader.IsHLS()) << failing;
        stream->SetFailingAt(ScriptedStream::kNever);
        EXPECT_TRUE(WalkFrom(reader, 0).empty()) << failing;
        PlaylistParserEntry entry = SomeEntry();
        EXPECT_FALSE(reader.FetchEntryAtIndex(0, &entry)) << failing;
        EXPECT_TRUE(reader.IsHLS()) << failing;
    }
}

TEST(M3UPlaylistParser, LookForHLSLeavesAWalkWhereItWas) {
    const ezStreamOwner stream = MemoryPlaylist("a.mp3\nb.mp3\nc.mp3\n");
    M3UPlaylistParser reader(stream.get());
    ASSERT_TRUE(reader.SeekBytes(6));
    EXPECT_FALSE(reader.IsHLS());
    PlaylistEntries entries;
    reader.ParseAll(sCollect, &entries);
    EXPECT_EQ(Locations(entries), (Texts{"b.mp3", "c.mp3"}));
}

TEST(M3UPlaylistParser, LookForHLSIsBoundedAndDoneOnce) {
    ScriptedStream* stream = new ScriptedStream(std::string(1000000, '\n') + "#EXT-X-TARGETDURATION:1\na\n");
    const ezStreamOwner owner(stream);
    M3UPlaylistParser reader(stream);
    EXPECT_FALSE(reader.IsHLS());
    const std::size_t looked = stream->GetBytes();
    EXPECT_LE(looked, 2 * kPlaylist_HLSLook);
    EXPECT_FALSE(reader.IsHLS());
    EXPECT_EQ(stream->GetBytes(), looked);
}

TEST(M3UPlaylistParser, IndexesAgreeInLongPlaylistsOfEveryKindOfLine) {
    const Texts lines = {"song.mp3",
                         "#EXTINF:5,Title",
                         "# comment",
                         "",
                         "  indented.mp3",
                         "\t#EXTINF:6,T",
                         std::string(9000, 'l'),
                         "\xE9.mp3",
                         "#EXTGRP:a group",
                         "   "};
    std::uint32_t random = 1;
    for (const std::string end : {"\n", "\r\n", "\r"}) {
        for (const std::size_t kinds : {2U, 4U, 6U, 10U}) { // the first ones alone are passed by at once
            std::string text;
            while (text.size() < 40000) {
                random = random * 1664525 + 1013904223;
                text += lines[(random >> 16) % kinds] + end;
            }
            const ezStreamOwner stream = MemoryPlaylist(text);
            M3UPlaylistParser reader(stream.get());
            const PlaylistEntries plain = WalkFrom(reader, 0);
            ASSERT_GT(plain.size(), 10U);
            CheckChain(plain);
            CheckFetches(reader, plain, 1);
        }
    }
}

TEST(M3UPlaylistParser, FetchReadsOnlyWhatIsAroundItsEntry) {
    const std::string text = ManyEntries(100000);
    ScriptedStream* stream = new ScriptedStream(text);
    const ezStreamOwner owner(stream);
    M3UPlaylistParser reader(stream);
    EXPECT_FALSE(reader.IsHLS());
    const std::size_t looked = stream->GetBytes();
    PlaylistParserEntry entry;
    ASSERT_TRUE(reader.FetchEntryAtPos(text.find("#EXTINF:", text.size() / 2), &entry));
    EXPECT_EQ(stream->GetBytes(), looked + kPlaylist_FirstBlock);
    while (reader.FetchNextEntry(&entry)) {
    }
    EXPECT_EQ(entry.mTitle, "Artist - Title 99999");
    EXPECT_LE(stream->GetBytes(), looked + text.size() / 2 + kPlaylist_LastBlock); // nothing is read twice
}

TEST(M3UPlaylistParser, LongStretchesOfCommentsCostNothingTwice) {
    const std::string comments(2000000, '\n');
    const std::string text = "a.mp3\n" + comments + "b.mp3\n" + comments + "c.mp3\n";
    ScriptedStream* stream = new ScriptedStream(text);
    const ezStreamOwner owner(stream);
    M3UPlaylistParser reader(stream);
    EXPECT_EQ(Locations(WalkFrom(reader, 0)), (Texts{"a.mp3", "b.mp3", "c.mp3"}));
    EXPECT_LE(stream->GetBytes(), text.size() + 2 * kPlaylist_HLSLook);
}

TEST(M3UPlaylistParser, StreamThatGivesLittleAtATimeReadsTheSame) {
    const std::string text = "\xEF\xBB\xBF#EXTM3U\r\n#EXTINF:1,A\r\na.mp3\rb.mp3\n\r\n#EXTGRP:x\r\nc.mp3\r\n";
    const PlaylistEntries expected = M3U(text);
    ASSERT_EQ(expected.size(), 3U);
    for (std::size_t maximum = 1; maximum < 9; ++maximum) {
        const ezStreamOwner stream(new ScriptedStream(text, maximum));
        M3UPlaylistParser reader(stream.get());
        EXPECT_EQ(CheckAgreement(reader, text.size()), expected) << maximum;
    }
}

TEST(M3UPlaylistParser, StreamThatFailsInTheMiddleEndsTheWalkBeforeTheCutLine) {
    const std::string text = "#EXTINF:1,A\na.mp3\n#EXTINF:2,B\nb.mp3\nc.mp3\n";
    for (std::size_t failing = 0; failing <= text.size(); ++failing) {
        const ezStreamOwner stream(new ScriptedStream(text, ScriptedStream::kNever, failing));
        M3UPlaylistParser reader(stream.get());
        const PlaylistEntries entries = CheckAgreement(reader, text.size());
        const std::size_t whole = (failing >= text.find("#EXTINF:2") ? 1U : 0U) +
                                  (failing >= text.find("c.mp3") ? 1U : 0U) +
                                  (failing >= text.size() ? 1U : 0U);
        EXPECT_EQ(entries.size(), whole) << failing;
    }
}

TEST(M3UPlaylistParser, StreamThatRecoversIsReadOn) {
    ScriptedStream* stream = new ScriptedStream("a.mp3\nb.mp3\n", ScriptedStream::kNever, 8);
    const ezStreamOwner owner(stream);
    M3UPlaylistParser reader(stream);
    EXPECT_EQ(Locations(WalkFrom(reader, 0)), (Texts{"a.mp3"}));
    stream->SetFailingAt(ScriptedStream::kNever);
    EXPECT_EQ(Locations(WalkFrom(reader, 0)), (Texts{"a.mp3", "b.mp3"}));
}

TEST(M3UPlaylistParser, StreamThatCannotBeSoughtHasNoEntriesAndLeavesThemAlone) {
    ScriptedStream* stream = new ScriptedStream("a.mp3\nb.mp3\n");
    const ezStreamOwner owner(stream);
    stream->SetSeekable(false);
    M3UPlaylistParser reader(stream);
    PlaylistParserEntry entry = SomeEntry();
    EXPECT_FALSE(reader.SeekBytes(0));
    EXPECT_FALSE(reader.FetchEntryAtPos(0, &entry));
    EXPECT_FALSE(reader.FetchEntryAtIndex(0, &entry));
    EXPECT_FALSE(reader.IsHLS());
    EXPECT_EQ(entry, SomeEntry());
}

TEST(M3UPlaylistParser, TakesItsPlaceFromTheURIOfTheStream) {
    struct Case {
        const char* mURI;
        const char* mFilePath;
        const char* mURL; ///< of "x y.mp3"
    };
    const Case cases[] = {
        {"/music/list.m3u", "/music/list.m3u", "file:///music/x%20y.mp3"},
        {"http://host/a/list.m3u?q", "", "http://host/a/x%20y.mp3"},
        {"https://host:8443/a/list.m3u", "", "https://host:8443/a/x%20y.mp3"},
        {"file://srv/my%20share/list.m3u", "\\\\srv\\my share\\list.m3u", "file://srv/my%20share/x%20y.mp3"},
        {"file://LocalHost/m/list.m3u", "/m/list.m3u", "file:///m/x%20y.mp3"},
        {"HTTPS://host/list.m3u", "", "HTTPS://host/x%20y.mp3"},
        {"file:///my%20music/list.m3u", "/my music/list.m3u", "file:///my%20music/x%20y.mp3"},
        {"C:\\Music\\list.m3u", "C:\\Music\\list.m3u", "file:///C:/Music/x%20y.mp3"},
    };
    for (const Case& item : cases) {
        const ezStreamOwner stream = MemoryPlaylist("x y.mp3\n", item.mURI);
        M3UPlaylistParser reader(stream.get());
        EXPECT_EQ(Str(reader.GetFilePath().GetFullPath()), item.mFilePath) << item.mURI;
        EXPECT_EQ(Str(reader.GetFullURLFor("x y.mp3")), item.mURL) << item.mURI;
        EXPECT_EQ(reader.GetMimeType(), "audio/x-mpegurl");
    }
}
