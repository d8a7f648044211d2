#include "examples/playlist-reader/LineListParser.h"

#include "PlaylistKit.h"

#include "ez/PlaylistParserFactory.h"

#include <fstream>
#include <iterator>

// The reader that the guide for writers of readers shows.

namespace {

std::string ReadFile(const char* aPath) {
    std::ifstream file(aPath, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

} // namespace

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
    const std::string example = ReadFile(EZ_SAMPLES "/../examples/playlist-reader/LineListParser.h");
    const std::string guide = ReadFile(EZ_SAMPLES "/../docs/writing-a-playlist-reader.md");
    ASSERT_FALSE(example.empty());
    EXPECT_NE(guide.find("```cpp\n" + example + "```\n"), std::string::npos);
}
