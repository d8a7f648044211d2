#include "Announce.h"

#include "support/TemporaryFolder.h"

#include "ezFormats/ProfileRules.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <string>
#include <vector>

namespace {

using Json = nlohmann::json;

constexpr const char* kRules = "ProfileRules.txt";
constexpr const char* kNone = "# nothing has a profile\n";
constexpr const char* kOwn = "JPEG_RES_320_240 image/jpeg width=320 height=240\n";
constexpr const char* kPicture = EZ_SAMPLES "/pictures/harbour.jpg";
constexpr const char* kIni = "mediaCTRLMediaTypes.ini";

/// The 4th field that a picture is announced with, under these options.
std::string DlnaOf(std::vector<std::string> anArguments) {
    anArguments.insert(anArguments.end(), {"--json", kPicture});
    const ProgramResult result = RunTool(anArguments);
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mError, "");
    return Json::parse(result.mOut).value("dlna", "");
}

std::string Field(const std::string& aProfile) {
    const std::string name = aProfile.empty() ? "" : "DLNA.ORG_PN=" + aProfile + ";";
    return name + "DLNA.ORG_OP=01" + (aProfile.empty() ? "" : ";DLNA.ORG_FLAGS=00D0" + std::string(28, '0'));
}

std::string ConfiguredFolder(const TemporaryFolder& aFolder) {
    std::filesystem::copy_file(std::string(EZ_SAMPLES "/") + kIni, aFolder.Path(kIni));
    return aFolder.GetPath();
}

} // namespace

TEST(ProfilesVerb, WithoutAFileShowsTheBuiltInTableWhichIsATableToStartFrom) {
    const ProgramResult result = RunTool({"profiles"});
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mError, "");
    EXPECT_EQ(result.mOut, ProfileRules::BuiltInText());
    const TemporaryFolder folder;
    folder.Write("own", result.mOut);
    const ProgramResult checked = RunTool({"profiles", folder.Path("own")});
    EXPECT_EQ(checked.mStatus, 0);
    EXPECT_EQ(checked.mOut, folder.Path("own") + ": problems: 0\n");
}

TEST(ProfilesVerb, NamesTheProblemsOfEachFileByLine) {
    const TemporaryFolder folder;
    folder.Write("bad", "MP4 audio/mpeg\n\nJPEG_SM image/jpeg wide=1\n");
    folder.Write("good", kOwn);
    const ProgramResult result =
        RunTool({"profiles", folder.Path("bad"), folder.Path("absent"), folder.Path("good")});
    EXPECT_EQ(result.mStatus, 1);
    EXPECT_EQ(result.mOut, folder.Path("bad") + ":1: DLNA knows no profile \"MP4\"\n" + folder.Path("bad") +
                               ":3: no fact is named \"wide\"\n" + folder.Path("bad") + ": problems: 2\n" +
                               folder.Path("good") + ": problems: 0\n");
    EXPECT_EQ(result.mError, "ezannounce: " + folder.Path("absent") + ": No such file or directory\n");
}

TEST(ProfilesVerb, ShowsNamesSoThatATerminalTakesNoHarm) {
    const TemporaryFolder folder;
    folder.Write("a\nb", "");
    EXPECT_EQ(RunTool({"profiles", folder.Path("a\nb")}).mOut, folder.Path("a\\nb") + ": problems: 0\n");
}

TEST(ProfilesOption, ReplacesTheBuiltInRules) {
    const TemporaryFolder folder;
    folder.Write("own", kOwn);
    folder.Write("none", kNone);
    EXPECT_EQ(DlnaOf({"--config", EZ_SAMPLES}), Field("JPEG_SM"));
    EXPECT_EQ(DlnaOf({"--config", EZ_SAMPLES, "--profiles", folder.Path("own")}), Field("JPEG_RES_320_240"));
    EXPECT_EQ(DlnaOf({"--config", EZ_SAMPLES, "--profiles", folder.Path("none")}), Field(""));
}

TEST(ProfilesOption, DecidesWhatIsAdvertised) {
    const TemporaryFolder folder;
    folder.Write("own", kOwn);
    const std::string all = Announce({"capabilities"}).mOut;
    EXPECT_NE(all.find("http-get:*:audio/mpeg:DLNA.ORG_PN=MP3\n"), std::string::npos);
    EXPECT_EQ(all.find("JPEG_RES_320_240"), std::string::npos);
    const std::string own = Announce({"capabilities", "--profiles", folder.Path("own")}).mOut;
    EXPECT_NE(own.find("http-get:*:image/jpeg:DLNA.ORG_PN=JPEG_RES_320_240\nhttp-get:*:image/jpeg:*\n"),
              std::string::npos);
    EXPECT_EQ(own.find("DLNA.ORG_PN=MP3"), std::string::npos);
}

TEST(ProfilesOption, WithAProblemIsWrongUsageAndShowsNothing) {
    const TemporaryFolder folder;
    folder.Write("bad", "MP4 audio/mpeg\n");
    const ProgramResult bad = Announce({kPicture, "--profiles", folder.Path("bad")});
    EXPECT_EQ(bad.mStatus, 2);
    EXPECT_EQ(bad.mOut, "");
    EXPECT_EQ(bad.mError, "ezannounce: " + folder.Path("bad") + ":1: DLNA knows no profile \"MP4\"\n");
    const ProgramResult absent = Announce({"capabilities", "--profiles", folder.Path("absent")});
    EXPECT_EQ(absent.mStatus, 2);
    EXPECT_EQ(absent.mOut, "");
    EXPECT_EQ(absent.mError, "ezannounce: " + folder.Path("absent") + ": No such file or directory\n");
}

TEST(ProfilesFile, OfTheStateFolderGoesBeforeThatOfTheOther) {
    const TemporaryFolder config;
    const TemporaryFolder state;
    const std::vector<std::string> both = {"--config", ConfiguredFolder(config), "--state", state.GetPath()};
    EXPECT_EQ(DlnaOf(both), Field("JPEG_SM"));
    config.Write(kRules, kOwn);
    EXPECT_EQ(DlnaOf(both), Field("JPEG_RES_320_240"));
    state.Write(kRules, kNone);
    EXPECT_EQ(DlnaOf(both), Field(""));
}

TEST(ProfilesFile, ThatWasOnlyFoundAndIsBadLeavesTheBuiltInRulesInForce) {
    const TemporaryFolder config;
    ConfiguredFolder(config);
    config.Write(kRules, "MP4 audio/mpeg\n");
    const ProgramResult result = RunTool({"--config", config.GetPath(), "--json", kPicture});
    EXPECT_EQ(result.mStatus, 1);
    EXPECT_EQ(Json::parse(result.mOut).value("dlna", ""), Field("JPEG_SM"));
    const std::string path = config.Path(kRules);
    EXPECT_EQ(result.mError, "ezannounce: " + path + ":1: DLNA knows no profile \"MP4\"\nezannounce: " +
                                 path + ": not used; the built-in table of profile rules stands in for it\n");
}

TEST(ProfilesFile, IsMissedWhereALinkLeadsNowhere) {
    const TemporaryFolder config;
    ConfiguredFolder(config);
    std::filesystem::create_symlink("nowhere", config.Path(kRules));
    const ProgramResult result = RunTool({"capabilities", "--config", config.GetPath()});
    EXPECT_EQ(result.mStatus, 1);
    EXPECT_NE(result.mError.find(config.Path(kRules) + ": No such file or directory\n"), std::string::npos);
    EXPECT_NE(result.mOut, "");
}

TEST(Refusals, OfAParserAreToldInWordsAndInJson) {
    const TemporaryFolder folder;
    folder.Write("torn.png", std::string("\x89PNG\r\n\x1a\n", 8));
    const std::string words = Announce({"--explain", folder.Path("torn.png")}).mOut;
    EXPECT_NE(words.find("png (PNGParser): declined: malformed: "), std::string::npos) << words;
    const Json media = Json::parse(Announce({"--explain", "--json", folder.Path("torn.png")}).mOut);
    std::size_t told = 0;
    for (const Json& tried : media["explain"]["tried"]) {
        if (tried["parser"] == "PNGParser") {
            EXPECT_EQ(tried["result"], "declined");
            EXPECT_EQ(tried["reason"].get<std::string>().rfind("malformed: ", 0), 0U);
            ++told;
        } else {
            EXPECT_FALSE(tried.contains("reason"));
        }
    }
    EXPECT_EQ(told, 1U);
}

TEST(Refusals, AreNotMixedUpBetweenMedia) {
    const TemporaryFolder folder;
    folder.Write("a.png", std::string("\x89PNG\r\n\x1a\n", 8));
    folder.Write("b.png", "no picture at all, and long enough for a header of one");
    const std::string words = Announce({"--explain", folder.GetPath()}).mOut;
    const std::size_t second = words.find("b.png\n");
    ASSERT_NE(second, std::string::npos);
    EXPECT_EQ(words.find("declined: ", words.find("declined: ") + 1), words.find("declined: ", second));
    EXPECT_EQ(words.find("; "), std::string::npos) << words;
}

TEST(Refusals, LeaveTheMessagesThatWereAskedForAsTheyAre) {
    const TemporaryFolder folder;
    folder.Write("torn.png", std::string("\x89PNG\r\n\x1a\n", 8));
    EXPECT_EQ(Announce({"--explain", folder.Path("torn.png")}).mError.find("PNGParser"), std::string::npos);
    const std::string shown = Announce({"--explain", folder.Path("torn.png"), "--log", "debug"}).mError;
    EXPECT_NE(shown.find("PNGParser: malformed: "), std::string::npos);
}
