#include "arguments/Arguments.h"

#include "Announce.h"
#include "support/TemporaryFolder.h"
#include "support/WholeFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

const std::string kWalk = EZ_SAMPLES "/music/morning-walk.mp3";

struct Read {
    ArgumentsResult mResult;
    Arguments mArguments;
};

Read ReadWords(std::vector<std::string> aWords) {
    aWords.insert(aWords.begin(), "ezannounce");
    std::vector<const char*> words;
    words.reserve(aWords.size());
    for (const std::string& word : aWords) {
        words.push_back(word.c_str());
    }
    Read read;
    read.mResult = ReadArguments(static_cast<int>(words.size()), words.data(), read.mArguments);
    return read;
}

std::string ErrorOf(const std::vector<std::string>& aWords) {
    const Read read = ReadWords(aWords);
    EXPECT_FALSE(read.mResult.mfRun);
    EXPECT_EQ(read.mResult.mStatus, 2);
    return read.mResult.mError;
}

using Words = std::vector<std::string>;

} // namespace

TEST(Arguments, ParseIsTheVerbWhereNoneIsNamed) {
    for (const Words& words : {Words{"a.mp3", "b"}, Words{"parse", "a.mp3", "b"}}) {
        const Read read = ReadWords(words);
        EXPECT_TRUE(read.mResult.mfRun);
        EXPECT_EQ(read.mArguments.mVerb, Verb::Parse);
        EXPECT_EQ(read.mArguments.mOperands, (Words{"a.mp3", "b"}));
    }
}

TEST(Arguments, OnlyTheFirstWordIsAVerb) {
    EXPECT_EQ(ReadWords({"a", "types", "parse"}).mArguments.mOperands, (Words{"a", "types", "parse"}));
    EXPECT_EQ(ReadWords({"types", "types"}).mArguments.mOperands, Words{"types"});
    EXPECT_EQ(ReadWords({"--config", "types", "x"}).mArguments.mVerb, Verb::Parse);
    EXPECT_EQ(ReadWords({"--ctt", "1", "capabilities"}).mArguments.mVerb, Verb::Capabilities);
}

TEST(Arguments, WhatStandsAfterTwoDashesIsAnOperand) {
    const Read read = ReadWords({"a", "--json", "--", "--json", "-x", "--", "types", ""});
    EXPECT_EQ(read.mArguments.mOperands, (Words{"a", "--json", "-x", "--", "types", ""}));
    EXPECT_TRUE(read.mArguments.mfJson);
    EXPECT_EQ(ReadWords({"--", "types"}).mArguments.mVerb, Verb::Parse);
    EXPECT_EQ(ReadWords({"types", "--", "-x"}).mArguments.mOperands, Words{"-x"});
}

TEST(Arguments, WideGoesWithTheTableOfParseOnly) {
    EXPECT_TRUE(ReadWords({"--wide", "a"}).mArguments.mfWide);
    EXPECT_FALSE(ReadWords({"a"}).mArguments.mfWide);
    EXPECT_EQ(ErrorOf({"--wide", "capabilities"}), "--wide goes with parse only");
    for (const char* option : {"--json", "--explain", "--es"}) {
        EXPECT_EQ(ErrorOf({"--wide", option, "a"}), "--wide does not go with --json, --explain and --es");
    }
}

TEST(Arguments, NamesThatLookLikeListsOrNumbersStayWhole) {
    const Words names = {"[a,b]", "{a}", "a,b", "a=b", "%", "'a'", "\"b\"", "-", "/x", "++"};
    EXPECT_EQ(ReadWords(names).mArguments.mOperands, names);
}

TEST(Arguments, OptionsStandAnywhereAndTheLastCounts) {
    const Read read = ReadWords({"--config", "a", "x", "--ctt=2", "--explain", "y", "--config", "b",
                                 "--state", "c d", "--log", "debug"});
    ASSERT_TRUE(read.mResult.mfRun);
    EXPECT_EQ(read.mArguments.mConfigFolder, "b");
    EXPECT_EQ(read.mArguments.mStateFolder, "c d");
    EXPECT_EQ(read.mArguments.mCTTContext, 2U);
    EXPECT_TRUE(read.mArguments.mfExplain);
    EXPECT_FALSE(read.mArguments.mfJson);
    EXPECT_EQ(read.mArguments.mLogLevel, 5);
    EXPECT_EQ(read.mArguments.mOperands, (Words{"x", "y"}));
}

TEST(Arguments, LogLevelsAreOneAboveTheirLines) {
    const std::vector<std::pair<std::string, int>> levels = {
        {"error", 2}, {"warning", 3}, {"info", 4}, {"debug", 5}};
    for (const auto& level : levels) {
        EXPECT_EQ(ReadWords({"x", "--log", level.first}).mArguments.mLogLevel, level.second);
    }
    EXPECT_EQ(ReadWords({"x"}).mArguments.mLogLevel, std::nullopt);
}

TEST(Arguments, ParseOptionsAreNamesOrANumber) {
    const std::vector<std::pair<std::string, int>> lists = {
        {"if-no-extension", 1},          {"if-failed", 2},           {"everytime", 4}, {"vbr-full", 8},
        {"vbr-full,if-no-extension", 9}, {"if-failed,if-failed", 2}, {"0", 0},         {"15", 15}};
    for (const auto& list : lists) {
        int options = -1;
        EXPECT_TRUE(ReadParseOptions(list.first, options)) << list.first;
        EXPECT_EQ(options, list.second) << list.first;
    }
    for (const char* list : {"", ",", "16", "-1", "if-failed,", "if-failed,1", "If-Failed", " 1", "0x1"}) {
        int options = -1;
        EXPECT_FALSE(ReadParseOptions(list, options)) << list;
    }
}

TEST(Arguments, WrongUsageIsNamed) {
    EXPECT_EQ(ErrorOf({}), "no path given");
    EXPECT_EQ(ErrorOf({"parse"}), "no path given");
    EXPECT_EQ(ErrorOf({"--json"}), "no path given");
    EXPECT_EQ(ErrorOf({"types"}), "no extension or MIME type given");
    EXPECT_EQ(ErrorOf({"capabilities", "x"}), "capabilities takes no operand");
    EXPECT_EQ(ErrorOf({"--nonsense", "x"}), "unknown option: --nonsense");
    EXPECT_EQ(ErrorOf({"x", "-q"}), "unknown option: -q");
    EXPECT_EQ(ErrorOf({"x", "--ctt", "one"}), "--ctt: not a number: one");
    EXPECT_EQ(ErrorOf({"x", "--ctt", ""}), "--ctt: not a number: ");
    EXPECT_EQ(ErrorOf({"x", "--ctt", "4294967296"}), "--ctt: not a number: 4294967296");
    EXPECT_EQ(ErrorOf({"x", "--parse-options", "all"}), "--parse-options: not a list of options: all");
    EXPECT_EQ(ErrorOf({"x", "--log", "loud"}), "--log: not a level: loud");
    EXPECT_EQ(ErrorOf({"capabilities", "--json"}),
              "--json, --explain and --parse-options go with parse only");
    EXPECT_EQ(ErrorOf({"types", "x", "--explain"}),
              "--json, --explain and --parse-options go with parse only");
    EXPECT_EQ(ErrorOf({"types", "x", "--parse-options", "1"}),
              "--json, --explain and --parse-options go with parse only");
    EXPECT_NE(ErrorOf({"x", "--ctt"}), "");
    EXPECT_NE(ErrorOf({"x", "--config"}), "");
    EXPECT_NE(ErrorOf({"x", "--json=maybe"}), "");
}

TEST(Arguments, StandardInputIsNamedAndReadOnce) {
    EXPECT_EQ(ReadWords({"-", "--name", "a.mp3"}).mArguments.mName, "a.mp3");
    EXPECT_EQ(ReadWords({"--name", "", "-"}).mArguments.mName, "");
    EXPECT_EQ(ReadWords({"-"}).mArguments.mName, std::nullopt);
    EXPECT_TRUE(ReadWords({"--name", "a", "--", "-"}).mResult.mfRun);
    EXPECT_EQ(ErrorOf({"-", "a", "-"}), "standard input can be read only once");
    EXPECT_EQ(ErrorOf({"-", "--", "-"}), "standard input can be read only once");
    EXPECT_EQ(ErrorOf({"a", "--name", "b"}), "--name goes with - (standard input) only");
    EXPECT_TRUE(ReadWords({"types", "-", "-"}).mResult.mfRun); // there it is a word like any other
}

TEST(Arguments, TheTimeoutIsAtLeastASecondAndAtMostADay) {
    EXPECT_EQ(ReadWords({"http://a"}).mArguments.mTimeout, 30U);
    EXPECT_EQ(ReadWords({"http://a", "--timeout", "1"}).mArguments.mTimeout, 1U);
    EXPECT_EQ(ReadWords({"http://a", "--timeout", "86400"}).mArguments.mTimeout, 86400U);
    for (const char* time : {"0", "86401", "-1", "", "1s", "4294967297"}) {
        EXPECT_EQ(ErrorOf({"http://a", "--timeout", time}),
                  std::string("--timeout: not a number from 1 to 86400: ") + time);
    }
}

TEST(Arguments, PacketsAreOddOrOfASize) {
    EXPECT_FALSE(ReadWords({"a"}).mArguments.mfElementary);
    EXPECT_TRUE(ReadWords({"a", "--es"}).mArguments.mfElementary);
    EXPECT_EQ(ReadWords({"a", "--es"}).mArguments.mPacketSize, 188U);
    EXPECT_EQ(ReadWords({"a", "--es", "--packet", "1316"}).mArguments.mPacketSize, 1316U);
    EXPECT_EQ(ReadWords({"a", "--es", "--packet", "odd"}).mArguments.mPacketSize, 0U);
    for (const char* size : {"0", "1048577", "even", "", "-1"}) {
        EXPECT_EQ(ErrorOf({"a", "--es", "--packet", size}),
                  std::string("--packet: neither odd nor a number from 1 to 1048576: ") + size);
    }
    EXPECT_EQ(ErrorOf({"a", "--packet", "1"}), "--packet goes with --es only");
}

TEST(Arguments, OptionsOfStreamsGoWithParseOnly) {
    for (const Words& option :
         {Words{"--name", "a"}, Words{"--timeout", "1"}, Words{"--es"}, Words{"--packet", "1"}}) {
        for (const Words& verb : {Words{"capabilities"}, Words{"types", "x"}, Words{"mapper", "list"}}) {
            Words words = verb;
            words.insert(words.end(), option.begin(), option.end());
            EXPECT_EQ(ErrorOf(words), "--name, --timeout, --es and --packet go with parse only");
        }
    }
    for (const Words& option : {Words{"--explain"}, Words{"--mapper"}, Words{"--profiles", "a"},
                                Words{"--parse-options", "1"}, Words{"--code-page", "1251"}}) {
        Words words = {"--es", "a"};
        words.insert(words.end(), option.begin(), option.end());
        EXPECT_EQ(ErrorOf(words),
                  "--explain, --mapper, --profiles, --parse-options and --code-page do not go with --es");
    }
}

TEST(Arguments, ACodePageIsOneThatTheSystemKnows) {
    EXPECT_EQ(ReadWords({"a"}).mArguments.mCodePage, std::nullopt);
    EXPECT_EQ(ReadWords({"a", "--code-page", "koi8-r"}).mArguments.mCodePage, "koi8-r");
    EXPECT_EQ(ReadWords({"a", "--code-page", "932"}).mArguments.mCodePage, "932");
    EXPECT_EQ(ErrorOf({"a", "--code-page", "klingon"}),
              "--code-page: this system knows none of the name: klingon");
    EXPECT_EQ(ErrorOf({"capabilities", "--code-page", "1251"}), "--code-page goes with parse only");
}

TEST(Arguments, ProfileRulesAreNamedWhereMediaAreAnnounced) {
    EXPECT_EQ(ReadWords({"a"}).mArguments.mProfiles, std::nullopt);
    EXPECT_EQ(ReadWords({"a", "--profiles", "b"}).mArguments.mProfiles, "b");
    EXPECT_EQ(ReadWords({"capabilities", "--profiles", ""}).mArguments.mProfiles, "");
    for (const Words& verb : {Words{"types", "x"}, Words{"mapper", "list"}, Words{"playlist", "a"},
                              Words{"profiles"}, Words{"thumbnail", "a", "-o", "b"}}) {
        Words words = verb;
        words.insert(words.end(), {"--profiles", "c"});
        EXPECT_EQ(ErrorOf(words), "--profiles goes with parse and capabilities only");
    }
}

TEST(Arguments, TheVerbProfilesTakesAnyNumberOfFiles) {
    for (const Words& files : {Words{}, Words{"a"}, Words{"a", "-", "b"}}) {
        Words words = files;
        words.insert(words.begin(), "profiles");
        const Read read = ReadWords(words);
        EXPECT_TRUE(read.mResult.mfRun);
        EXPECT_EQ(read.mArguments.mVerb, Verb::Profiles);
        EXPECT_EQ(read.mArguments.mOperands, files);
    }
    EXPECT_EQ(ErrorOf({"profiles", "--json"}), "--json, --explain and --parse-options go with parse only");
}

TEST(Arguments, AThumbnailIsAskedForBySizeOrByBox) {
    const Read plain = ReadWords({"thumbnail", "a.jpg", "-o", "b.jpg"});
    ASSERT_TRUE(plain.mResult.mfRun);
    EXPECT_EQ(plain.mArguments.mVerb, Verb::Thumbnail);
    EXPECT_EQ(plain.mArguments.mOperands, Words{"a.jpg"});
    EXPECT_EQ(plain.mArguments.mThumbnail.mOutput, "b.jpg");
    EXPECT_FALSE(plain.mArguments.mThumbnail.HasAnyOfThumbnail());
    EXPECT_FALSE(plain.mArguments.mThumbnail.mfFast);
    EXPECT_EQ(plain.mArguments.mThumbnail.mCacheFolder, std::nullopt);

    const Read sized = ReadWords(
        {"thumbnail", "a", "--output=b", "--size", "1x4096", "--png", "--default", "--fast", "--cache", "c"});
    ASSERT_TRUE(sized.mResult.mfRun);
    const ThumbnailOptions& options = sized.mArguments.mThumbnail;
    EXPECT_EQ(options.mSize.value().mWidth, 1U);
    EXPECT_EQ(options.mSize.value().mHeight, 4096U);
    EXPECT_FALSE(options.mBox);
    EXPECT_TRUE(options.mfPng && options.mfDefault && options.mfFast);
    EXPECT_EQ(options.mCacheFolder, "c");
    EXPECT_EQ(
        ReadWords({"thumbnail", "a", "-o", "b", "--box", "20x30"}).mArguments.mThumbnail.mBox.value().mHeight,
        30U);
}

TEST(Arguments, SizesThatAreNoneAreWrongUsage) {
    for (const char* option : {"--size", "--box"}) {
        for (const char* size : {"0x0", "0x1", "1x0", "1x", "x1", "x", "", "1", "1X1", "1x1x1", "4097x1",
                                 "1x4097", "-1x1", " 1x1", "1x1 ", "99999999999999999999x1", "1.5x1"}) {
            EXPECT_EQ(ErrorOf({"thumbnail", "a", "-o", "b", option, size}),
                      std::string(option) + ": not WxH with sides from 1 to 4096: " + size);
        }
    }
    EXPECT_EQ(ErrorOf({"thumbnail", "a", "-o", "b", "--size", "1x1", "--box", "1x1"}),
              "--size and --box do not go together");
}

TEST(Arguments, WhatThumbnailsNeedIsNamed) {
    EXPECT_EQ(ErrorOf({"thumbnail", "-o", "b"}), "thumbnail: no file given");
    EXPECT_EQ(ErrorOf({"thumbnail", "a", "b", "-o", "c"}), "thumbnail takes one operand");
    EXPECT_EQ(ErrorOf({"thumbnail", "a"}), "thumbnail: no file to write given; -o names it");
    for (const char* live : {"-", "http://h/a.jpg"}) {
        EXPECT_EQ(ErrorOf({"thumbnail", live, "-o", "b"}),
                  std::string("thumbnail takes a file, neither standard input nor a URL: ") + live);
    }
    EXPECT_EQ(ErrorOf({"contact-sheet", "-o", "b"}), "contact-sheet: no folder given");
    EXPECT_EQ(ErrorOf({"contact-sheet", "a", "b", "-o", "c"}), "contact-sheet takes one operand");
    EXPECT_EQ(ErrorOf({"contact-sheet", "a"}), "contact-sheet: no file to write given; -o names it");
    for (const char* verb : {"thumbnail", "contact-sheet"}) {
        EXPECT_EQ(ErrorOf({verb, "a", "-o", "-"}), "-o: not the name of a file: -");
        EXPECT_EQ(ErrorOf({verb, "a", "-o", ""}), "-o: not the name of a file: ");
        EXPECT_EQ(ErrorOf({verb, "a", "-o", "b", "--cache", ""}), "--cache: no folder given");
    }
}

TEST(Arguments, OptionsOfThumbnailsGoWithThemOnly) {
    for (const Words& option :
         {Words{"--size", "1x1"}, Words{"--box", "1x1"}, Words{"--png"}, Words{"--default"}}) {
        for (const Words& verb : {Words{"a"}, Words{"types", "x"}, Words{"mapper", "list"},
                                  Words{"playlist", "a"}, Words{"contact-sheet", "a", "-o", "b"}}) {
            Words words = verb;
            words.insert(words.end(), option.begin(), option.end());
            EXPECT_EQ(ErrorOf(words), "--size, --box, --png and --default go with thumbnail only");
        }
    }
    for (const Words& option : {Words{"-o", "b"}, Words{"--fast"}, Words{"--cache", "c"}}) {
        for (const Words& verb : {Words{"a"}, Words{"capabilities"}, Words{"playlist", "a"}}) {
            Words words = verb;
            words.insert(words.end(), option.begin(), option.end());
            EXPECT_EQ(ErrorOf(words), "-o, --fast and --cache go with thumbnail and contact-sheet only");
        }
    }
    EXPECT_TRUE(ReadWords({"contact-sheet", "a", "-o", "b", "--fast", "--cache", "c"}).mResult.mfRun);
    EXPECT_EQ(ErrorOf({"thumbnail", "a", "-o", "b", "--json"}),
              "--json, --explain and --parse-options go with parse only");
    EXPECT_EQ(ErrorOf({"thumbnail", "a", "-o", "b", "--index", "1"}),
              "--index, --at, --next and --serve-lines go with playlist only");
}

TEST(CommandLine, WrongUsageGoesToStandardErrorWithStatusTwo) {
    const ProgramResult result = RunTool({"--nonsense"});
    EXPECT_EQ(result.mStatus, 2);
    EXPECT_EQ(result.mOut, "");
    EXPECT_EQ(result.mError, "ezannounce: unknown option: --nonsense\n"
                             "ezannounce: \"ezannounce --help\" shows the usage\n");
}

TEST(CommandLine, AFolderOfConfigurationThatIsNoneIsWrongUsage) {
    const TemporaryFolder folder;
    const std::string file = folder.Write("file", "");
    for (const char* option : {"--config", "--state"}) {
        const ProgramResult missing = RunTool({option, folder.Path("none"), kWalk});
        EXPECT_EQ(missing.mStatus, 2);
        EXPECT_EQ(missing.mError, "ezannounce: " + folder.Path("none") + ": No such file or directory\n");
        const ProgramResult noFolder = RunTool({option, file, kWalk});
        EXPECT_EQ(noFolder.mStatus, 2);
        EXPECT_EQ(noFolder.mError, "ezannounce: " + file + ": not a folder\n");
    }
}

TEST(CommandLine, VersionIsThatOfTheProject) {
    const ProgramResult result = RunTool({"--version"});
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mOut, "ezannounce " EZANNOUNCE_VERSION "\n");
    EXPECT_EQ(result.mError, "");
}

TEST(CommandLine, HelpTellsVerbsOptionsAndStatuses) {
    const ProgramResult result = RunTool({"--help"});
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mError, "");
    for (const char* text : {"[parse] PATH...",
                             "capabilities",
                             "types EXT|MIME...",
                             "--json",
                             "--explain",
                             "--ctt N",
                             "--parse-options LIST",
                             "--code-page NAME",
                             "--config DIR",
                             "--state DIR",
                             "--log LEVEL",
                             "--version",
                             "--help",
                             "profiles [FILE...]",
                             "--profiles FILE",
                             "thumbnail FILE -o OUT",
                             "contact-sheet DIR -o OUT",
                             "--size WxH",
                             "--box WxH",
                             "--cache DIR",
                             "if-no-extension, if-failed, everytime, vbr-full",
                             "Exit status: 0",
                             "2 wrong usage"}) {
        EXPECT_NE(result.mOut.find(text), std::string::npos) << text;
    }
}

TEST(CommandLine, LogLevelLetsTheLibrarySpeakOnStandardError) {
    EXPECT_EQ(Announce({kWalk}).mError, "");
    const ProgramResult debug = Announce({"--log", "debug", kWalk});
    EXPECT_NE(debug.mError.find("debug: ezMediaParserManager: Parsing type: mp3\n"), std::string::npos);
    EXPECT_NE(debug.mError.find("info: ExtensionMimeTypeMatcher::Load(): Ext(mp3) -> "), std::string::npos);
    EXPECT_EQ(debug.mOut, Announce({kWalk}).mOut);
    const ProgramResult info = Announce({"--log", "info", kWalk});
    EXPECT_EQ(info.mError.find("debug: "), std::string::npos);
    EXPECT_NE(info.mError.find("info: "), std::string::npos);
    EXPECT_EQ(Announce({"--log", "warning", kWalk}).mError, "");
}

TEST(CommandLine, StandardOutputThatTakesNothingIsAFailure) {
    ProgramOptions full;
    full.mOutTo = "/dev/full";
    const ProgramResult result = Announce({kWalk}, full);
    EXPECT_EQ(result.mStatus, 1);
    EXPECT_EQ(result.mError, "ezannounce: standard output: No space left on device\n");
}

namespace {

/// The options that a text writes out, as "--name".
std::set<std::string> OptionsIn(const std::string& aText) {
    constexpr const char* kNameCharacters = "abcdefghijklmnopqrstuvwxyz-";
    std::set<std::string> options;
    for (std::size_t at = aText.find("--"); at != std::string::npos; at = aText.find("--", at + 2)) {
        const std::size_t end = std::min(aText.find_first_not_of(kNameCharacters, at), aText.size());
        if (end > at + 2) {
            options.insert(aText.substr(at, end - at));
        }
        at = end;
    }
    return options;
}

std::string WithoutAll(std::string aText, const std::string& aPart) {
    for (std::size_t at = aText.find(aPart); at != std::string::npos; at = aText.find(aPart, at)) {
        aText.erase(at, aPart.size());
    }
    return aText;
}

/// The manual page with its hyphens as they are read, and without the quotes of its examples.
std::string ManPage() {
    const std::string text = ReadWholeFile(EZ_SOURCES "/docs/ezannounce.1");
    return WithoutAll(WithoutAll(text, R"(\(aq)"), "\\");
}

} // namespace

TEST(ManPage, NamesEveryOptionOfTheHelpAndNoOther) {
    const std::set<std::string> options = OptionsIn(RunTool({"--help"}).mOut);
    EXPECT_EQ(options.size(), 30U);
    EXPECT_EQ(OptionsIn(ManPage()), options);
}

TEST(ManPage, ItsTablesAreWhatTheToolShows) {
    const std::string page = ManPage();
    for (const Words& words : {Words{"--config", "samples", "samples/video"},
                               Words{"--config", "samples", "--wide", "samples/pictures"}}) {
        std::string command = "$ ezannounce";
        for (const std::string& word : words) {
            command += " " + word;
        }
        const std::size_t start = page.find(command + "\n");
        ASSERT_NE(start, std::string::npos) << command;
        const std::size_t table = start + command.size() + 1;
        ProgramOptions options;
        options.mFolder = EZ_SOURCES;
        const ProgramResult result = RunTool(words, options);
        EXPECT_EQ(result.mStatus, 0);
        EXPECT_EQ(page.substr(table, page.find(".RE", table) - table), result.mOut);
    }
}

TEST(ReadMe, ItsTableIsWhatTheToolShows) {
    ProgramOptions options;
    options.mFolder = EZ_SOURCES;
    const ProgramResult result =
        RunTool({"--config", "samples", "samples/music", "samples/pictures", "samples/video"}, options);
    EXPECT_EQ(result.mStatus, 0);
    std::string block =
        "\n    ./dev announce --config samples samples/music samples/pictures samples/video\n\n";
    for (const std::string& line : LinesOf(result.mOut)) {
        block += "    " + line + "\n";
    }
    EXPECT_NE(ReadWholeFile(EZ_SOURCES "/README.md").find(block + "\n"), std::string::npos) << block;
}

TEST(ManPage, ItsCommandsRun) {
    const std::string prompt = "$ ezannounce ";
    const TemporaryFolder folder; // for what they write
    std::filesystem::create_directory_symlink(EZ_SAMPLES, folder.Path("samples"));
    ProgramOptions options;
    options.mFolder = folder.GetPath();
    options.mEnvironment = {"XDG_CACHE_HOME=" + folder.Path("cache")};
    std::size_t count = 0;
    for (const std::string& line : LinesOf(ManPage())) {
        if (line.compare(0, prompt.size(), prompt) != 0) {
            continue;
        }
        Words words;
        std::istringstream text(line.substr(prompt.size(), line.find('|') - prompt.size()));
        for (std::string word; text >> word;) {
            words.push_back(word);
        }
        ++count;
#ifndef EZ_HAS_THUMBNAILS
        const bool fLeftOut = std::any_of(words.begin(), words.end(), [](const std::string& aWord) {
            return aWord == "thumbnail" || aWord == "contact-sheet";
        });
        if (fLeftOut) {
            continue;
        }
#endif
        const ProgramResult result = RunTool(words, options);
        EXPECT_EQ(result.mStatus, 0) << line;
        EXPECT_NE(result.mOut, "") << line;
        EXPECT_EQ(result.mError, "") << line;
    }
    EXPECT_EQ(count, 23U);
}

#ifdef EZ_HAS_THUMBNAILS
TEST(ManPage, ItsLineAboutAThumbnailIsWhatTheToolShows) {
    const Words lines = LinesOf(ManPage());
    const std::string command =
        "$ ezannounce --config samples thumbnail samples/pictures/harbour.jpg -o harbour.jpg";
    const auto line = std::find(lines.begin(), lines.end(), command);
    ASSERT_NE(line, lines.end());
    const TemporaryFolder folder;
    ProgramOptions options;
    options.mFolder = folder.GetPath();
    const ProgramResult result = Announce({"thumbnail", EZ_SAMPLES "/pictures/harbour.jpg", "-o",
                                           "harbour.jpg", "--cache", folder.Path("cache")},
                                          options);
    // How many bytes a picture takes is the encoder's.
    const auto withoutNumber = [](const std::string& aLine) {
        const std::size_t start = aLine.find(", ", aLine.find("120"));
        return aLine.substr(0, start) + aLine.substr(std::min(aLine.find(" bytes"), aLine.size()));
    };
    EXPECT_EQ(withoutNumber(line[1] + "\n"), withoutNumber(result.mOut));
}
#else
TEST(Thumbnail, LeftOutOfTheBuildIsSaid) {
    for (const std::string verb : {"thumbnail", "contact-sheet"}) {
        const ProgramResult result = Announce({verb, EZ_SAMPLES "/pictures", "-o", "x"});
        EXPECT_EQ(result.mStatus, 1);
        EXPECT_EQ(result.mError, "ezannounce: " + verb +
                                     ": left out of this build, which was made without libjpeg-turbo or "
                                     "libpng\n");
    }
}
#endif
