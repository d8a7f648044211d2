#include "ezPlaylists/detail/ASXPlaylistParser.h"

#include "companions/ezPlaylists/PlaylistKit.h"

#include "ezPlaylists/detail/Limits.h"

namespace {

using Texts = std::vector<std::string>;

PlaylistEntries ASX(const std::string& aText, const char* aURI = "http://h/list.asx") {
    return Agreed<ASXPlaylistParser>(aText, aURI);
}

} // namespace

TEST(ASXPlaylistParser, EntryIsTheFirstOfItsReferences) {
    const std::string text = "<ASX VERSION=\"3.0\">\n<TITLE>All</TITLE>\n"
                             "<ENTRY>\n<TITLE>One &amp;\n two</TITLE><AUTHOR>Me</AUTHOR>\n"
                             "<DURATION VALUE=\"00:03:25.7\"/>\n"
                             "<REF HREF=\"\"/><REF HREF=\" a.mp3 \"/><REF HREF=\"b.mp3\"/></ENTRY>\n"
                             "<ENTRY><REF HREF=\"c.mp3\"/></ENTRY></ASX>";
    const PlaylistEntries entries = ASX(text);
    ASSERT_EQ(Locations(entries), (Texts{"a.mp3", "c.mp3"}));
    EXPECT_EQ(entries[0].mTitle, "One & two");
    EXPECT_EQ(entries[0].mDuration, 205U);
    EXPECT_EQ(entries[0].mSpecificTags, "author=Me");
    EXPECT_EQ(entries[0].mStreamPos, text.find("<ENTRY>"));
    EXPECT_EQ(entries[1].mTitle, "");
    EXPECT_EQ(entries[1].mDuration, 0U);
    EXPECT_EQ(entries[1].mSpecificTags, "");
    EXPECT_EQ(entries[1].mStreamPos, text.find("<ENTRY><REF"));
}

TEST(ASXPlaylistParser, CaseQuotesAndAmpersandsMayBeWrong) {
    const PlaylistEntries entries =
        ASX("<asx version=3.0><Entry><title>Tom & Jerry</TITLE><Ref Href=http://h/a?b=1&c=2 /></eNTRY>"
            "<ENTRY><PARAM NAME=x VALUE=y><ref href='b.mp3'></entry></Asx>");
    ASSERT_EQ(Locations(entries), (Texts{"http://h/a?b=1&c=2", "b.mp3"}));
    EXPECT_EQ(entries[0].mTitle, "Tom & Jerry");
}

TEST(ASXPlaylistParser, BaseIsPutBeforeRelativeLocations) {
    EXPECT_EQ(Locations(ASX("<asx><base href='http://h/m'/><entry><ref href='a b.mp3'/></entry>"
                            "<entry><ref href='mms://o/x'/></entry><entry><ref href='/y'/></entry>"
                            "<entry><base href='http://i/'/><ref href='../z'/></entry>"
                            "<entry><ref href='c'/></entry><entryref href='d.asx'/></asx>")),
              (Texts{"http://h/m/a%20b.mp3", "mms://o/x", "http://h/y", "http://i/z", "http://h/m/c",
                     "http://h/m/d.asx"}));
    EXPECT_EQ(Locations(ASX("<asx><base href='C:\\Music'/><entry><ref href='a b.mp3'/></entry>"
                            "<entry><ref href='D:\\x.mp3'/></entry></asx>")),
              (Texts{"C:\\Music/a b.mp3", "D:\\x.mp3"}));
    EXPECT_EQ(Locations(ASX("<asx><base href='" + std::string(3000, 'x') +
                            "/'/><entry><ref href='a'/></entry></asx>")),
              Texts{"a"});
}

TEST(ASXPlaylistParser, WindowsPathUnderABaseThatIsAURLStays) {
    EXPECT_EQ(Locations(ASX("<asx><base href='http://h/m/'/><entry><ref href='D:\\x y.mp3'/></entry>"
                            "<entry><ref href='d:/x.mp3'/></entry>"
                            "<entry><ref href='\\\\srv\\share\\x.mp3'/></entry>"
                            "<entry><ref href='..\\a\\b.mp3'/></entry></asx>")),
              (Texts{"D:\\x y.mp3", "d:/x.mp3", "\\\\srv\\share\\x.mp3", "http://h/a/b.mp3"}));
}

TEST(ASXPlaylistParser, BackslashesOfAPlaylistFromAServerPartFolders) {
    const ezStreamOwner stream = MemoryPlaylist("", "https://h/m/lists/list.asx");
    ASXPlaylistParser reader(stream.get());
    EXPECT_EQ(Str(reader.GetFullURLFor("..\\a b\\c.mp3")), "https://h/m/a%20b/c.mp3");
}

TEST(ASXPlaylistParser, LastSlashOfAnUnquotedURLOfAFolderIsItsOwn) {
    EXPECT_EQ(
        Locations(ASX("<asx><entry><ref href=http://h/a/></entry><entry><ref href=mms://h.i/></entry>"
                      "<entry><ref href=http://h/a.mp3/></entry><entry><ref href=b.mp3/></entry></asx>")),
        (Texts{"http://h/a/", "mms://h.i/", "http://h/a.mp3", "b.mp3"}));
}

TEST(ASXPlaylistParser, OfTwoTitlesTheFirstThatSaysSomethingCounts) {
    const PlaylistEntries entries =
        ASX("<asx><entry><title> </title><title>A<![CDATA[B]]></title><title>C</title><author>D</author>"
            "<author>E</author><ref href='a'/></entry><entry><title>F</title><ref href='b'/></entry></asx>");
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].mTitle, "AB");
    EXPECT_EQ(entries[0].mSpecificTags, "author=D");
    EXPECT_EQ(entries[1].mTitle, "F");
}

TEST(ASXPlaylistParser, OtherPlaylistIsListedAndNotFollowed) {
    const PlaylistEntries entries = ASX("<asx><entryref href='list.asx'/><entryref/></asx>");
    ASSERT_EQ(Locations(entries), Texts{"list.asx"}); // it names itself
    EXPECT_EQ(entries[0].mSpecificTags, "entryref");
}

TEST(ASXPlaylistParser, OldFormIsASectionOfReferences) {
    const std::string text =
        "[Reference]\r\nRef1=http://h/a.asf\r\nREF2 = b.asf\r\nRefX=c\r\nRef=d\r\nRef3=\r\n"
        "[Other]\r\nRef4=e\r\n";
    const PlaylistEntries entries = ASX(text);
    ASSERT_EQ(Locations(entries), (Texts{"http://h/a.asf", "b.asf"}));
    EXPECT_EQ(entries[1].mStreamPos, text.find("REF2"));
}

TEST(ASXPlaylistParser, LocalPathsBecomeFileURLs) {
    const ezStreamOwner stream =
        MemoryPlaylist("<asx><entry><ref href='..\\a b.mp3'/></entry></asx>", "/music/lists/list.asx");
    const std::unique_ptr<PlaylistParser> reader(ASXPlaylistParser::sBuild(stream.get()));
    PlaylistParserEntry entry;
    ASSERT_TRUE(reader->FetchEntryAtIndex(0, &entry));
    EXPECT_EQ(reader->GetFullURLFor(entry.mURI), "file:///music/a%20b.mp3");
    EXPECT_EQ(reader->GetMimeType(), "video/x-ms-asx");
}

TEST(ASXPlaylistParser, EveryEncodingHasThePositionsOfItsBytes) {
    const std::string ascii =
        "<asx><entry><title>Caf#</title><ref href='a'/></entry><entry><ref href='b'/></entry>";
    std::string latin = ascii;
    latin.replace(latin.find('#'), 1, "\xE9");
    PlaylistEntries entries = ASX(latin);
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].mTitle, "Caf\xC3\xA9");
    EXPECT_EQ(entries[1].mStreamPos, ascii.rfind("<entry>"));
    std::string utf16 = "\xFF\xFE";
    for (const char character : latin) {
        utf16 += character;
        utf16 += '\0';
    }
    entries = ASX(utf16);
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].mTitle, "Caf\xC3\xA9");
    EXPECT_EQ(entries[1].mStreamPos, 2 + 2 * ascii.rfind("<entry>"));
}

TEST(ASXPlaylistParser, EntryThatIsNotWholeIsNone) {
    const std::string text = "<asx><entry><ref href='a'/></entry><entry><ref href='http://h/bb'/></entry>";
    const std::size_t first = text.find("<entry><ref href='h");
    for (std::size_t size = 0; size < text.size(); ++size) {
        EXPECT_EQ(ASX(text.substr(0, size)).size(), size >= first ? 1U : 0U) << size;
    }
    EXPECT_EQ(Locations(ASX("<asx><entry><ref href='a'/><entry><ref href='b'/></entry>")), (Texts{"a", "b"}));
}

TEST(ASXPlaylistParser, HostileDocumentsAreHarmless) {
    EXPECT_TRUE(ASX("").empty());
    EXPECT_TRUE(ASX("<asx>").empty());
    EXPECT_TRUE(ASX("</entry></asx>").empty());
    EXPECT_TRUE(ASX("<asx><ref href='outside'/></asx>").empty());
    std::string deep;
    for (int i = 0; i < 100000; ++i) {
        deep += "<entry>";
    }
    EXPECT_TRUE(ASX(deep).empty());
    EXPECT_TRUE(ASX(std::string(1000000, '<')).empty());
    EXPECT_TRUE(ASX(std::string(1000000, '&')).empty());
    EXPECT_TRUE(ASX("<asx>" + std::string(1000000, '\0')).empty());
    EXPECT_EQ(Locations(ASX("<!DOCTYPE a [<!ENTITY x SYSTEM 'file:///etc/passwd'>]><asx><entry>"
                            "<ref href='&x;'/></entry></asx>")),
              Texts{"&x;"});
}
