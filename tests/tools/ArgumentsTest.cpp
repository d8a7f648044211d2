#include "Arguments.h"

#include "Announce.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
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

TEST(Arguments, WhatStandsBehindTwoDashesIsAnOperand) {
    const Read read = ReadWords({"a", "--json", "--", "--json", "-x", "--", "types", ""});
    EXPECT_EQ(read.mArguments.mOperands, (Words{"a", "--json", "-x", "--", "types", ""}));
    EXPECT_TRUE(read.mArguments.mfJson);
    EXPECT_EQ(ReadWords({"--", "types"}).mArguments.mVerb, Verb::Parse);
    EXPECT_EQ(ReadWords({"types", "--", "-x"}).mArguments.mOperands, Words{"-x"});
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
    for (const Words& option : {Words{"--explain"}, Words{"--mapper"}, Words{"--parse-options", "1"}}) {
        Words words = {"--es", "a"};
        words.insert(words.end(), option.begin(), option.end());
        EXPECT_EQ(ErrorOf(words), "--explain, --mapper and --parse-options do not go with --es");
    }
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
    for (const char* text :
         {"[parse] PATH...", "capabilities", "types EXT|MIME...", "--json", "--explain", "--ctt N",
          "--parse-options LIST", "--config DIR", "--state DIR", "--log LEVEL", "--version", "--help",
          "if-no-extension, if-failed, everytime, vbr-full", "Exit status: 0", "2 wrong usage"}) {
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
    const std::string text = ReadFile(EZ_SOURCES "/docs/ezannounce.1");
    return WithoutAll(WithoutAll(text, R"(\(aq)"), "\\");
}

} // namespace

TEST(ManPage, NamesEveryOptionOfTheHelpAndNoOther) {
    const std::set<std::string> options = OptionsIn(RunTool({"--help"}).mOut);
    EXPECT_EQ(options.size(), 20U);
    EXPECT_EQ(OptionsIn(ManPage()), options);
}

TEST(ManPage, ItsTableIsWhatTheToolShows) {
    const std::string page = ManPage();
    const std::string command = "$ ezannounce --config samples samples/pictures\n";
    const std::size_t start = page.find(command);
    ASSERT_NE(start, std::string::npos);
    const std::size_t table = start + command.size();
    ProgramOptions options;
    options.mFolder = EZ_SOURCES;
    const ProgramResult result = RunTool({"--config", "samples", "samples/pictures"}, options);
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(page.substr(table, page.find(".RE", table) - table), result.mOut);
}

TEST(ManPage, ItsCommandsRun) {
    const std::string prompt = "$ ezannounce ";
    ProgramOptions options;
    options.mFolder = EZ_SOURCES;
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
        const ProgramResult result = RunTool(words, options);
        EXPECT_EQ(result.mStatus, 0) << line;
        EXPECT_NE(result.mOut, "") << line;
        EXPECT_EQ(result.mError, "") << line;
        ++count;
    }
    EXPECT_EQ(count, 13U);
}
