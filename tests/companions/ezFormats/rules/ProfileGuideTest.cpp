#include "companions/ezFormats/rules/ProfileKit.h"

#include "ezFormats/jpeg/JPEGParser.h"
#include "ezFormats/mpegaudio/MPEGAudioParser.h"
#include "ezFormats/rules/ProfileRuleFacts.h"

#include "support/Folders.h"

#include <gtest/gtest.h>

// The examples of the guide to the table of profile rules.

namespace {

std::string Guide() {
    return ReadWholeFile(EZ_SAMPLES "/../docs/profile-rules.md");
}

/// The blocks of a kind, in their order.
std::vector<std::string> BlocksOf(const std::string& aKind) {
    const std::string guide = Guide();
    const std::string opening = "```" + aKind + "\n";
    std::vector<std::string> blocks;
    for (std::size_t start = guide.find(opening); start != std::string::npos;
         start = guide.find(opening, start)) {
        start += opening.size();
        blocks.push_back(guide.substr(start, guide.find("```\n", start) - start));
    }
    return blocks;
}

std::vector<std::string> LinesOf(const std::string& aText) {
    std::istringstream text(aText);
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);) {
        lines.push_back(line);
    }
    return lines;
}

/// The 4th field that the parser of its MIME type gives a record.
std::string FieldOf(const std::string& aRecord) {
    MPEGAudioParser audio;
    JPEGParser jpeg;
    const std::unique_ptr<ezMediaInfo> info = RecordOf(aRecord);
    FormatParser& parser =
        aRecord.find("image/") == std::string::npos ? static_cast<FormatParser&>(audio) : jpeg;
    EXPECT_TRUE(parser.AdjustDLNAInfo(info.get()));
    return Str(info->GetCString(kezInfo_DLNA, ""));
}

} // namespace

TEST(ProfileGuide, ItsTablesAreSoundAndSayWhatItSays) {
    const std::vector<std::string> tables = BlocksOf("rules");
    ASSERT_EQ(tables.size(), 6U);
    EXPECT_EQ(ProblemsOf(tables[0]), std::vector<std::string>());
    EXPECT_EQ(ProfileBy(tables[0], "mt=audio/mpeg ca=MP3 sf=44100 ac=2 ar=128000"), "MP3");
    EXPECT_EQ(ProfileBy(tables[0], "mt=audio/3gpp ca=AAC sf=44100 ac=2 ar=128000"), "AAC_ISO");
    EXPECT_EQ(ProblemsOf(tables[1]), std::vector<std::string>());
    const std::shared_ptr<const ProfileRules> announcing = ProfileRules::FromText(tables[1], nullptr);
    ASSERT_NE(announcing, nullptr);
    for (const auto& [record, type] : {std::pair("mt=video/mp4 ca=AAC ac=2", "AAC_ISO audio/mp4"),
                                       {"mt=audio/mp4 ca=AAC ac=2", "AAC_ISO "},
                                       {"mt=video/mp4 ca=AAC ac=6", " "}}) {
        const ProfileMatch match = announcing->FindMatch(*RecordOf(record));
        EXPECT_EQ(Str(match.mProfile) + " " + Str(match.mMimeType), type) << record;
    }
    EXPECT_EQ(ProblemsOf(tables[5]), std::vector<std::string>());
    const std::string picture = "mt=image/jpeg pr=baseline cr=4:2:0 ";
    EXPECT_EQ(ProfileBy(tables[5], picture + "wi=1920 he=1080"), "JPEG_RES_1920_1080");
    EXPECT_EQ(ProfileBy(tables[5], picture + "wi=1920 he=1081"), "JPEG_LRG");
    const std::vector<std::string> lines = LinesOf(tables[5]);
    EXPECT_EQ(
        ProblemsOf(lines[1] + "\n" + lines[0]),
        std::vector<std::string>{"2: this rule can never win: the one of line 1 wins whenever it would"});
}

TEST(ProfileGuide, ItsEndingsRegionsAndInferredRulesAreSound) {
    const std::vector<std::string> tables = BlocksOf("rules");
    ASSERT_EQ(tables.size(), 6U);
    EXPECT_EQ(ProblemsOf(tables[2]), std::vector<std::string>());
    EXPECT_EQ(ProfileBy(tables[2], "mt=video/mp2t ct=TS vc=MPEG2 vp=Main vl=20 wi=720 he=576 fr=25000"),
              "MPEG_TS_SD_EU_ISO");
    for (const std::string& line : LinesOf(tables[2])) {
        const bool fBuiltIn =
            line.rfind("ending", 0) != 0 || ProfileRules::BuiltInText().find(line) != line.npos;
        EXPECT_TRUE(fBuiltIn) << line;
    }
    EXPECT_EQ(ProblemsOf(tables[3]), std::vector<std::string>());
    EXPECT_EQ(ProblemsOf(tables[4]), std::vector<std::string>());
    EXPECT_NE(ProfileRules::BuiltInText().find("\ninferred off\n"), std::string_view::npos);
    EXPECT_NE(ProfileRules::BuiltInText().find("\n# region EU\n"), std::string_view::npos);
}

TEST(ProfileGuide, ItsRulesAreThoseOfTheBuiltInTable) {
    for (const std::string& line : LinesOf(BlocksOf("rules")[0])) {
        std::istringstream words(line);
        std::string profile;
        std::string types;
        std::string conditions;
        words >> profile >> types >> std::ws;
        std::getline(words, conditions);
        if (profile != "#") {
            bool fFound = false;
            for (const std::string& rule : LinesOf(std::string(ProfileRules::BuiltInText()))) {
                fFound =
                    fFound || (rule.rfind(profile + " ", 0) == 0 && rule.find(types) != std::string::npos &&
                               rule.find(conditions) != std::string::npos);
            }
            EXPECT_TRUE(fFound) << line;
        }
    }
}

TEST(ProfileGuide, ItsProblemsAreThoseOfTheCheck) {
    ASSERT_EQ(BlocksOf("problems").size(), 1U);
    ASSERT_EQ(BlocksOf("messages").size(), 1U);
    EXPECT_EQ(ProblemsOf(BlocksOf("problems")[0]), LinesOf(BlocksOf("messages")[0]));
}

TEST(ProfileGuide, ItsFieldsAreThoseOfTheParsers) {
    ASSERT_EQ(BlocksOf("announced").size(), 1U);
    const std::vector<std::string> lines = LinesOf(BlocksOf("announced")[0]);
    ASSERT_EQ(lines.size(), 10U);
    for (std::size_t i = 0; i < lines.size(); i += 2) {
        EXPECT_EQ(FieldOf(lines[i]), lines[i + 1]) << lines[i];
    }
}

TEST(ProfileGuide, ListsEveryFactByBothItsNames) {
    const std::string guide = Guide();
    for (const ProfileFact& fact : kProfileFacts) {
        const std::string key = fact.mKey.empty() ? "" : "`" + std::string(fact.mKey) + "` ";
        const std::string row = "\n| `" + std::string(fact.mName) + "` | " + key + "|";
        EXPECT_NE(guide.find(row), std::string::npos) << fact.mName;
    }
}

TEST(ProfileGuide, ConditionsOfItsTableRead) {
    const char* const conditions =
        "colours=grey,4:2:0 channels=1,2,6 width=1920- height=-640 sampling-rate=44.1k "
        "bit-rate=10M video-level=1b,0b,3.1,Low,Main frame-rate=29.97,25 "
        "size=720x480,-640x480,720x576@25,-352x288@1-15 container=TS,TTS";
    EXPECT_EQ(ProblemsOf(std::string("JPEG_SM image/jpeg ") + conditions), std::vector<std::string>());
}
