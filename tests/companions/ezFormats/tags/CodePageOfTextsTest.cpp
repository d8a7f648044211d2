#include "companions/ezFormats/ChunkBytes.h"
#include "companions/ezFormats/iso/ISOBytes.h"
#include "companions/ezFormats/ogg/OggBytes.h"

#include "ezFormats/aiff/AIFFParser.h"
#include "ezFormats/au/AUParser.h"
#include "ezFormats/caf/CAFParser.h"
#include "ezFormats/flac/FLACParser.h"
#include "ezFormats/iso/ISOMediaParser.h"
#include "ezFormats/ogg/OggParser.h"
#include "ezFormats/riff/WAVParser.h"

#include "ez/Environment.h"

#include <gtest/gtest.h>

// What texts are that are no UTF-8, whether their format states UTF-8 or nothing: of the operator's code page
// wherever they stand.

namespace {

using namespace std::string_literals;

/// The title of a file, read with a code page in the environment.
template <typename Parser>
std::string TitleIn(const char* aCodePage, const std::string& aBytes) {
    ezEnvironment environment;
    environment.SetTextCodePage(aCodePage);
    Parser parser;
    parser.SetEnvironmentInfo(environment.Get());
    AwkwardStream stream(aBytes, Delivery());
    return pictures::ValueOf(DumpRecord(Record(parser.Parse(stream)).get()), "title");
}

struct Row {
    const char* mPlace;
    std::string (*mTitle)(const char* aCodePage, const std::string& aBytes);
    std::string (*mFile)(const std::string& aTitle);
};

const Row kRows[] = {
    {"comments of FLAC", TitleIn<FLACParser>,
     [](const std::string& aTitle) {
         return flac::File(flac::Stream(), FlacBlock(4, Comments({"title=" + aTitle})), "frames");
     }},
    {"comments of Ogg", TitleIn<OggParser>,
     [](const std::string& aTitle) { return ogg::Vorbis("", {"title=" + aTitle}); }},
    {"list of WAV", TitleIn<WAVParser>,
     [](const std::string& aTitle) {
         return chunks::Riff(chunks::Chunk("fmt ", chunks::Fmt().Bytes()) + chunks::Info({{"INAM", aTitle}}) +
                             chunks::Chunk("data", "sound!"));
     }},
    {"name of AIFF", TitleIn<AIFFParser>,
     [](const std::string& aTitle) {
         const std::string sound = Big(1, 2) + Big(3, 4) + Big(16, 2) + "\x40\x0B\xFA\0\0\0\0\0\0\0"s;
         const std::string all = "AIFF" + chunks::BigChunk("NAME", aTitle) + chunks::BigChunk("COMM", sound) +
                                 chunks::BigChunk("SSND", Big(0, 8) + "sound!");
         return "FORM" + Big(all.size(), 4) + all;
     }},
    {"annotation of AU", TitleIn<AUParser>,
     [](const std::string& aTitle) {
         const std::string text = "title=" + aTitle;
         return ".snd" + Big(24 + text.size(), 4) + Big(6, 4) + Big(3, 4) + Big(8000, 4) + Big(1, 4) + text +
                "sound!";
     }},
    {"information of CAF", TitleIn<CAFParser>,
     [](const std::string& aTitle) {
         const std::string info = Big(1, 4) + "title\0"s + aTitle + "\0"s;
         const std::string desc =
             Big(0x40BF400000000000, 8) + "lpcm" + Big(0, 4) + Big(2, 4) + Big(1, 4) + Big(1, 4) + Big(16, 4);
         return "caff\0\1\0\0desc"s + Big(desc.size(), 8) + desc + "info" + Big(info.size(), 8) + info +
                "data" + Big(10, 8) + Big(0, 4) + "sound!";
     }},
    {"items of iTunes", TitleIn<ISOMediaParser>,
     [](const std::string& aTitle) {
         return iso::File({iso::Track()}, iso::Items(iso::Item("\xA9nam", aTitle)));
     }},
    {"assets of 3GPP", TitleIn<ISOMediaParser>,
     [](const std::string& aTitle) {
         return iso::File({iso::Track()}, iso::Box("udta", iso::FullBox("titl", Big(0x15C7, 2) + aTitle)));
     }},
    {"phrases of QuickTime", TitleIn<ISOMediaParser>,
     [](const std::string& aTitle) { // in a packed language, so not in the Macintosh's letters
         return iso::File({iso::Track()}, iso::Box("udta", iso::Box("\xA9nam", Big(aTitle.size(), 2) +
                                                                                   Big(0x15C7, 2) + aTitle)));
     }},
};

} // namespace

TEST(CodePageOfTexts, IsTheOperatorsInEveryFormat) {
    for (const Row& row : kRows) {
        const std::string file = row.mFile("\xCF\xF0"); // P and R of code page 1251
        EXPECT_EQ(row.mTitle("1251", file), "\"\xD0\x9F\xD1\x80\"") << row.mPlace;
        EXPECT_EQ(row.mTitle("", file), "\"\xC3\x8F\xC3\xB0\"") << row.mPlace;
        EXPECT_EQ(row.mTitle("1251", row.mFile("\xD0\x9F")), "\"\xD0\x9F\"") << row.mPlace << ", in UTF-8";
    }
}
