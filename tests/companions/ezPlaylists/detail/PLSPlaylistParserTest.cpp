#include "ezPlaylists/detail/PLSPlaylistParser.h"
#include "ezPlaylists/PlaylistCut.h"

#include "companions/ezPlaylists/PlaylistKit.h"

#include "ezPlaylists/detail/Limits.h"

namespace {

using Texts = std::vector<std::string>;

PlaylistEntries PLS(const std::string& aText) {
    return Agreed<PLSPlaylistParser>(aText, "/music/list.pls");
}

} // namespace

TEST(PLSPlaylistParser, EntryIsMadeOfTheLinesOfItsNumber) {
    const std::string text = "[playlist]\n"
                             "NumberOfEntries=2\n"
                             "File1=http://host:8000/radio\n"
                             "Title1=Radio = Music\n"
                             "Length1=-1\n"
                             "\n"
                             "File2=song.mp3\n"
                             "Title2=Song\n"
                             "Length2=123\n"
                             "Version=2\n";
    const PlaylistEntries entries = PLS(text);
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].mURI, "http://host:8000/radio");
    EXPECT_EQ(entries[0].mTitle, "Radio = Music");
    EXPECT_EQ(entries[0].mDuration, 0U);
    EXPECT_EQ(entries[0].mStreamPos, text.find("File1"));
    EXPECT_EQ(entries[1].mURI, "song.mp3");
    EXPECT_EQ(entries[1].mTitle, "Song");
    EXPECT_EQ(entries[1].mDuration, 123U);
    EXPECT_EQ(entries[1].mStreamPos, text.find("File2"));
}

TEST(PLSPlaylistParser, EntriesPlayInTheOrderOfTheirNumbers) {
    const std::string text =
        "[playlist]\nTitle10=Ten\nFile10=ten\nFile9=nine\nLength2=2\nfile2=two\nFILE1=one\n";
    const PlaylistEntries entries = PLS(text);
    EXPECT_EQ(Locations(entries), (Texts{"one", "two", "nine", "ten"}));
    EXPECT_EQ(entries[0].mNextEntryStreamPos, text.find("file2"));
    EXPECT_EQ(entries[3].mTitle, "Ten");
}

TEST(PLSPlaylistParser, GapsAndWrongCountsDoNotMatter) {
    for (const char* count : {"0", "1", "99", "-1", "4000000000", "x", ""}) {
        EXPECT_EQ(Locations(PLS(std::string("[playlist]\nNumberOfEntries=") + count +
                                "\nFile3=c\nFile7=g\nTitle5=no file\nFile100=z\n")),
                  (Texts{"c", "g", "z"}));
    }
}

TEST(PLSPlaylistParser, HugeNumbersAreNumbers) {
    EXPECT_EQ(Locations(PLS("[playlist]\nFile4000000000=b\nFile18446744073709551615=c\nFile1=a\n"
                            "File18446744073709551616=too large\nFile-1=x\nFile=x\nFile1x=x\nFile 1=x\n")),
              (Texts{"a", "b", "c"}));
}

TEST(PLSPlaylistParser, LastOfTheSameKeyCounts) {
    const std::string text = "[playlist]\nFile1=a\nTitle1=A\nFile1=b\nTitle01=B\nFile1=\nFile0=zero\n";
    const PlaylistEntries entries = PLS(text);
    ASSERT_EQ(Locations(entries), (Texts{"zero", "b"}));
    EXPECT_EQ(entries[1].mTitle, "B");
    EXPECT_EQ(entries[1].mStreamPos, text.find("File1=b"));
}

TEST(PLSPlaylistParser, OnlyTheSectionCounts) {
    EXPECT_EQ(
        Locations(PLS("File1=before\n[PlayList]\nFile2=in\n[other]\nFile3=out\n[PLAYLIST]\nFile4=again\n")),
        (Texts{"in", "again"}));
    EXPECT_TRUE(PLS("File1=a\n").empty());
    EXPECT_TRUE(PLS("").empty());
    EXPECT_TRUE(PLS("[playlist]").empty());
}

TEST(PLSPlaylistParser, LinesAndEncodingsAreThoseOfM3U) {
    for (const std::string end : {"\n", "\r\n", "\r"}) {
        const PlaylistEntries entries =
            PLS(WithLineEnds("\xEF\xBB\xBF[playlist]\n; comment\n File1 = a b.mp3 \nTitle1=Caf\xE9\n\n"
                             "Length1= 12.9\nFile2=\xE9.mp3",
                             end));
        ASSERT_EQ(Locations(entries), (Texts{"a b.mp3", "\xE9.mp3"}));
        EXPECT_EQ(entries[0].mTitle, "Caf\xC3\xA9");
        EXPECT_EQ(entries[0].mDuration, 12U);
    }
}

TEST(PLSPlaylistParser, LineThatIsTooLongIsReadOverAndNeverCut) {
    const std::string text = "[playlist]\nFile1=a\nFile2=" + std::string(1000000, 'x') +
                             "\nFile3=c\nTitle3=" + std::string(100000, 'y') + "\n";
    const PlaylistEntries entries = PLS(text);
    ASSERT_EQ(Locations(entries), (Texts{"a", "c"}));
    EXPECT_EQ(entries[1].mTitle, "");
}

TEST(PLSPlaylistParser, NULIsAByteLikeAnyOther) {
    const PlaylistEntries entries = PLS(std::string("[playlist]\nFile1=a\0b\nFi\0le2=c\n", 30));
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(Str(entries[0].mURI), std::string("a\0b", 3));
}

TEST(PLSPlaylistParser, IndexIsBounded) {
    std::string text = "[playlist]\n";
    for (std::size_t i = 0; i < kPlaylist_MaxIndexed + 1000; ++i) {
        text += "File" + std::to_string(i) + "=x\n";
    }
    const ezStreamOwner stream = MemoryPlaylist(text);
    PLSPlaylistParser reader(stream.get());
    EXPECT_EQ(WalkFrom(reader, 0).size(), kPlaylist_MaxIndexed);
}

TEST(PLSPlaylistParser, TextsOfTheIndexAreBounded) {
    constexpr std::size_t kSize = 32768;
    constexpr std::size_t kCount = kPlaylist_MaxIndexedText / kSize;
    static_assert(kCount * kSize == kPlaylist_MaxIndexedText, "the last one ends at the bound");
    std::string text = "[playlist]\n";
    for (std::size_t i = 0; i < kCount; ++i) {
        text += "File" + std::to_string(i) + "=" + std::string(kSize, 'x') + "\n";
    }
    const auto cutOf = [kCount](const std::string& aText) {
        const ezStreamOwner stream = MemoryPlaylist(aText);
        PLSPlaylistParser reader(stream.get());
        EXPECT_EQ(WalkFrom(reader, 0).size(), kCount);
        return GetPlaylistCut(reader);
    };
    EXPECT_EQ(cutOf(text), PlaylistCut::None);
    EXPECT_EQ(cutOf(text + "File" + std::to_string(kCount) + "=x\n"), PlaylistCut::Size);
}

TEST(PLSPlaylistParser, StreamThatFailsInTheMiddleGivesWhatWasRead) {
    const std::string text = "[playlist]\nFile1=a.mp3\nFile2=b.mp3\nTitle1=A\n";
    for (std::size_t failing = 0; failing <= text.size(); ++failing) {
        const ezStreamOwner stream(new ScriptedStream(text, ScriptedStream::kNever, failing));
        PLSPlaylistParser reader(stream.get());
        const PlaylistEntries entries = CheckAgreement(reader, text.size());
        const std::size_t whole =
            (failing >= text.find("File2") ? 1U : 0U) + (failing >= text.find("Title1") ? 1U : 0U);
        EXPECT_EQ(entries.size(), whole) << failing;
    }
}
