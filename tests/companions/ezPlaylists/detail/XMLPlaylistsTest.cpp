
#include "ezPlaylists/detail/WPLPlaylistParser.h"
#include "ezPlaylists/detail/XSPFPlaylistParser.h"

#include "companions/ezPlaylists/PlaylistKit.h"

#include "ezPlaylists/detail/Limits.h"

#include "ezPlaylists/PlaylistCut.h"

namespace {

using Texts = std::vector<std::string>;

PlaylistEntries XSPF(const std::string& aText, const char* aURI = "/music/list.xspf") {
    return Agreed<XSPFPlaylistParser>(aText, aURI);
}

PlaylistEntries WPL(const std::string& aText) {
    return Agreed<WPLPlaylistParser>(aText, "/music/list.wpl");
}

std::string InList(const std::string& aTracks, const std::string& anAttributes = "") {
    return "<?xml version=\"1.0\"?>\n<playlist version=\"1\"" + anAttributes +
           " xmlns=\"http://xspf.org/ns/0/\"><title>All</title><trackList>" + aTracks +
           "</trackList></playlist>\n";
}

std::string Track(const std::string& aContent) {
    return "<track>" + aContent + "</track>";
}

std::string FullURL(const char* aListURI, const char* aLocation) {
    const ezStreamOwner stream = MemoryPlaylist("", aListURI);
    return Str(XSPFPlaylistParser(stream.get()).GetFullURLFor(aLocation));
}

} // namespace

TEST(XSPFPlaylistParser, EntryIsATrackWithALocation) {
    const std::string text =
        InList("\n" +
               Track("<location> a%20b.mp3\n</location><location>c</location>"
                     "<title>A &amp; B\n C</title><creator>Me</creator>"
                     "<album>Us</album><duration>62999</duration>") +
               Track("<title>none</title>") + Track("<location/><location> </location>") +
               Track("<location>d</location>"));
    const PlaylistEntries entries = XSPF(text);
    ASSERT_EQ(Locations(entries), (Texts{"a%20b.mp3", "d"}));
    EXPECT_EQ(entries[0].mTitle, "A & B C");
    EXPECT_EQ(entries[0].mDuration, 62U);
    EXPECT_EQ(entries[0].mSpecificTags, "creator=Me\nalbum=Us");
    EXPECT_EQ(entries[0].mStreamPos, text.find("<track>"));
    EXPECT_EQ(entries[1].mTitle, "");
    EXPECT_EQ(entries[1].mDuration, 0U);
    EXPECT_EQ(entries[1].mStreamPos, text.rfind("<track>"));
}

TEST(XSPFPlaylistParser, DurationIsAWholeNumberOfMilliseconds) {
    const auto durationOf = [](const char* aText) {
        const PlaylistEntries entries =
            XSPF(InList(Track(std::string("<location>a</location><duration>") + aText + "</duration>")));
        return entries.empty() ? UINT32_MAX - 1 : entries[0].mDuration;
    };
    EXPECT_EQ(durationOf("999"), 0U);
    EXPECT_EQ(durationOf(" 1000 "), 1U);
    EXPECT_EQ(durationOf("18446744073709551615"), UINT32_MAX);
    for (const char* text : {"", "-1000", "1000.5", "1e6", "18446744073709551616"}) {
        EXPECT_EQ(durationOf(text), 0U) << text;
    }
}

TEST(XSPFPlaylistParser, BaseOfEveryElementAroundApplies) {
    EXPECT_EQ(Locations(XSPF(InList(Track("<location>a</location>") +
                                        "<track xml:base='c/d/'><location>e</location></track>" +
                                        Track("<location xml:base='http://o/p/'>q r</location>") +
                                        Track("<location>ftp://x/y</location>"),
                                    " xml:base='http://h/b/'"))),
              (Texts{"http://h/b/a", "http://h/b/c/d/e", "http://o/p/q%20r", "ftp://x/y"}));
    EXPECT_EQ(Locations(XSPF(InList(Track("<location>a%20b</location>") + Track("<location>/c</location>") +
                                        Track("<location>http://h/</location>"),
                                    " xml:base='../m/x?y/z'"))),
              (Texts{"../m/a%20b", "/c", "http://h/"}));
    EXPECT_EQ(Locations(XSPF(
                  InList(Track("<location>a</location>"), " xml:base='" + std::string(3000, 'x') + "/'"))),
              Texts{"a"});
}

TEST(XSPFPlaylistParser, ABaseAtItsBoundApplies) {
    const std::string longest = "http://h/" + std::string(2048 - 10, 'x') + "/";
    ASSERT_EQ(longest.size(), 2048U);
    for (const bool fLonger : {false, true}) {
        const std::string base = fLonger ? "http://h/y" + longest.substr(9) : longest;
        EXPECT_EQ(Locations(XSPF(InList(Track("<location>a</location>"), " xml:base='" + base + "'"))),
                  Texts{fLonger ? "a" : longest + "a"});
    }
}

TEST(XSPFPlaylistParser, ABaseOfManyStepsIsThatOfWhereTheyLead) {
    std::string steps;
    for (int i = 0; i < 300; ++i) {
        steps += "a/../";
    }
    EXPECT_EQ(Locations(XSPF(InList(Track("<location>b</location>") + Track("<location>../c</location>") +
                                        Track("<location>?d</location>") + Track("<location>/e</location>"),
                                    " xml:base='http://h/m/" + steps + "n/o'"))),
              (Texts{"http://h/m/n/b", "http://h/m/c", "http://h/m/n/o?d", "http://h/e"}));
}

TEST(XSPFPlaylistParser, BasesOfAllLocationsTogetherAreBounded) {
    const std::string base = "http://h/" + std::string(2048 - 10, 'x') + "/";
    const std::size_t fit = kPlaylist_MaxBased / base.size();
    for (const std::size_t more : {0U, 1U}) {
        std::string tracks;
        for (std::size_t i = 0; i < fit + more; ++i) {
            tracks += Track("<location>/a</location>");
        }
        const ezStreamOwner stream =
            MemoryPlaylist(InList(tracks, " xml:base='" + base + "'"), "/music/list.xspf");
        XSPFPlaylistParser reader(stream.get());
        EXPECT_EQ(WalkFrom(reader, 0).size(), fit);
        EXPECT_EQ(GetPlaylistCut(reader), more == 0 ? PlaylistCut::None : PlaylistCut::Size);
    }
}

TEST(XSPFPlaylistParser, OnlyTheFirstListAndTheFieldsOfItsTracksCount) {
    const std::string track = Track("<location>a</location>");
    EXPECT_EQ(Locations(XSPF("<playlist><x>" + track + "</x><trackList><x>" + track + "</x>" + track +
                             "</trackList><trackList>" + track + track + "</trackList></playlist>")),
              Texts{"a"});
    const PlaylistEntries entries =
        XSPF(InList(Track("<extension><title>no</title><location>no</location></extension>"
                          "<title>A<b>no</b>B</title><title>no</title><location>a</location>")));
    ASSERT_EQ(Locations(entries), Texts{"a"});
    EXPECT_EQ(entries[0].mTitle, "AB");
    EXPECT_EQ(Locations(XSPF(InList(track) + "<playlist><trackList>" + track + "</trackList></playlist>")),
              Texts{"a"});
}

TEST(XSPFPlaylistParser, WindowsPathUnderABaseThatIsAURLStays) {
    EXPECT_EQ(Locations(XSPF(
                  InList(Track("<location>C:\\a.mp3</location>") + Track("<location>\\\\s\\b</location>"),
                         " xml:base='http://h/b/'"))),
              (Texts{"C:\\a.mp3", "\\\\s\\b"}));
}

TEST(XSPFPlaylistParser, PrefixOfTheNamespaceMayBeAny) {
    EXPECT_EQ(Locations(XSPF("<x:playlist><x:trackList><x:track><x:location>a</x:location></x:track>"
                             "</x:trackList></x:playlist>")),
              Texts{"a"});
    EXPECT_TRUE(XSPF("<other><trackList><track><location>a</location></track></trackList></other>").empty());
}

TEST(XSPFPlaylistParser, LocationsAreURIsAlsoInALocalPlaylist) {
    EXPECT_EQ(FullURL("/music/lists/a.xspf", "../a%20b.mp3"), "file:///music/a%20b.mp3");
    EXPECT_EQ(FullURL("/music/lists/a.xspf", "/x/100%25.mp3"), "file:///x/100%25.mp3");
    EXPECT_EQ(FullURL("/music/lists/a.xspf", "file:///x/y.mp3"), "file:///x/y.mp3");
    EXPECT_EQ(FullURL("/music/lists/a.xspf", "http://h/../x"), "http://h/x");
    EXPECT_EQ(FullURL("/music/lists/a.xspf", "C:\\Music\\100%.mp3"), "file:///C:/Music/100%25.mp3");
    EXPECT_EQ(FullURL("/music/lists/a.xspf", ""), "");
    EXPECT_EQ(FullURL("http://h/lists/a.xspf", "../a%20b.mp3"), "http://h/a%20b.mp3");
}

TEST(XSPFPlaylistParser, EveryEncodingHasThePositionsOfItsBytes) {
    const std::string latin =
        "<?xml version='1.0' encoding='ISO-8859-1'?><playlist><trackList><track><title>\xE9\xE8"
        "</title><location>a</location></track><track><location>b</location></track>"
        "</trackList></playlist>";
    const PlaylistEntries narrow = XSPF(latin);
    ASSERT_EQ(Locations(narrow), (Texts{"a", "b"}));
    EXPECT_EQ(narrow[0].mTitle, "\xC3\xA9\xC3\xA8");
    EXPECT_EQ(narrow[1].mStreamPos, latin.rfind("<track>"));
    const std::string ascii = InList(Track("<location>a</location>"));
    EXPECT_EQ(XSPF("\xEF\xBB\xBF" + ascii)[0].mStreamPos, 3 + ascii.find("<track>"));
}

TEST(XSPFPlaylistParser, TrackThatIsNotWholeIsNone) {
    EXPECT_TRUE(XSPF("<playlist><trackList><track><location>http://h/").empty());
    EXPECT_EQ(Locations(XSPF("<playlist><trackList>" + Track("<location>a</location>") + "</wrong>")),
              Texts{"a"});
}

TEST(XSPFPlaylistParser, EndTagOfTheLastTrackIsKnownByItsNameAlone) {
    const std::string list = "<playlist><trackList><track><location>a</location>";
    EXPECT_EQ(Locations(XSPF(list + "</track\r\n >")), Texts{"a"});
    EXPECT_EQ(Locations(XSPF(list + "</track></wrong>")), Texts{"a"});
    EXPECT_TRUE(XSPF(list + "</trackX>").empty());
    EXPECT_TRUE(XSPF(list + "</trackList>").empty());
}

TEST(XSPFPlaylistParser, EntitiesOfDocumentTypesStandForThemselves) {
    std::string bomb = "<!DOCTYPE playlist [<!ENTITY a0 'lol'>";
    for (int i = 1; i < 30; ++i) {
        const std::string before = "&a" + std::to_string(i - 1) + ";";
        bomb += "<!ENTITY a" + std::to_string(i) + " '" + before + before + "'>";
    }
    bomb += "<!ENTITY x SYSTEM 'file:///etc/passwd'>]>";
    const PlaylistEntries entries =
        XSPF(bomb + InList(Track("<location>&x;</location><title>&a29;&lt;&#233;</title>")).substr(22));
    ASSERT_EQ(Locations(entries), Texts{"&x;"});
    EXPECT_EQ(entries[0].mTitle, "&a29;<\xC3\xA9");
}

TEST(XSPFPlaylistParser, WhatOthersExtendAPlaylistWithEndsNothing) {
    const std::string type = "<!DOCTYPE playlist [<!ENTITY e '<track><location>no</location></track>'>]>";
    const std::string other = "<extension application='x'><_a><\xC3\xA9 b='>'/></_a>"
                              "<![CDATA[<track></trackList>]]><!-- </track> --></extension>";
    const std::string list =
        InList(Track(other + "<location>a</location>") + Track("<location>b</location>"));
    EXPECT_EQ(Locations(XSPF(type + list)), (Texts{"a", "b"}));
}

TEST(XSPFPlaylistParser, EndTagsAreHeldAgainstTheirElementsOnTheFirstEightLevels) {
    const auto wrongOn = [](int aLevel) {
        std::string inner = "<b></wrong>";
        for (int level = aLevel - 1; level > 3; --level) {
            inner = "<a>" + inner + "</a>";
        }
        return InList(Track("<location>a</location>") + Track(inner) + Track("<location>b</location>"));
    };
    EXPECT_EQ(Locations(XSPF(wrongOn(4))), Texts{"a"});
    EXPECT_EQ(Locations(XSPF(wrongOn(8))), Texts{"a"});
    EXPECT_EQ(Locations(XSPF(wrongOn(9))), (Texts{"a", "b"}));
    // What an end tag has beside its name means nothing.
    EXPECT_EQ(Locations(XSPF(InList(Track("<location>a</location/>") + "<track></track b='>' />" +
                                    Track("<location>b</location>")))),
              (Texts{"a", "b"}));
}

TEST(XSPFPlaylistParser, PiecesOfATextCountTogether) {
    const std::string start(kPlaylist_MaxText - 1, 'x');
    EXPECT_EQ(Locations(XSPF(InList(Track("<location>" + start + "<![CDATA[y]]></location>")))),
              Texts{start + "y"});
    for (const char* rest : {"<![CDATA[yy]]>", "<![CDATA[yy]]>z"}) {
        EXPECT_EQ(Locations(XSPF(InList(Track("<location>" + start + rest + "</location>") +
                                        Track("<location>b</location>")))),
                  Texts{"b"});
    }
}

TEST(XSPFPlaylistParser, HostileDocumentsAreHarmless) {
    EXPECT_TRUE(XSPF("").empty());
    EXPECT_TRUE(XSPF(std::string(1000, '\0')).empty());
    EXPECT_TRUE(XSPF(InList("")).empty());
    EXPECT_TRUE(XSPF("<playlist/>").empty());
    std::string deep = "<playlist><trackList>";
    for (int i = 0; i < 500000; ++i) {
        deep += "<track>";
    }
    EXPECT_TRUE(XSPF(deep).empty());
    std::string tags = "<playlist><trackList>"; // of which nothing is kept
    for (int i = 0; i < 2000001; ++i) {
        tags += "<a/>";
    }
    EXPECT_EQ(Locations(XSPF(tags + Track("<location>a</location>") + "</trackList></playlist>")),
              Texts{"a"});
    std::string text =
        InList(Track("<location>a</location>") + std::string(1, '\0') + Track("<location>b</location>"));
    EXPECT_EQ(Locations(XSPF(text)), Texts{"a"});
    EXPECT_EQ(Locations(XSPF(InList(Track("<location>" + std::string(1000000, 'x') + "</location>")))),
              Texts{std::string(1000000, 'x')});
}

TEST(WPLPlaylistParser, EntryIsAMediaWithASource) {
    const std::string text =
        "<?wpl version=\"1.0\"?>\r\n<smil><head><title>T</title><media src='head.mp3'/></head><body><seq>\r\n"
        "<media src=\"..\\a &amp; b.mp3\" cid=\"{1}\"/><media cid='2'/><media src=' '/>\r\n"
        "<seq><media src=\"C:\\it&apos;s.mp3\"></media></seq><smartPlaylist version='1'/></seq>"
        "<media src='last'/></body></smil>";
    const PlaylistEntries entries = WPL(text);
    ASSERT_EQ(Locations(entries), (Texts{"..\\a & b.mp3", "C:\\it's.mp3", "last"}));
    EXPECT_EQ(entries[0].mStreamPos, text.find("<media src=\""));
    EXPECT_EQ(entries[1].mStreamPos, text.find("<media src=\"C"));
    EXPECT_EQ(entries[0].mTitle, "");
    EXPECT_EQ(entries[0].mDuration, 0U);
    const ezStreamOwner stream = MemoryPlaylist(text, "/music/lists/list.wpl");
    WPLPlaylistParser reader(stream.get());
    EXPECT_EQ(reader.GetFullURLFor(entries[0].mURI), "file:///music/a%20&%20b.mp3");
    EXPECT_EQ(reader.GetFullURLFor(entries[1].mURI), "file:///C:/it's.mp3");
}

TEST(WPLPlaylistParser, OnlyTheFirstBodyCounts) {
    const std::string body = "<body><media src='a'/></body>";
    EXPECT_EQ(Locations(WPL("<smil>" + body + "<body><media src='b'/></body></smil>")), Texts{"a"});
    EXPECT_EQ(Locations(WPL("<smil><media src='b'/>" + body + "<media src='c'/></smil>")), Texts{"a"});
    EXPECT_TRUE(WPL("<other>" + body + "</other>").empty());
}

TEST(WPLPlaylistParser, TextThatIsNotUTF8IsOfOneByteACharacter) {
    EXPECT_EQ(Locations(WPL("<smil><body><media src='\xE9'/></body></smil>")), Texts{"\xC3\xA9"});
}

TEST(WPLPlaylistParser, HostileDocumentsAreHarmless) {
    EXPECT_TRUE(WPL("").empty());
    EXPECT_TRUE(WPL("<smil/>").empty());
    EXPECT_TRUE(WPL("<smil><body/></smil>").empty());
    EXPECT_TRUE(WPL("<other><body><media src='a'/></body></other>").empty());
    std::string deep = "<smil><body>";
    for (int i = 0; i < 500000; ++i) {
        deep += "<media>";
    }
    EXPECT_TRUE(WPL(deep).empty());
    std::string attributes = "<smil><body><media";
    for (int i = 0; i < 2000001; ++i) {
        attributes += " a=''";
    }
    EXPECT_TRUE(WPL(attributes + " src='a'/></body></smil>").empty());
}
