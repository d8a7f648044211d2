#include "ez/MediaParserManager.h"

#include "ez/MediaParserStream.h"
#include "ez/MimeTypesDotIniParser.h"

#include "ezPlatform/base/Log.h"
#include "ezPlatform/containers/CustomHashTable.h"
#include "ezPlatform/media/MediaInfo.h"

#include "support/AwkwardStream.h"
#include "support/Catchers.h"
#include "support/Record.h"
#include "support/ScriptedParser.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
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

/// A stream that knows more of its media than its bytes, and that stands somewhere.
class FactStream : public AwkwardStream {
public:
    explicit FactStream(std::string aContent = "0123456789", const Delivery& aDelivery = Delivery(),
                        const char* aFullPath = "/media/song.mp3")
        : AwkwardStream(std::move(aContent), aDelivery, aFullPath) {}

    void SetTime(std::int64_t aSeconds) { mLastModificationTime = ezDateTime(aSeconds, 0); }
    /// Reads so many bytes from the start and forgets what it cost.
    void StandAt(std::size_t aPosition) {
        std::string skipped(aPosition, '\0');
        ASSERT_TRUE(Read(aPosition, skipped.data()));
        ResetCosts();
    }
    /// What CopyInfo adds of its own.
    std::function<void(ezMediaInfo&)> mFact;
    void CopyInfo(ezMediaInfo* anInfo) override {
        AwkwardStream::CopyInfo(anInfo);
        if (mFact) {
            mFact(*anInfo);
        }
    }
};

/// A record that counts those of its kind that live.
class CountedRecord : public ezMediaInfo {
public:
    explicit CountedRecord(int& aCount) : mCount(aCount) { ++mCount; }
    ~CountedRecord() override { --mCount; }

private:
    int& mCount;
};

ezEnvironment& WithTable(ezEnvironment& anEnvironment, const TemporaryFolder& aFolder,
                         const std::string& aTable) {
    aFolder.Write("mediaCTRLMediaTypes.ini", aTable);
    return anEnvironment.Set("ReadOnlyConfigPath", aFolder.GetPath())
        .Set("ReadWriteConfigPath", aFolder.GetPath());
}

/// What was asked while a parser was added is of no interest to most tests.
template <typename Manager>
ScriptedParser* Add(Manager& aManager, ParserTrace& aTrace, ScriptedParser* aParser) {
    EXPECT_TRUE(aManager.Add(aParser));
    aTrace.clear();
    return aParser;
}

Texts MimeTypesFiledFor(const char* aDLNAInfo) {
    ParserTrace trace;
    OpenManager manager;
    ScriptedParser* parser = (new ScriptedParser(trace, "p", "mp3"))->Declaring(aDLNAInfo);
    manager.Add(parser);
    Texts keys = OpenManager::KeysOf(manager.mParserListByMimeType);
    for (const std::string& key : keys) {
        const ezParserList* list = manager.ParserListFromMimeType(key.c_str(), false);
        EXPECT_EQ(list->size(), 1U) << key; // filed once, however often declared
        EXPECT_EQ((*list)[0], parser) << key;
    }
    return keys;
}

} // namespace

static_assert(std::has_virtual_destructor<ezMediaParserManager>::value, "");
static_assert(!std::is_base_of<ezBaseParser, ezMediaParserManager>::value, "called by hosts, filed nowhere");

TEST(MediaParserManager, OperationsAndFieldsStandInOrder) {
    EXPECT_EQ(VirtualSlotOf(&ezMediaParserManager::Parse), 2U); // after the destructor's two
    EXPECT_EQ(VirtualSlotOf(&ezMediaParserManager::AdjustDLNAInfo), 3U);
    EXPECT_EQ(VirtualSlotOf(&ezMediaParserManager::ParseFromType), 4U);
    EXPECT_EQ(VirtualSlotOf(&ezMediaParserManager::ParseCoverArt), 5U);
    const OpenManager manager;
    EXPECT_TRUE(AreInOrder({&manager.mParserListByType, &manager.mParserListByMimeType, &manager.mDoneParsers,
                            &manager.mEnvironmentInfo, &manager.mMimeTypesDotIniParser,
                            &manager.mDLNAMediaMapperParser}));
}

TEST(MediaParserManager, IsBuiltEmpty) {
    const ezEnvironment environment;
    const OpenManager manager(environment.Get());
    ASSERT_NE(manager.mParserListByType, nullptr);
    ASSERT_NE(manager.mParserListByMimeType, nullptr);
    EXPECT_TRUE(OpenManager::KeysOf(manager.mParserListByType).empty());
    EXPECT_TRUE(OpenManager::KeysOf(manager.mParserListByMimeType).empty());
    EXPECT_TRUE(manager.mDoneParsers.empty());
    EXPECT_EQ(manager.mEnvironmentInfo, environment.Get());
    EXPECT_EQ(manager.GetMimeTypesDotIniParser(), nullptr);
}

TEST(MediaParserManager, NullIsNotAdded) {
    OpenManager manager;
    EXPECT_FALSE(manager.Add(nullptr));
    EXPECT_TRUE(OpenManager::KeysOf(manager.mParserListByType).empty());
}

TEST(MediaParserManager, AddingHandsOverManagerAndEnvironmentWhateverTheParserHad) {
    ParserTrace trace;
    ezEnvironment own;
    own.Set("CTTContext", 5);
    ezEnvironment shared;
    shared.Set("CTTContext", 7);
    OpenManager with(shared.Get());
    ScriptedParser* first = Add(with, trace, new ScriptedParser(trace, "first", "mp3", false, own.Get()));
    ScriptedParser* second = Add(with, trace, new ScriptedParser(trace, "second", "*", false, nullptr));
    EXPECT_EQ(first->mManager, &with);
    EXPECT_EQ(second->mManager, &with);
    EXPECT_EQ(first->mEnvironmentInfo, shared.Get());
    EXPECT_EQ(second->mEnvironmentInfo, shared.Get());
    EXPECT_EQ(first->GetCTTContext(), 7U);

    OpenManager without;
    ScriptedParser* third = Add(without, trace, new ScriptedParser(trace, "third", "mp3", false, own.Get()));
    EXPECT_EQ(third->mManager, &without);
    EXPECT_EQ(third->mEnvironmentInfo, nullptr);
}

TEST(MediaParserManager, EnvironmentIsThereBeforeTheParserIsAskedWhatItDeclares) {
    ParserTrace trace;
    ezEnvironment environment;
    OpenManager manager(environment.Get());
    ScriptedParser* parser = new ScriptedParser(trace, "p", "mp3");
    parser->Calling([&] {
        EXPECT_EQ(parser->mManager, &manager);
        EXPECT_EQ(parser->mEnvironmentInfo, environment.Get());
    });
    manager.Add(parser);
    EXPECT_EQ(trace, ParserTrace{"declare p"}); // once
}

TEST(MediaParserManager, TypesAreFiledInLowerCaseAndFoundInAnyCase) {
    ParserTrace trace;
    OpenManager manager;
    ScriptedParser* upper =
        Add(manager, trace, (new ScriptedParser(trace, "upper", "MP3"))->Answering("audio/mpeg"));
    ScriptedParser* lower = Add(manager, trace, new ScriptedParser(trace, "lower", "mp3"));
    EXPECT_EQ(OpenManager::KeysOf(manager.mParserListByType), Texts{"mp3"});
    const ezParserList* list = manager.ParserListFromType("mP3", false);
    ASSERT_NE(list, nullptr);
    ASSERT_EQ(list->size(), 2U);
    EXPECT_EQ((*list)[0], upper);
    EXPECT_EQ((*list)[1], lower);

    LogCatcher log;
    FactStream stream;
    EXPECT_EQ(DumpRecord(Record(manager.ParseFromType("Mp3", stream)).get()), "mt=\"audio/mpeg\"\n");
    // The type asked for and that of the parser stand as they were written.
    EXPECT_EQ(log.Texts(),
              (Texts{"ezMediaParserManager: Parsing type: Mp3\n", "ezMediaParserManager: Winner: MP3\n"}));
}

TEST(MediaParserManager, ListsAreMadeOnlyWhereTheyAreAskedFor) {
    OpenManager manager;
    EXPECT_EQ(manager.ParserListFromType("mp3", false), nullptr);
    EXPECT_EQ(manager.ParserListFromMimeType("audio/mpeg", false), nullptr);
    EXPECT_TRUE(OpenManager::KeysOf(manager.mParserListByType).empty());
    EXPECT_TRUE(OpenManager::KeysOf(manager.mParserListByMimeType).empty());
    FactStream stream;
    EXPECT_EQ(manager.ParseFromType("mp3", stream), nullptr);
    EXPECT_EQ(manager.ParseCoverArt("audio/mpeg", stream), nullptr);
    EXPECT_TRUE(OpenManager::KeysOf(manager.mParserListByType).empty());
    EXPECT_TRUE(OpenManager::KeysOf(manager.mParserListByMimeType).empty());

    ezParserList* list = manager.ParserListFromType("MP3", true);
    ASSERT_NE(list, nullptr);
    EXPECT_TRUE(list->empty());
    EXPECT_EQ(manager.ParserListFromType("mp3", true), list);
    EXPECT_EQ(manager.ParserListFromType("mp3", false), list);
    EXPECT_EQ(manager.ParserListFrom(manager.mParserListByType, "Mp3", false, false), list);
    ezParserList* byMimeType = manager.ParserListFromMimeType("Audio/MPEG", true);
    ASSERT_NE(byMimeType, nullptr);
    EXPECT_EQ(manager.ParserListFrom(manager.mParserListByMimeType, "audio/mpeg", false, true), byMimeType);
    EXPECT_EQ(OpenManager::KeysOf(manager.mParserListByType), Texts{"mp3"});
    EXPECT_EQ(OpenManager::KeysOf(manager.mParserListByMimeType), Texts{"audio/mpeg"});
}

TEST(MediaParserManager, AListOwnsItsParsersWhereItWasToldTo) {
    ParserTrace trace;
    ScriptedParser kept(trace, "kept", "x");
    {
        OpenManager manager;
        manager.ParserListFrom(manager.mParserListByType, "borrowing", true, false)->push_back(&kept);
        manager.ParserListFromMimeType("audio/borrowing", true)->push_back(&kept);
        manager.ParserListFrom(manager.mParserListByMimeType, "owning", true, true)
            ->push_back(new ScriptedParser(trace, "owned by mime type", "x"));
        manager.ParserListFromType("owning", true)
            ->push_back(new ScriptedParser(trace, "owned by type", "x"));
    }
    // The table of the MIME types goes first.
    EXPECT_EQ(trace, (ParserTrace{"delete owned by mime type", "delete owned by type"}));
}

TEST(MediaParserManager, DeletesEveryParserOnceHoweverManyMimeTypesItDeclares) {
    ParserTrace trace;
    {
        OpenManager manager;
        manager.Add((new ScriptedParser(trace, "first", "mp3"))->Declaring("audio/mpeg:*,audio/mp3:*"));
        manager.Add((new ScriptedParser(trace, "second", "*"))->Declaring("audio/mpeg:*"));
        manager.Add(new ScriptedParser(trace, "third", "MP3"));
        trace.clear();
    }
    EXPECT_EQ(trace, (ParserTrace{"delete first", "delete third", "delete second"}));
}

TEST(MediaParserManager, AParserAddedTwiceIsTriedOnceAndDeletedOnce) {
    ParserTrace trace;
    {
        OpenManager manager;
        ScriptedParser* parser = (new ScriptedParser(trace, "p", "*"))->Declaring("audio/mpeg:*");
        EXPECT_TRUE(manager.Add(parser));
        EXPECT_TRUE(manager.Add(parser)); // nothing looks for doubles here
        EXPECT_EQ(manager.ParserListFromType("*", false)->size(), 2U);
        EXPECT_EQ(manager.ParserListFromMimeType("audio/mpeg", false)->size(), 1U); // but here
        trace.clear();
        FactStream stream;
        EXPECT_EQ(manager.Parse(stream), nullptr);
        EXPECT_EQ(trace, ParserTrace{"parse p @0"});
        trace.clear();
    }
    EXPECT_EQ(trace, ParserTrace{"delete p"});
}

TEST(MediaParserManager, FilesUnderEveryDeclaredMimeType) {
    EXPECT_EQ(MimeTypesFiledFor("audio/mpeg:DLNA.ORG_PN=MP3,audio/x-mpeg:*"),
              (Texts{"audio/mpeg", "audio/x-mpeg"}));
    EXPECT_EQ(MimeTypesFiledFor("audio/L16;rate=44100;channels=1:DLNA.ORG_PN=LPCM"),
              Texts{"audio/l16;rate=44100;channels=1"});
    EXPECT_EQ(MimeTypesFiledFor("AUDIO/Mpeg:*"), Texts{"audio/mpeg"});
}

TEST(MediaParserManager, EmptyInfoFilesNothing) {
    for (const char* info : {"", ":", "::", ",", ",,:", ":a/b", ":*,:*"}) {
        EXPECT_EQ(MimeTypesFiledFor(info), Texts{}) << info;
    }
}

TEST(MediaParserManager, AnEntryWhoseTypeHasNoSlashIsIgnored) {
    EXPECT_EQ(MimeTypesFiledFor("mp3:*,audio/mpeg:*"), Texts{"audio/mpeg"});
    EXPECT_EQ(MimeTypesFiledFor("audio/mpeg:*,mp3:*"), Texts{"audio/mpeg"});
    EXPECT_EQ(MimeTypesFiledFor("mp3:a/b"), Texts{}); // a slash after the colon does not count
}

TEST(MediaParserManager, AnEntryWithoutColonRunsOnIntoItsSuccessor) {
    EXPECT_EQ(MimeTypesFiledFor("audio/mpeg"), Texts{"audio/mpeg"});
    EXPECT_EQ(MimeTypesFiledFor("audio/a,audio/b:*"), (Texts{"audio/a,audio/b", "audio/b"}));
    EXPECT_EQ(MimeTypesFiledFor("plain,audio/b:*"), (Texts{"plain,audio/b", "audio/b"}));
    EXPECT_EQ(MimeTypesFiledFor(",audio/b:*"), (Texts{",audio/b", "audio/b"}));
    EXPECT_EQ(MimeTypesFiledFor("audio/a:*,audio/b"), (Texts{"audio/a", "audio/b"}));
    EXPECT_EQ(MimeTypesFiledFor("audio/a,audio/b"), (Texts{"audio/a,audio/b", "audio/b"}));
}

TEST(MediaParserManager, CommasAtTheEndEndTheList) {
    EXPECT_EQ(MimeTypesFiledFor("audio/b:*,"), Texts{"audio/b"});
    EXPECT_EQ(MimeTypesFiledFor("audio/b:*,,"), Texts{"audio/b"});
    EXPECT_EQ(MimeTypesFiledFor("audio/b:*,,audio/c:*"), (Texts{"audio/b", ",audio/c", "audio/c"}));
}

TEST(MediaParserManager, DoubledEntriesFileOnce) {
    EXPECT_EQ(MimeTypesFiledFor("audio/b:x,audio/b:y,AUDIO/B:z"), Texts{"audio/b"});
    ParserTrace trace;
    OpenManager manager;
    ScriptedParser* parser = (new ScriptedParser(trace, "p", "mp3"))->Declaring("audio/b:*");
    manager.Add(parser);
    manager.AddToMimeTypeList(parser);
    EXPECT_EQ(manager.ParserListFromMimeType("audio/b", false)->size(), 1U);
}

TEST(MediaParserManager, ALongDeclarationIsFiledInReasonableTime) {
    std::string info;
    for (int i = 0; i < 20000; ++i) {
        info += "audio/x" + std::to_string(i) + ":DLNA.ORG_PN=X,";
    }
    EXPECT_EQ(MimeTypesFiledFor(info.c_str()).size(), 20000U);
}

TEST(MediaParserManager, AddStandardParsersAddsTheIniParserOnce) {
    const TemporaryFolder folder;
    ezEnvironment environment;
    OpenManager manager(WithTable(environment, folder, "").Get());
    const LogCatcher quiet;
    AssertCatcher assertions;
    manager.AddStandardParsers(kParseOption_Default);
    ezMimeTypesDotIniParser* parser = manager.GetMimeTypesDotIniParser();
    ASSERT_NE(parser, nullptr);
    EXPECT_EQ(parser, manager.mMimeTypesDotIniParser);
    EXPECT_TRUE(assertions.Failures().empty());
    const ezParserList* list = manager.ParserListFromType("*", false);
    ASSERT_NE(list, nullptr);
    ASSERT_EQ(list->size(), 1U);
    EXPECT_EQ((*list)[0], parser);

    manager.AddStandardParsers(kParseOption_ParseFullFileIfVBR);
    EXPECT_EQ(assertions.Failures(), Asserted("mMimeTypesDotIniParser == NULL @ MediaParserManager"));
    EXPECT_EQ(manager.GetMimeTypesDotIniParser(), parser);
    EXPECT_EQ(list->size(), 1U);
    EXPECT_FALSE(parser->IsParseFullFileIfVBR());
}

TEST(MediaParserManager, ParseOptionsReachTheIniParser) {
    const TemporaryFolder folder;
    ezEnvironment environment;
    WithTable(environment, folder, "[MimeTypes]\nmp3=mp3@audio/mpeg@item.audioItem\n");
    {
        OpenManager manager(environment.Get());
        manager.AddStandardParsers(kParseOption_ParseFullFileIfVBR);
        EXPECT_TRUE(manager.GetMimeTypesDotIniParser()->IsParseFullFileIfVBR());
    }
    for (const int options : {kParseOption_Default, kParseOption_ParseWithAllParserIfFailed}) {
        OpenManager manager(environment.Get());
        manager.AddStandardParsers(options);
        FactStream stream("", Delivery(), "/media/song.unknown");
        EXPECT_EQ(manager.Parse(stream), nullptr);
        EXPECT_EQ(manager.TypesAsked(), options == kParseOption_Default ? Texts{"*"} : (Texts{"*", "mp3"}));
    }
}

TEST(MediaParserManagerParseFromType, TriesInOrderOfRegistrationUntilOneAnswers) {
    ParserTrace trace;
    OpenManager manager;
    Add(manager, trace, new ScriptedParser(trace, "first", "mp3"));
    Add(manager, trace, (new ScriptedParser(trace, "other", "ogg"))->Answering("audio/ogg"));
    Add(manager, trace, (new ScriptedParser(trace, "second", "mp3"))->Answering("audio/second"));
    Add(manager, trace, (new ScriptedParser(trace, "third", "mp3"))->Answering("audio/third"));
    LogCatcher log;
    FactStream stream;
    EXPECT_EQ(DumpRecord(Record(manager.ParseFromType("mp3", stream)).get()), "mt=\"audio/second\"\n");
    EXPECT_EQ(trace, (ParserTrace{"parse first @0", "parse second @0"}));
    EXPECT_EQ(log.Texts(),
              (Texts{"ezMediaParserManager: Parsing type: mp3\n", "ezMediaParserManager: Winner: mp3\n"}));
    for (const LogCatcher::Line& line : log.Lines()) {
        EXPECT_EQ(line.mLevel, 4);
        EXPECT_EQ(line.mModule, 10);
    }
}

TEST(MediaParserManagerParseFromType, WithoutAnswerOrListItSaysSo) {
    ParserTrace trace;
    OpenManager manager;
    Add(manager, trace, new ScriptedParser(trace, "first", "mp3"));
    for (const char* type : {"mp3", "ogg", "", "*"}) {
        LogCatcher log;
        FactStream stream;
        EXPECT_EQ(manager.ParseFromType(type, stream), nullptr);
        EXPECT_EQ(log.Texts(), (Texts{std::string("ezMediaParserManager: Parsing type: ") + type + "\n",
                                      std::string("ezMediaParserManager: No info for type ") + type + "\n"}));
        for (const LogCatcher::Line& line : log.Lines()) {
            EXPECT_EQ(line.mLevel, 4);
            EXPECT_EQ(line.mModule, 10);
        }
    }
}

TEST(MediaParserManagerParseFromType, OnlyAddsToTheParsersDone) {
    ParserTrace trace;
    OpenManager manager;
    ScriptedParser* first = Add(manager, trace, new ScriptedParser(trace, "first", "a"));
    ScriptedParser* second =
        Add(manager, trace, (new ScriptedParser(trace, "second", "b"))->Answering("audio/b"));
    ScriptedParser* third = Add(manager, trace, new ScriptedParser(trace, "third", "b"));
    FactStream stream;
    EXPECT_EQ(manager.ParseFromType("a", stream), nullptr);
    EXPECT_NE(Record(manager.ParseFromType("b", stream)), nullptr);
    ASSERT_EQ(manager.mDoneParsers.size(), 2U);
    EXPECT_EQ(manager.mDoneParsers[0], first);
    EXPECT_EQ(manager.mDoneParsers[1], second);
    trace.clear();
    // Asked again, without a request that begins anew, only what has not run yet runs.
    EXPECT_EQ(manager.ParseFromType("a", stream), nullptr);
    EXPECT_EQ(manager.ParseFromType("b", stream), nullptr);
    EXPECT_EQ(trace, ParserTrace{"parse third @0"});
    ASSERT_EQ(manager.mDoneParsers.size(), 3U);
    EXPECT_EQ(manager.mDoneParsers[2], third);
}

TEST(MediaParserManagerParseFromType, EveryParserStartsWhereTheFirstDidAndTheStreamEndsThere) {
    for (const bool fAnswered : {false, true}) {
        ParserTrace trace;
        OpenManager manager;
        Add(manager, trace, new ScriptedParser(trace, "first", "*"));
        Add(manager, trace, new ScriptedParser(trace, "second", "*"));
        ScriptedParser* third = Add(manager, trace, new ScriptedParser(trace, "third", "*"));
        if (fAnswered) {
            third->Answering("audio/mpeg");
        }
        FactStream stream;
        stream.StandAt(4);
        const Record record(manager.ParseFromType("*", stream));
        EXPECT_EQ(record != nullptr, fAnswered);
        EXPECT_EQ(trace, (ParserTrace{"parse first @4", "parse second @4", "parse third @4"}));
        EXPECT_EQ(stream.Tell(), 4U);
        EXPECT_EQ(stream.GetSourcePosition(), 4U);
        // One seek that happens at once after each of the three.
        EXPECT_EQ(stream.GetCosts().mImmediateSeeks, 3U);
    }
}

TEST(MediaParserManagerParseFromType, PositionsBeyond32BitsAreKept) {
    ParserTrace trace;
    OpenManager manager;
    Add(manager, trace, new ScriptedParser(trace, "first", "*"));
    Add(manager, trace, new ScriptedParser(trace, "second", "*"));
    /// A file without bytes that lets itself be moved anywhere.
    class EndlessStream : public ezMediaParserStream {
    protected:
        bool MediaSeek(const ezuint64& /*anOffset*/, bool /*afSeekImmediate*/) override { return true; }
        ezFileOffset MediaRead(void* /*aBuffer*/, std::size_t aSize) override {
            return static_cast<ezFileOffset>(aSize);
        }
    } stream;
    ASSERT_TRUE(stream.Seek(5000000000U, ezMediaParserStream::SeekFromStart, true));
    EXPECT_EQ(manager.ParseFromType("*", stream), nullptr);
    EXPECT_EQ(trace, (ParserTrace{"parse first @5000000000", "parse second @5000000000"}));
    EXPECT_EQ(stream.Tell(), 5000000000U);
}

TEST(MediaParserManagerParseFromType, AStreamThatDoesNotMoveBackKeepsTheAnswer) {
    ParserTrace trace;
    OpenManager manager;
    Add(manager, trace, (new ScriptedParser(trace, "first", "*"))->Answering("audio/mpeg"));
    Delivery still;
    still.mfSeekable = false;
    FactStream stream("0123456789", still);
    EXPECT_NE(Record(manager.ParseFromType("*", stream)), nullptr);
}

TEST(MediaParserManagerParse, WithoutParsersGivesNull) {
    OpenManager manager;
    LogCatcher log;
    FactStream stream;
    EXPECT_EQ(manager.Parse(stream), nullptr);
    EXPECT_EQ(log.Texts(), (Texts{"ezMediaParserManager: Parsing type: *\n",
                                  "ezMediaParserManager: No info for type *\n"}));
    EXPECT_EQ(stream.GetCosts().mReads, 0U);
}

TEST(MediaParserManagerParse, AsksTheWildcardParsersThroughTheVirtualOperationAndNoOthers) {
    ParserTrace trace;
    OpenManager manager;
    Add(manager, trace, (new ScriptedParser(trace, "mp3", "mp3"))->Answering("audio/mpeg"));
    Add(manager, trace, new ScriptedParser(trace, "any", "*"));
    FactStream stream;
    EXPECT_EQ(manager.Parse(stream), nullptr); // not by the extension
    EXPECT_EQ(trace, ParserTrace{"parse any @0"});
    EXPECT_EQ(manager.TypesAsked(), Texts{"*"});
}

TEST(MediaParserManagerParse, AnswerIsCompletedByTheStreamAndLogged) {
    ParserTrace trace;
    OpenManager manager;
    Add(manager, trace, new ScriptedParser(trace, "first", "*"));
    Add(manager, trace, (new ScriptedParser(trace, "second", "*"))->AnsweringWith([](ezMediaParserStream&) {
        ezMediaInfo* info = new ezMediaInfo;
        info->Set("mt", "audio/mpeg", true);
        info->Set("du", 5, true);
        info->mTitle = "T";
        info->mCreator = "C";
        info->mGenre = "G";
        info->mAlbum = "A";
        return info;
    }));
    LogCatcher log;
    FactStream stream;
    stream.SetTime(1234567890);
    EXPECT_EQ(DumpRecord(Record(manager.Parse(stream)).get()), "du=5\n"
                                                               "fe=\"mp3\"\n"
                                                               "fs=10\n"
                                                               "mt=\"audio/mpeg\"\n"
                                                               "path=\"/media/song.mp3\"\n"
                                                               "modified=1234567890\n"
                                                               "title=\"T\"\n"
                                                               "creator=\"C\"\n"
                                                               "genre=\"G\"\n"
                                                               "album=\"A\"\n");
    // The last message has no prefix on the class, unlike the others.
    EXPECT_EQ(
        log.Texts(),
        (Texts{"ezMediaParserManager: Parsing type: *\n", "ezMediaParserManager: Winner: *\n",
               "MediaParserManager: Parsed: Title: T, Creator: C, Genre: G, Album: A, Other: du=5, fe=mp3, "
               "fs=10, mt=audio/mpeg\n"}));
    for (const LogCatcher::Line& line : log.Lines()) {
        EXPECT_EQ(line.mLevel, 4);
        EXPECT_EQ(line.mModule, 10);
    }
    EXPECT_EQ(stream.Tell(), 0U);
}

TEST(MediaParserManagerParse, WhatTheParserSaysOfSizeAndExtensionStays) {
    ParserTrace trace;
    OpenManager manager;
    Add(manager, trace, (new ScriptedParser(trace, "p", "*"))->AnsweringWith([](ezMediaParserStream&) {
        ezMediaInfo* info = new ezMediaInfo;
        info->Set("mt", "audio/mpeg", true);
        info->Set("fs", 77, true);
        info->Set("fe", "mpga", true);
        info->mFullPath = "elsewhere";
        return info;
    }));
    FactStream stream;
    EXPECT_EQ(DumpRecord(Record(manager.Parse(stream)).get()),
              "fe=\"mpga\"\nfs=77\nmt=\"audio/mpeg\"\npath=\"/media/song.mp3\"\n");
}

TEST(MediaParserManagerParse, LogsNothingAtALowerLevel) {
    ParserTrace trace;
    OpenManager manager;
    Add(manager, trace,
        (new ScriptedParser(trace, "p", "*", true))->Answering("audio/mpeg")->Declaring("audio/mpeg:*"));
    for (const int level : {0, 1, 2, 3, 4}) {
        LogCatcher log(level);
        FactStream stream;
        EXPECT_NE(Record(manager.Parse(stream)), nullptr);
        EXPECT_EQ(manager.ParseFromType("mp3", stream), nullptr);
        EXPECT_NE(Record(manager.ParseCoverArt("audio/mpeg", stream)), nullptr);
        EXPECT_TRUE(log.Lines().empty()) << level;
    }
}

TEST(MediaParserManagerParse, ARecordWithoutMimeTypeIsDeleted) {
    ParserTrace trace;
    OpenManager manager;
    int alive = 0;
    Add(manager, trace, (new ScriptedParser(trace, "first", "*"))->AnsweringWith([&](ezMediaParserStream&) {
        ezMediaInfo* info = new CountedRecord(alive);
        info->Set("cn", "item.audioItem", true);
        return info;
    }));
    Add(manager, trace, (new ScriptedParser(trace, "second", "*"))->Answering("audio/mpeg"));
    LogCatcher log;
    FactStream stream;
    EXPECT_EQ(manager.Parse(stream), nullptr);
    EXPECT_EQ(alive, 0);
    EXPECT_EQ(trace, ParserTrace{"parse first @0"}); // it has won all the same
    // It is looked at only after it was completed and logged.
    EXPECT_EQ(
        log.Texts(),
        (Texts{"ezMediaParserManager: Parsing type: *\n", "ezMediaParserManager: Winner: *\n",
               "MediaParserManager: Parsed: Title: , Creator: , Genre: , Album: , Other: cn=item.audioItem, "
               "fe=mp3, fs=10\n"}));
}

TEST(MediaParserManagerParse, AValidRecordIsTheCallers) {
    ParserTrace trace;
    OpenManager manager;
    int alive = 0;
    Add(manager, trace, (new ScriptedParser(trace, "p", "*"))->AnsweringWith([&](ezMediaParserStream&) {
        ezMediaInfo* info = new CountedRecord(alive);
        info->Set("mt", "audio/mpeg", true);
        return info;
    }));
    FactStream stream;
    {
        const Record record(manager.Parse(stream));
        EXPECT_EQ(alive, 1);
    }
    EXPECT_EQ(alive, 0);
}

TEST(MediaParserManagerParse, WhatTheStreamAddsCountsForValidity) {
    ParserTrace trace;
    OpenManager manager;
    Add(manager, trace, (new ScriptedParser(trace, "p", "*"))->AnsweringWith([](ezMediaParserStream&) {
        return new ezMediaInfo;
    }));
    FactStream stream;
    stream.mFact = [](ezMediaInfo& anInfo) { anInfo.Set("mt", "audio/from-stream", false); };
    EXPECT_EQ(DumpRecord(Record(manager.Parse(stream)).get()),
              "fe=\"mp3\"\nfs=10\nmt=\"audio/from-stream\"\npath=\"/media/song.mp3\"\n");
}

TEST(MediaParserManagerParse, BeginsANewRequestEveryTime) {
    ParserTrace trace;
    OpenManager manager;
    ScriptedParser* parser = Add(manager, trace, new ScriptedParser(trace, "p", "*"));
    FactStream stream;
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(manager.Parse(stream), nullptr);
        ASSERT_EQ(manager.mDoneParsers.size(), 1U);
        EXPECT_EQ(manager.mDoneParsers[0], parser);
    }
    EXPECT_EQ(trace, (ParserTrace{"parse p @0", "parse p @0", "parse p @0"}));
}

TEST(MediaParserManagerParse, NestedCallsRunNoParserTwice) {
    ParserTrace trace;
    OpenManager manager;
    FactStream stream;
    ScriptedParser* first = Add(manager, trace, new ScriptedParser(trace, "first", "*"));
    ScriptedParser* second = Add(manager, trace, new ScriptedParser(trace, "second", "*"));
    ScriptedParser* mp3 = Add(manager, trace, new ScriptedParser(trace, "mp3", "mp3"));
    first->Calling([&] {
        // A wildcard parser that asks for its own type meets the others, not itself.
        EXPECT_EQ(manager.ParseFromType("*", stream), nullptr);
        EXPECT_EQ(manager.ParseFromType("mp3", stream), nullptr);
        EXPECT_EQ(manager.ParseFromType("MP3", stream), nullptr);
        EXPECT_EQ(manager.ParseFromType("*", stream), nullptr);
    });
    EXPECT_EQ(manager.Parse(stream), nullptr);
    EXPECT_EQ(trace, (ParserTrace{"parse first @0", "parse second @0", "parse mp3 @0"}));
    ASSERT_EQ(manager.mDoneParsers.size(), 3U);
    EXPECT_EQ(manager.mDoneParsers[0], first);
    EXPECT_EQ(manager.mDoneParsers[1], second);
    EXPECT_EQ(manager.mDoneParsers[2], mp3);
}

TEST(MediaParserManagerParse, OfManyParsersEachRunsOnce) {
    ParserTrace trace;
    OpenManager manager;
    FactStream stream;
    ParserTrace expected;
    for (int i = 0; i < 60; ++i) {
        ScriptedParser* parser = new ScriptedParser(trace, std::to_string(i), "*");
        manager.Add(parser);
        manager.Add(parser);
        // Each asks for all the others.
        parser->Calling([&] { EXPECT_EQ(manager.ParseFromType("*", stream), nullptr); });
        expected.push_back("parse " + std::to_string(i) + " @0");
    }
    trace.clear();
    EXPECT_EQ(manager.Parse(stream), nullptr);
    EXPECT_EQ(trace, expected);
}

TEST(MediaParserManagerParse, ParsersAddedWhileTheListIsWalkedTakeTheirTurnNextTime) {
    ParserTrace trace;
    OpenManager manager;
    FactStream stream;
    ScriptedParser* first = Add(manager, trace, new ScriptedParser(trace, "first", "*"));
    Add(manager, trace, new ScriptedParser(trace, "second", "*"));
    bool fAdded = false;
    first->Calling([&] {
        if (fAdded) {
            return;
        }
        fAdded = true;
        for (int i = 0; i < 50; ++i) { // enough for the list to move in memory
            manager.Add(new ScriptedParser(trace, "new", "*"));
        }
        // A type that is looked at only from now on has them at once.
        manager.Add(new ScriptedParser(trace, "late", "late"));
        trace.clear();
        EXPECT_EQ(manager.ParseFromType("late", stream), nullptr);
        EXPECT_EQ(trace, ParserTrace{"parse late @0"});
    });
    EXPECT_EQ(manager.Parse(stream), nullptr);
    EXPECT_EQ(trace, (ParserTrace{"parse late @0", "parse second @0"}));
    trace.clear();
    EXPECT_EQ(manager.Parse(stream), nullptr);
    EXPECT_EQ(trace.size(), 52U);
}

TEST(MediaParserManagerParse, TwoManagersSideBySideShareNothing) {
    ParserTrace trace;
    ezEnvironment one;
    ezEnvironment two;
    OpenManager first(one.Get());
    {
        OpenManager second(two.Get());
        ScriptedParser* inFirst =
            Add(first, trace, (new ScriptedParser(trace, "in first", "*"))->Answering("audio/first"));
        ScriptedParser* inSecond =
            Add(second, trace, (new ScriptedParser(trace, "in second", "*"))->Answering("audio/second"));
        EXPECT_EQ(inFirst->mManager, &first);
        EXPECT_EQ(inSecond->mManager, &second);
        FactStream stream;
        EXPECT_STREQ(Record(first.Parse(stream))->GetCString("mt", "").c_str(), "audio/first");
        EXPECT_EQ(first.mDoneParsers.size(), 1U);
        EXPECT_TRUE(second.mDoneParsers.empty());
        // A request of the one within a request of the other.
        inFirst->Calling([&] {
            EXPECT_STREQ(Record(second.Parse(stream))->GetCString("mt", "").c_str(), "audio/second");
        });
        trace.clear();
        EXPECT_STREQ(Record(first.Parse(stream))->GetCString("mt", "").c_str(), "audio/first");
        EXPECT_EQ(trace, (ParserTrace{"parse in first @0", "parse in second @0"}));
        inFirst->Calling(nullptr);
        trace.clear();
    }
    EXPECT_EQ(trace, ParserTrace{"delete in second"});
    FactStream stream;
    EXPECT_NE(Record(first.Parse(stream)), nullptr);
}

TEST(MediaParserManagerParse, MapperStepLeavesTheAnswerAsItIs) {
    OpenManager manager;
    FactStream stream;
    EXPECT_EQ(manager.MediaMapperValidate(stream, nullptr), nullptr);
    const Record record(new ezMediaInfo);
    EXPECT_EQ(manager.MediaMapperValidate(stream, record.get()), record.get());
    EXPECT_EQ(DumpRecord(record.get()), "");
}

TEST(MediaParserManagerIni, TypesOfTheTableAreTriedThroughTheVirtualOperation) {
    ParserTrace trace;
    const TemporaryFolder folder;
    ezEnvironment environment;
    OpenManager manager(
        WithTable(environment, folder, "[MimeTypes]\nMP3=mp3@audio/mpeg@item.audioItem@ID3, mpa\n").Get());
    manager.AddStandardParsers(kParseOption_Default);
    Add(manager, trace, new ScriptedParser(trace, "mp3", "mp3"));
    Add(manager, trace, new ScriptedParser(trace, "id3", "id3"));
    Add(manager, trace, (new ScriptedParser(trace, "mpa", "MPA"))->Answering("audio/x-mpa"));
    Add(manager, trace, (new ScriptedParser(trace, "last", "*"))->Answering("audio/never"));
    LogCatcher log;
    FactStream stream;
    const Record record(manager.Parse(stream));
    ASSERT_NE(record, nullptr);
    EXPECT_STREQ(record->GetCString("mt", "").c_str(), "audio/x-mpa");
    EXPECT_STREQ(record->GetCString("cn", "").c_str(), "item.audioItem");
    EXPECT_STREQ(record->GetCString("fe", "").c_str(), "mp3");
    EXPECT_EQ(record->GetUInt32("fs", 0), 10U);
    EXPECT_EQ(manager.TypesAsked(), (Texts{"*", "mp3", "id3", "mpa"}));
    EXPECT_EQ(trace, (ParserTrace{"parse mp3 @0", "parse id3 @0", "parse mpa @0"}));
    Texts texts = log.Texts();
    ASSERT_EQ(texts.size(), 9U);
    EXPECT_EQ(
        texts.back().rfind("MediaParserManager: Parsed: Title: , Creator: , Genre: , Album: , Other: ", 0),
        0U);
    texts.pop_back();
    EXPECT_EQ(texts, (Texts{
                         "ezMediaParserManager: Parsing type: *\n",
                         "ezMediaParserManager: Parsing type: mp3\n",
                         "ezMediaParserManager: No info for type mp3\n",
                         "ezMediaParserManager: Parsing type: id3\n",
                         "ezMediaParserManager: No info for type id3\n",
                         "ezMediaParserManager: Parsing type: mpa\n",
                         "ezMediaParserManager: Winner: MPA\n",
                         "ezMediaParserManager: Winner: *\n",
                     }));
    EXPECT_EQ(stream.Tell(), 0U);
    // One for each of the three, one for the ini parser itself.
    EXPECT_EQ(stream.GetCosts().mImmediateSeeks, 4U);
}

TEST(MediaParserManagerIni, AParserThatSeveralEntriesNameRunsOnce) {
    ParserTrace trace;
    const TemporaryFolder folder;
    ezEnvironment environment;
    OpenManager manager(WithTable(environment, folder,
                                  "[MimeTypes]\n"
                                  "mp3=mp3@audio/mpeg@item.audioItem@shared,SHARED,mp3\n"
                                  "mpa=mp3@audio/mpa@item.audioItem@shared\n"
                                  "shared=mp3@audio/shared@item.audioItem\n")
                            .Get());
    manager.AddStandardParsers(kParseOption_ParseWithAllParserEverytime);
    Add(manager, trace, new ScriptedParser(trace, "mp3", "mp3"));
    Add(manager, trace, new ScriptedParser(trace, "shared", "shared"));
    Add(manager, trace, new ScriptedParser(trace, "any", "*"));
    FactStream stream;
    stream.StandAt(2);
    // The last entry of the extension makes the record of its own.
    EXPECT_STREQ(Record(manager.Parse(stream))->GetCString("mt", "").c_str(), "audio/shared");
    EXPECT_EQ(trace, (ParserTrace{"parse mp3 @2", "parse shared @2"}));
    // All entries first, then those of the extension again: the types are asked for, the parsers are not.
    const Texts once = {"mp3", "shared", "shared", "mp3", "mpa", "shared", "shared"};
    Texts expected = {"*"};
    expected.insert(expected.end(), once.begin(), once.end());
    expected.insert(expected.end(), once.begin(), once.end());
    EXPECT_EQ(manager.TypesAsked(), expected);
    EXPECT_EQ(stream.Tell(), 2U);
    EXPECT_EQ(stream.GetSourcePosition(), 2U);
}

TEST(MediaParserManagerIni, ATypeThatLeadsBackToTheIniParserEnds) {
    ParserTrace trace;
    const TemporaryFolder folder;
    ezEnvironment environment;
    OpenManager manager(
        WithTable(environment, folder, "[MimeTypes]\nmp3=mp3@audio/mpeg@item.audioItem@*\n").Get());
    manager.AddStandardParsers(kParseOption_Default);
    Add(manager, trace, (new ScriptedParser(trace, "any", "*"))->Answering("audio/any"));
    FactStream stream;
    EXPECT_STREQ(Record(manager.Parse(stream))->GetCString("mt", "").c_str(), "audio/any");
    EXPECT_EQ(manager.TypesAsked(), (Texts{"*", "mp3", "*"}));
    EXPECT_EQ(trace, ParserTrace{"parse any @0"});
}

TEST(MediaParserManagerCoverArt, AnUnknownMimeTypeLeavesEverythingAlone) {
    ParserTrace trace;
    OpenManager manager;
    ScriptedParser* parser =
        Add(manager, trace,
            (new ScriptedParser(trace, "p", "*", true))->Answering("x/y")->Declaring("audio/mpeg:*"));
    FactStream stream;
    const Record record(manager.Parse(stream));
    trace.clear();
    LogCatcher log;
    for (const char* mimeType : {"audio/ogg", "", "audio", "mpeg", "audio/mpeg;x=1", "*"}) {
        EXPECT_EQ(manager.ParseCoverArt(mimeType, stream), nullptr) << mimeType;
    }
    EXPECT_TRUE(log.Lines().empty());
    EXPECT_TRUE(trace.empty());
    ASSERT_EQ(manager.mDoneParsers.size(), 1U);
    EXPECT_EQ(manager.mDoneParsers[0], parser);
}

TEST(MediaParserManagerCoverArt, TheFirstAbleParserThatAnswersWins) {
    ParserTrace trace;
    OpenManager manager;
    Add(manager, trace,
        (new ScriptedParser(trace, "unable", "mp3"))->Answering("audio/no")->Declaring("audio/mpeg:*"));
    Add(manager, trace, (new ScriptedParser(trace, "first", "*", true))->Declaring("audio/mpeg:*"));
    Add(manager, trace,
        (new ScriptedParser(trace, "elsewhere", "a", true))->Answering("audio/no")->Declaring("audio/ogg:*"));
    Add(manager, trace,
        (new ScriptedParser(trace, "second", "ID3", true))
            ->Answering("image/jpeg")
            ->Declaring("audio/mp3:*,audio/mpeg:*"));
    Add(manager, trace,
        (new ScriptedParser(trace, "third", "mp3", true))->Answering("audio/no")->Declaring("audio/mpeg:*"));
    FactStream stream;
    stream.StandAt(4);
    LogCatcher log;
    // As the parser gave it: nothing is added, nothing is asked of the stream.
    EXPECT_EQ(DumpRecord(Record(manager.ParseCoverArt("Audio/MPEG", stream)).get()), "mt=\"image/jpeg\"\n");
    EXPECT_EQ(trace, (ParserTrace{"parse first @4", "parse second @4"}));
    EXPECT_EQ(stream.Tell(), 4U);
    EXPECT_EQ(stream.GetSourcePosition(), 4U);
    EXPECT_EQ(stream.GetCosts().mImmediateSeeks, 2U);
    ASSERT_EQ(log.Texts(), Texts{"ezMediaParserManager: Cover Art Winner: ID3\n"});
    EXPECT_EQ(log.Lines()[0].mLevel, 4);
    EXPECT_EQ(log.Lines()[0].mModule, 10);
    EXPECT_TRUE(manager.TypesAsked().empty());
}

TEST(MediaParserManagerCoverArt, ParsersThatAreUnableGiveNull) {
    ParserTrace trace;
    OpenManager manager;
    Add(manager, trace,
        (new ScriptedParser(trace, "unable", "mp3"))->Answering("audio/no")->Declaring("audio/mpeg:*"));
    LogCatcher log;
    FactStream stream;
    EXPECT_EQ(manager.ParseCoverArt("audio/mpeg", stream), nullptr);
    EXPECT_TRUE(trace.empty());
    EXPECT_TRUE(log.Lines().empty());
    EXPECT_EQ(stream.GetCosts().mSeeks, 0U);
}

TEST(MediaParserManagerCoverArt, WithoutAnAnswerTheStreamStandsWhereItStood) {
    ParserTrace trace;
    OpenManager manager;
    Add(manager, trace, (new ScriptedParser(trace, "first", "mp3", true))->Declaring("audio/mpeg:*"));
    Add(manager, trace, (new ScriptedParser(trace, "second", "mp3", true))->Declaring("audio/mpeg:*"));
    FactStream stream;
    stream.StandAt(5);
    LogCatcher log;
    EXPECT_EQ(manager.ParseCoverArt("audio/mpeg", stream), nullptr);
    EXPECT_EQ(trace, (ParserTrace{"parse first @5", "parse second @5"}));
    EXPECT_EQ(stream.Tell(), 5U);
    EXPECT_EQ(stream.GetSourcePosition(), 5U);
    EXPECT_EQ(stream.GetCosts().mImmediateSeeks, 2U);
    EXPECT_TRUE(log.Lines().empty());
}

TEST(MediaParserManagerCoverArt, ParsersDoneAreEmptiedButNotConsulted) {
    ParserTrace trace;
    OpenManager manager;
    Add(manager, trace,
        (new ScriptedParser(trace, "p", "*", true))->Answering("image/jpeg")->Declaring("audio/mpeg:*"));
    FactStream stream;
    const Record parsed(manager.Parse(stream));
    ASSERT_EQ(manager.mDoneParsers.size(), 1U);
    for (int i = 0; i < 2; ++i) {
        EXPECT_NE(Record(manager.ParseCoverArt("audio/mpeg", stream)), nullptr);
        EXPECT_TRUE(manager.mDoneParsers.empty());
    }
    EXPECT_EQ(trace, (ParserTrace{"parse p @0", "parse p @0", "parse p @0"}));
}

TEST(MediaParserManagerCoverArt, ARecordWithoutMimeTypeIsGivenOut) {
    ParserTrace trace;
    OpenManager manager;
    Add(manager, trace,
        (new ScriptedParser(trace, "p", "mp3", true))
            ->AnsweringWith([](ezMediaParserStream&) { return new ezMediaInfo; })
            ->Declaring("audio/mpeg:*"));
    FactStream stream;
    EXPECT_EQ(DumpRecord(Record(manager.ParseCoverArt("audio/mpeg", stream)).get()), "");
}

TEST(MediaParserManagerCoverArt, ParsersAddedWhileTheListIsWalkedTakeTheirTurnNextTime) {
    ParserTrace trace;
    OpenManager manager;
    FactStream stream;
    ScriptedParser* first =
        Add(manager, trace, (new ScriptedParser(trace, "first", "mp3", true))->Declaring("audio/mpeg:*"));
    Add(manager, trace, (new ScriptedParser(trace, "second", "mp3", true))->Declaring("audio/mpeg:*"));
    first->Calling([&] {
        for (int i = 0; i < 50; ++i) {
            manager.Add((new ScriptedParser(trace, "new", "mp3", true))->Declaring("audio/mpeg:*"));
        }
        trace.clear();
    });
    EXPECT_EQ(manager.ParseCoverArt("audio/mpeg", stream), nullptr);
    EXPECT_EQ(trace, ParserTrace{"parse second @0"});
    first->Calling(nullptr);
    trace.clear();
    EXPECT_EQ(manager.ParseCoverArt("audio/mpeg", stream), nullptr);
    EXPECT_EQ(trace.size(), 52U);
}
