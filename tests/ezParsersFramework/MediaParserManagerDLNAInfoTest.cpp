#include "ez/MediaParserManager.h"

#include "ez/DLNAFileParser.h"
#include "ez/MimeTypesDotIniParser.h"

#include "ezPlatform/base/Log.h"
#include "ezPlatform/media/MediaInfo.h"

#include "support/AwkwardStream.h"
#include "support/Catchers.h"
#include "support/Record.h"
#include "support/ScriptedParser.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Texts = std::vector<std::string>;

/// What the catcher has seen, where assertions are compiled in.
Texts Asserted(const char* aFailure) {
#ifdef EZ_NO_ASSERTIONS
    static_cast<void>(aFailure);
    return {};
#else
    return {aFailure};
#endif
}

const char* const kSuccess = "MediaParserManager::AdjustDLNAInfoFromType (success)\n";
const char* const kFailed = "MediaParserManager::AdjustDLNAInfoFromType (failed)\n";

std::string Adjusting(const std::string& aType) {
    return "ezMediaParserManager: Ajusting dlna info from type: " + aType + "\n"; // misspelt for good
}

void ExpectDebugLines(const LogCatcher& aLog, const Texts& aTexts) {
    EXPECT_EQ(aLog.Texts(), aTexts);
    for (const LogCatcher::Line& line : aLog.Lines()) {
        EXPECT_EQ(line.mLevel, 4) << line.mText;
        EXPECT_EQ(line.mModule, 10) << line.mText;
    }
}

ScriptedParser* Add(OpenManager& aManager, ParserTrace& aTrace, ScriptedParser* aParser) {
    EXPECT_TRUE(aManager.Add(aParser));
    aTrace.clear();
    return aParser;
}

/// A manager with the standard parser over a table of its own.
class TableManager {
public:
    explicit TableManager(const std::string& aTable)
        : mEnvironment(), mManager(Write(aTable).Set("ReadOnlyConfigPath", mFolder.GetPath()).Get()) {
        mManager.AddStandardParsers(kParseOption_Default);
    }
    OpenManager& operator*() { return mManager; }
    OpenManager* operator->() { return &mManager; }
    ezEnvironment& GetEnvironment() { return mEnvironment; }

private:
    ezEnvironment& Write(const std::string& aTable) {
        mFolder.Write("mediaCTRLMediaTypes.ini", aTable);
        return mEnvironment;
    }

    TemporaryFolder mFolder;
    ezEnvironment mEnvironment;
    OpenManager mManager;
};

} // namespace

TEST(MediaParserManagerGetDLNAInfo, IsEmptyWithoutParsers) {
    OpenManager manager;
    EXPECT_STREQ(manager.GetDLNAInfo().c_str(), "");
}

TEST(MediaParserManagerGetDLNAInfo, OneParserMakesNoComma) {
    ParserTrace trace;
    OpenManager manager;
    Add(manager, trace, new ScriptedParser(trace, "silent", "a"));
    EXPECT_STREQ(manager.GetDLNAInfo().c_str(), "");
    Add(manager, trace, (new ScriptedParser(trace, "p", "b"))->Declaring("audio/mpeg:*"));
    Add(manager, trace, new ScriptedParser(trace, "silent", "c"));
    EXPECT_STREQ(manager.GetDLNAInfo().c_str(), "audio/mpeg:*");
}

TEST(MediaParserManagerGetDLNAInfo, ParsersThatDeclareNothingAddNoCommas) {
    ParserTrace trace;
    OpenManager manager;
    Add(manager, trace, new ScriptedParser(trace, "silent", "a"));
    Add(manager, trace, (new ScriptedParser(trace, "p", "b"))->Declaring("audio/b:*"));
    Add(manager, trace, new ScriptedParser(trace, "silent", "b"));
    Add(manager, trace, new ScriptedParser(trace, "silent", "c"));
    Add(manager, trace, (new ScriptedParser(trace, "p", "d"))->Declaring("audio/d:*"));
    Add(manager, trace, new ScriptedParser(trace, "silent", "e"));
    EXPECT_STREQ(manager.GetDLNAInfo().c_str(), "audio/b:*,audio/d:*");
}

TEST(MediaParserManagerGetDLNAInfo, TypesComeInOrderOfFirstRegistrationAndParsersOfATypeInTheirs) {
    for (int run = 0; run < 3; ++run) {
        ParserTrace trace;
        OpenManager manager;
        AwkwardStream stream("");
        EXPECT_EQ(manager.ParseFromType("early", stream), nullptr); // asking for a type registers none
        Add(manager, trace, (new ScriptedParser(trace, "1", "zebra"))->Declaring("a/1:*"));
        Add(manager, trace, (new ScriptedParser(trace, "2", "ant"))->Declaring("a/2:*"));
        Add(manager, trace, (new ScriptedParser(trace, "3", "*"))->Declaring("a/3:*"));
        Add(manager, trace, (new ScriptedParser(trace, "4", "Zebra"))->Declaring("a/4:*"));
        Add(manager, trace, (new ScriptedParser(trace, "5", "early"))->Declaring("a/5:*"));
        Add(manager, trace, (new ScriptedParser(trace, "6", "ANT"))->Declaring("a/6:*"));
        EXPECT_STREQ(manager.GetDLNAInfo().c_str(), "a/1:*,a/4:*,a/2:*,a/6:*,a/3:*,a/5:*");
        EXPECT_EQ(trace, (ParserTrace{"declare 1", "declare 4", "declare 2", "declare 6", "declare 3",
                                      "declare 5"}));
    }
}

TEST(MediaParserManagerGetDLNAInfo, IsTheSameInEveryRunForManyTypes) {
    ParserTrace trace;
    OpenManager manager;
    std::string expected;
    for (int i = 0; i < 300; ++i) {
        const std::string type = std::to_string(i * 7919 % 1000);
        const std::string info = "audio/" + type + ":*";
        manager.Add((new ScriptedParser(trace, type, type.c_str()))->Declaring(info.c_str()));
        expected += (i != 0 ? "," : "") + info;
    }
    EXPECT_EQ(manager.GetDLNAInfo().c_str(), expected);
    EXPECT_EQ(manager.GetDLNAInfo().c_str(), expected);
}

TEST(MediaParserManagerGetDLNAInfo, EntriesThatTwoParsersDeclareStandTwice) {
    ParserTrace trace;
    OpenManager manager;
    Add(manager, trace, (new ScriptedParser(trace, "1", "a"))->Declaring("audio/mpeg:*"));
    Add(manager, trace, (new ScriptedParser(trace, "2", "a"))->Declaring("audio/mpeg:*"));
    Add(manager, trace, (new ScriptedParser(trace, "3", "b"))->Declaring("audio/mpeg:*"));
    EXPECT_STREQ(manager.GetDLNAInfo().c_str(), "audio/mpeg:*,audio/mpeg:*,audio/mpeg:*");
}

TEST(MediaParserManagerGetDLNAInfo, AParserCountsOnceHoweverManyMimeTypesItDeclares) {
    ParserTrace trace;
    OpenManager manager;
    Add(manager, trace, (new ScriptedParser(trace, "1", "a"))->Declaring("audio/x:*,audio/y:*,audio/x:*"));
    EXPECT_STREQ(manager.GetDLNAInfo().c_str(), "audio/x:*,audio/y:*,audio/x:*");
    EXPECT_EQ(trace, ParserTrace{"declare 1"});
}

TEST(MediaParserManagerGetDLNAInfo, DeclarationsAreTakenAsTheyAreWhenAsked) {
    ParserTrace trace;
    OpenManager manager;
    ScriptedParser* parser = Add(manager, trace, new ScriptedParser(trace, "1", "a"));
    parser->Declaring("whatever , it says,");
    Add(manager, trace, (new ScriptedParser(trace, "2", "a"))->Declaring("audio/x:*"));
    EXPECT_STREQ(manager.GetDLNAInfo().c_str(), "whatever , it says,,audio/x:*");
}

TEST(MediaParserManagerGetDLNAInfo, NothingIsLoggedAndNoRequestIsTouched) {
    ParserTrace trace;
    OpenManager manager;
    Add(manager, trace, (new ScriptedParser(trace, "1", "*"))->Declaring("audio/x:*"));
    AwkwardStream stream("");
    EXPECT_EQ(manager.Parse(stream), nullptr);
    LogCatcher log;
    manager.GetDLNAInfo();
    EXPECT_TRUE(log.Lines().empty());
    EXPECT_EQ(manager.mDoneParsers.size(), 1U);
}

TEST(MediaParserManagerGetDLNAInfo, ParsersAddedWhileTheListsAreWalkedAreSafe) {
    ParserTrace trace;
    OpenManager manager;
    ScriptedParser* first =
        Add(manager, trace, (new ScriptedParser(trace, "first", "a"))->Declaring("audio/1:*"));
    Add(manager, trace, (new ScriptedParser(trace, "second", "a"))->Declaring("audio/2:*"));
    Add(manager, trace, (new ScriptedParser(trace, "third", "b"))->Declaring("audio/3:*"));
    first->Calling([&] {
        first->Calling(nullptr);
        for (int i = 0; i < 50; ++i) {
            manager.Add((new ScriptedParser(trace, "new", "a"))->Declaring("audio/new:*"));
            manager.Add((new ScriptedParser(trace, "new", ("type" + std::to_string(i)).c_str()))
                            ->Declaring("audio/new:*"));
        }
    });
    EXPECT_STREQ(manager.GetDLNAInfo().c_str(), "audio/1:*,audio/2:*,audio/3:*");
    std::string expected = "audio/1:*,audio/2:*";
    for (int i = 0; i < 50; ++i) {
        expected += ",audio/new:*";
    }
    expected += ",audio/3:*";
    for (int i = 0; i < 50; ++i) {
        expected += ",audio/new:*";
    }
    EXPECT_EQ(manager.GetDLNAInfo().c_str(), expected);
}

TEST(MediaParserManagerGetDLNAInfo, IniParserTakesItsPlaceDuringAConformanceTest) {
    ParserTrace trace;
    TableManager manager("");
    Add(*manager, trace, (new ScriptedParser(trace, "p", "a"))->Declaring("audio/x:*"));
    EXPECT_STREQ(manager->GetDLNAInfo().c_str(), "audio/x:*");
    manager.GetEnvironment().Set("CTTContext", 1);
    const ezCString list = DLNAFileParser(manager.GetEnvironment().Get()).GetDLNAInfo();
    ASSERT_FALSE(list.IsEmpty());
    EXPECT_STREQ(manager->GetDLNAInfo().c_str(), (list + ",audio/x:*").c_str());
}

TEST(MediaParserManagerAppendDLNAInfo, NullAddsNothing) {
    OpenManager manager;
    ezCString text;
    manager.AppendDLNAInfo(nullptr, text);
    EXPECT_STREQ(text.c_str(), "");
    text = "audio/x:*";
    manager.AppendDLNAInfo(nullptr, text);
    EXPECT_STREQ(text.c_str(), "audio/x:*");
}

TEST(MediaParserManagerAppendDLNAInfo, PutsOneCommaBetweenTwoTexts) {
    ParserTrace trace;
    OpenManager manager;
    ScriptedParser parser(trace, "p", "a");
    ezCString text;
    manager.AppendDLNAInfo(&parser, text);
    EXPECT_STREQ(text.c_str(), "");
    parser.Declaring("audio/x:*");
    manager.AppendDLNAInfo(&parser, text);
    EXPECT_STREQ(text.c_str(), "audio/x:*");
    parser.Declaring("");
    manager.AppendDLNAInfo(&parser, text);
    EXPECT_STREQ(text.c_str(), "audio/x:*");
    parser.Declaring("audio/x:*");
    manager.AppendDLNAInfo(&parser, text);
    EXPECT_STREQ(text.c_str(), "audio/x:*,audio/x:*");
}

TEST(MediaParserManagerAdjustFromType, TheFirstParserThatAdjustsEndsIt) {
    ParserTrace trace;
    OpenManager manager;
    Add(manager, trace, new ScriptedParser(trace, "first", "mp3"));
    Add(manager, trace, (new ScriptedParser(trace, "second", "MP3"))->Adjusting("DLNA.ORG_PN=SECOND"));
    Add(manager, trace, (new ScriptedParser(trace, "third", "mp3"))->Adjusting("DLNA.ORG_PN=THIRD"));
    Add(manager, trace, (new ScriptedParser(trace, "other", "ogg"))->Adjusting("DLNA.ORG_PN=OTHER"));
    LogCatcher log;
    ezMediaInfo info;
    EXPECT_TRUE(manager.AdjustDLNAInfoFromType("Mp3", &info));
    EXPECT_EQ(DumpRecord(&info), "dl=\"DLNA.ORG_PN=SECOND\"\n");
    EXPECT_EQ(trace, (ParserTrace{"adjust first", "adjust second"}));
    ExpectDebugLines(log, {Adjusting("Mp3"), kSuccess});
}

TEST(MediaParserManagerAdjustFromType, WithoutSuccessOrListItSaysSo) {
    ParserTrace trace;
    OpenManager manager;
    Add(manager, trace, new ScriptedParser(trace, "first", "mp3"));
    ezMediaInfo info;
    for (const char* type : {"mp3", "ogg", ""}) {
        LogCatcher log;
        EXPECT_FALSE(manager.AdjustDLNAInfoFromType(type, &info)) << type;
        ExpectDebugLines(log, {Adjusting(type), kFailed});
    }
    EXPECT_EQ(DumpRecord(&info), "");
    EXPECT_EQ(trace, ParserTrace{"adjust first"});
    EXPECT_EQ(OpenManager::KeysOf(manager.mParserListByType), Texts{"mp3"});
}

TEST(MediaParserManagerAdjustFromType, WithoutARecordNoParserIsAsked) {
    ParserTrace trace;
    OpenManager manager;
    Add(manager, trace, (new ScriptedParser(trace, "first", "mp3"))->Adjusting("x"));
    const LogCatcher log;
    EXPECT_FALSE(manager.AdjustDLNAInfoFromType("mp3", nullptr));
    ExpectDebugLines(log, {Adjusting("mp3"), kFailed});
    EXPECT_TRUE(trace.empty());
}

TEST(MediaParserManagerAdjustFromType, LogsNothingAtALowerLevel) {
    ParserTrace trace;
    OpenManager manager;
    Add(manager, trace, (new ScriptedParser(trace, "first", "mp3"))->Adjusting("x"));
    LogCatcher log(4);
    ezMediaInfo info;
    EXPECT_TRUE(manager.AdjustDLNAInfoFromType("mp3", &info));
    EXPECT_FALSE(manager.AdjustDLNAInfoFromType("mp3", &info));
    EXPECT_TRUE(log.Lines().empty());
}

TEST(MediaParserManagerAdjustFromType, OnlyAddsToTheParsersDone) {
    ParserTrace trace;
    OpenManager manager;
    ScriptedParser* first = Add(manager, trace, new ScriptedParser(trace, "first", "mp3"));
    ScriptedParser* second =
        Add(manager, trace, (new ScriptedParser(trace, "second", "mp3"))->Adjusting("x"));
    ScriptedParser* third = Add(manager, trace, (new ScriptedParser(trace, "third", "mp3"))->Adjusting("y"));
    ezMediaInfo info;
    EXPECT_TRUE(manager.AdjustDLNAInfoFromType("mp3", &info));
    ASSERT_EQ(manager.mDoneParsers.size(), 2U);
    EXPECT_EQ(manager.mDoneParsers[0], first);
    EXPECT_EQ(manager.mDoneParsers[1], second);
    trace.clear();
    EXPECT_TRUE(manager.AdjustDLNAInfoFromType("mp3", &info));
    EXPECT_EQ(trace, ParserTrace{"adjust third"});
    ASSERT_EQ(manager.mDoneParsers.size(), 3U);
    EXPECT_EQ(manager.mDoneParsers[2], third);
    trace.clear();
    EXPECT_FALSE(manager.AdjustDLNAInfoFromType("mp3", &info));
    EXPECT_TRUE(trace.empty());
}

TEST(MediaParserManagerAdjustFromType, TheWildcardTypeIsAnAssertionAndAdjustsNothing) {
    ParserTrace trace;
    OpenManager manager;
    Add(manager, trace, (new ScriptedParser(trace, "any", "*"))->Adjusting("x"));
    AssertCatcher assertions;
    LogCatcher log;
    ezMediaInfo info;
    EXPECT_FALSE(manager.AdjustDLNAInfoFromType("*", &info));
    EXPECT_EQ(assertions.Failures(), Asserted("aType.Compare(\"*\") != 0 @ MediaParserManager"));
    EXPECT_TRUE(trace.empty());
    EXPECT_TRUE(manager.mDoneParsers.empty());
    EXPECT_EQ(DumpRecord(&info), "");
    ASSERT_FALSE(log.Lines().empty());
    EXPECT_EQ(log.Lines()[0].mText, Adjusting("*"));
#ifndef EZ_NO_ASSERTIONS
    ASSERT_GE(log.Lines().size(), 2U);
    EXPECT_EQ(log.Lines()[1].mLevel, 1);
    EXPECT_EQ(log.Lines()[1].mSource, "MediaParserManager");
#endif
}

TEST(MediaParserManagerAdjustFromType, TypesThatOnlyBeginWithAStarAreOrdinary) {
    ParserTrace trace;
    OpenManager manager;
    Add(manager, trace, (new ScriptedParser(trace, "odd", "**"))->Adjusting("x"));
    const LogCatcher quiet;
    AssertCatcher assertions;
    ezMediaInfo info;
    EXPECT_TRUE(manager.AdjustDLNAInfoFromType("**", &info));
    EXPECT_TRUE(assertions.Failures().empty());
}

TEST(MediaParserManagerAdjustFromType, ParsersAddedWhileTheListIsWalkedTakeTheirTurnNextTime) {
    ParserTrace trace;
    OpenManager manager;
    ScriptedParser* first = Add(manager, trace, new ScriptedParser(trace, "first", "mp3"));
    Add(manager, trace, new ScriptedParser(trace, "second", "mp3"));
    first->Calling([&] {
        for (int i = 0; i < 50; ++i) {
            manager.Add(new ScriptedParser(trace, "new", "mp3"));
        }
        trace.clear();
    });
    ezMediaInfo info;
    EXPECT_FALSE(manager.AdjustDLNAInfoFromType("mp3", &info));
    EXPECT_EQ(trace, ParserTrace{"adjust second"});
    trace.clear();
    EXPECT_FALSE(manager.AdjustDLNAInfoFromType("mp3", &info));
    EXPECT_EQ(trace.size(), 50U);
}

TEST(MediaParserManagerAdjust, WithoutStandardParsersIsAnAssertionAndFalse) {
    ParserTrace trace;
    OpenManager manager;
    Add(manager, trace, (new ScriptedParser(trace, "any", "*"))->Adjusting("x"));
    const LogCatcher quiet;
    AssertCatcher assertions;
    ezMediaInfo info;
    info.Set("mt", "audio/mpeg", true);
    EXPECT_FALSE(manager.AdjustDLNAInfo(&info));
    EXPECT_EQ(assertions.Failures(), Asserted("mMimeTypesDotIniParser != NULL @ MediaParserManager"));
    EXPECT_EQ(DumpRecord(&info), "mt=\"audio/mpeg\"\n");
    EXPECT_TRUE(trace.empty());
}

TEST(MediaParserManagerAdjust, GoesThroughTheTypesOfTheTable) {
    ParserTrace trace;
    TableManager manager("[MimeTypes]\n"
                         "mp3=mp3@audio/mpeg@item.audioItem@ID3\n"
                         "mpa=mpa@audio/mpeg@item.audioItem\n"
                         "ogg=ogg@audio/ogg@item.audioItem\n");
    Add(*manager, trace, (new ScriptedParser(trace, "any", "*"))->Adjusting("never"));
    Add(*manager, trace, (new ScriptedParser(trace, "ogg", "ogg"))->Adjusting("never"));
    Add(*manager, trace, new ScriptedParser(trace, "mp3", "mp3"));
    Add(*manager, trace, (new ScriptedParser(trace, "mpa", "mpa"))->Adjusting("DLNA.ORG_PN=MP3"));
    LogCatcher log;
    ezMediaInfo info;
    info.Set("mt", "audio/mpeg", true);
    EXPECT_TRUE(manager->AdjustDLNAInfo(&info));
    EXPECT_EQ(DumpRecord(&info), "dl=\"DLNA.ORG_PN=MP3\"\nmt=\"audio/mpeg\"\n");
    EXPECT_EQ(trace, (ParserTrace{"adjust mp3", "adjust mpa"}));
    ExpectDebugLines(log, {Adjusting("mp3"), kFailed, Adjusting("id3"), kFailed, Adjusting("mpa"), kSuccess});
}

TEST(MediaParserManagerAdjust, BeginsANewRequestEveryTime) {
    ParserTrace trace;
    TableManager manager("[MimeTypes]\nmp3=mp3@audio/mpeg@item.audioItem\n");
    ScriptedParser* parser = Add(*manager, trace, new ScriptedParser(trace, "mp3", "mp3"));
    ezMediaInfo info;
    info.Set("mt", "audio/mpeg", true);
    AwkwardStream stream("");
    EXPECT_EQ(manager->ParseFromType("mp3", stream), nullptr);
    trace.clear();
    for (int i = 0; i < 2; ++i) {
        EXPECT_FALSE(manager->AdjustDLNAInfo(&info));
        ASSERT_EQ(manager->mDoneParsers.size(), 1U);
        EXPECT_EQ(manager->mDoneParsers[0], parser);
    }
    EXPECT_EQ(trace, (ParserTrace{"adjust mp3", "adjust mp3"}));
    // What comes from outside within the request meets the parsers that it has used.
    EXPECT_FALSE(manager->AdjustDLNAInfoFromType("mp3", &info));
    EXPECT_EQ(trace.size(), 2U);
}

TEST(MediaParserManagerAdjust, AParserFiledUnderTwoTypesRunsOnce) {
    ParserTrace trace;
    TableManager manager("[MimeTypes]\n"
                         "mp3=mp3@audio/mpeg@item.audioItem@mpa,MP3\n"
                         "mpa=mpa@audio/mpeg@item.audioItem\n");
    ScriptedParser* parser = Add(*manager, trace, new ScriptedParser(trace, "both", "mp3"));
    manager->ParserListFrom(manager->mParserListByType, "mpa", true, false)->push_back(parser);
    LogCatcher log;
    ezMediaInfo info;
    info.Set("mt", "audio/mpeg", true);
    EXPECT_FALSE(manager->AdjustDLNAInfo(&info));
    EXPECT_EQ(trace, ParserTrace{"adjust both"});
    ExpectDebugLines(log, {Adjusting("mp3"), kFailed, Adjusting("mpa"), kFailed, Adjusting("mp3"), kFailed,
                           Adjusting("mpa"), kFailed});
}

TEST(MediaParserManagerAdjust, ATableThatNamesTheWildcardTypeAdjustsNothingAndEnds) {
    TableManager manager("[MimeTypes]\nmp3=mp3@audio/mpeg@item.audioItem@*\n");
    const LogCatcher quiet;
    AssertCatcher assertions;
    ezMediaInfo info;
    info.Set("mt", "audio/mpeg", true);
    EXPECT_FALSE(manager->AdjustDLNAInfo(&info));
    EXPECT_EQ(assertions.Failures(), Asserted("aType.Compare(\"*\") != 0 @ MediaParserManager"));
}

TEST(MediaParserManagerAdjust, AnUnknownOrNullRecordIsNotAdjusted) {
    ParserTrace trace;
    TableManager manager("[MimeTypes]\nmp3=mp3@audio/mpeg@item.audioItem\n");
    Add(*manager, trace, (new ScriptedParser(trace, "mp3", "mp3"))->Adjusting("x"));
    LogCatcher log;
    EXPECT_FALSE(manager->AdjustDLNAInfo(nullptr));
    ezMediaInfo info;
    EXPECT_FALSE(manager->AdjustDLNAInfo(&info));
    info.Set("mt", "audio/ogg", true);
    info.Set("fe", "mp3", true);
    EXPECT_FALSE(manager->AdjustDLNAInfo(&info));
    EXPECT_EQ(DumpRecord(&info), "fe=\"mp3\"\nmt=\"audio/ogg\"\n");
    EXPECT_TRUE(trace.empty());
    EXPECT_TRUE(log.Lines().empty());
}
