#include "examples/playlist-reader/LineListParser.h"

#include "PlaylistKit.h"

#include "ez/PlaylistParserFactory.h"

#include "support/Folders.h"
#include "support/Guide.h"
#include "support/WholeFile.h"

#include <algorithm>

// The reader that the guide for writers of readers shows.

TEST(WritingAReader, ExampleAgreesWithItselfFromEveryPosition) {
    const std::string text = "#One\na.mp3\n\nb.mp3\n#Two\n#Three\nc d.mp3\n#no location";
    const PlaylistEntries entries = Agreed<LineListParser>(text, "/music/some.lst");
    ASSERT_EQ(Locations(entries), (std::vector<std::string>{"a.mp3", "b.mp3", "c d.mp3"}));
    EXPECT_EQ(entries[0].mTitle, "One");
    EXPECT_EQ(entries[2].mTitle, "Three");
    EXPECT_TRUE(Agreed<LineListParser>("").empty());
    EXPECT_EQ(Agreed<LineListParser>("\n\na").size(), 1U);
}

TEST(WritingAReader, ExampleReadsLinesThatEndInCRLF) {
    const PlaylistEntries entries = Agreed<LineListParser>("#One\r\na.mp3\r\n\r\nb.mp3\r\n");
    ASSERT_EQ(Locations(entries), (std::vector<std::string>{"a.mp3", "b.mp3"}));
    EXPECT_EQ(entries[0].mTitle, "One");
}

TEST(WritingAReader, ExampleIsFoundByItsExtensionAndWaitsForItsStream) {
    PlaylistParserFactory factory;
    ASSERT_TRUE(PlaylistParser::RegisterTo<LineListParser>(&factory));
    const ezStreamOwner stream(new ArrivingStream("#T\na.mp3\nb.mp3\n"));
    const std::unique_ptr<PlaylistParser> reader(factory.NewPlaylistParser(stream.get(), "", "LST"));
    ASSERT_NE(reader, nullptr);
    EXPECT_EQ(WalkFrom(*reader, 0).size(), 2U);
    const ezStreamOwner memory = MemoryPlaylist("a", "/music/some.lst");
    const std::unique_ptr<PlaylistParser> local(
        factory.NewPlaylistParser(memory.get(), "text/x-line-list", ""));
    EXPECT_EQ(Str(local->GetFullURLFor("x y.mp3")), "file:///music/x%20y.mp3");
}

TEST(WritingAReader, GuideShowsTheExampleAsItIs) {
    const std::string example = ReadWholeFile(EZ_SAMPLES "/../examples/playlist-reader/LineListParser.h");
    ASSERT_FALSE(example.empty());
    const std::vector<std::string> blocks =
        GuideBlocks(ReadWholeFile(EZ_SAMPLES "/../docs/writing-a-playlist-reader.md"), "cpp");
    EXPECT_EQ(std::count(blocks.begin(), blocks.end(), example), 1);
}
