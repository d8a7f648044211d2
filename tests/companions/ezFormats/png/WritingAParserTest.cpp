#include "support/Folders.h"
#include "support/Guide.h"
#include "support/WholeFile.h"

#include <gtest/gtest.h>

// The guide for writers of parsers shows the PNG parser.

namespace {

std::string Source(const std::string& aName) {
    std::string text = ReadWholeFile(EZ_SAMPLES "/../" + aName);
    EXPECT_FALSE(text.empty()) << aName;
    return text;
}

const std::string kGuide = Source("docs/adding-a-parser.md");

} // namespace

TEST(WritingAParser, GuideShowsCodeAsItIs) {
    const std::vector<std::string> sources = {Source("companions/ezFormats/png/PNGParser.h"),
                                              Source("companions/ezFormats/png/PNGParser.cpp"),
                                              Source("companions/ezFormats/png/PNGLimits.h"),
                                              Source("companions/ezFormats/FormatParsers.h"),
                                              Source("fuzz/fuzz_format_png.cpp"),
                                              Source("tests/companions/ezFormats/png/PNGParserTest.cpp")};
    const std::vector<std::string> blocks = GuideBlocks(kGuide, "cpp");
    for (const std::string& block : blocks) {
        EXPECT_EQ(CountOfTextsWith(sources, block), 1U) << block;
    }
    EXPECT_GE(blocks.size(), 8U);
}

TEST(WritingAParser, GuideShowsHeaderAndSourceWhole) {
    const std::vector<std::string> blocks = GuideBlocks(kGuide, "cpp");
    for (const char* name :
         {"companions/ezFormats/png/PNGParser.h", "companions/ezFormats/png/PNGParser.cpp"}) {
        const std::string source = Source(name);
        std::size_t at = 0;
        for (const std::string& block : blocks) { // in the order of the source, with blank lines between
            const std::size_t start = source.find_first_not_of('\n', at);
            at = start != std::string::npos && source.compare(start, block.size(), block) == 0
                     ? start + block.size()
                     : at;
        }
        EXPECT_EQ(source.substr(at), "") << name;
    }
}

TEST(WritingAParser, GuideShowsRowsAsTheyAre) {
    const std::vector<std::string> tables = {Source("tests/data/formats/harbour.png.expected"),
                                             Source("companions/ezFormats/rules/BuiltInProfileRules.cpp"),
                                             Source("samples/mediaCTRLMediaTypes.ini")};
    const std::vector<std::string> blocks = GuideBlocks(kGuide, "text");
    for (const std::string& block : blocks) {
        EXPECT_EQ(CountOfTextsWith(tables, block), 1U) << block;
    }
    EXPECT_EQ(blocks.size(), 3U);
}
