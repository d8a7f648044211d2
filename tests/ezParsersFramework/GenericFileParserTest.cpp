#include "ez/GenericFileParser.h"

#include "ezPlatform/media/MediaInfo.h"

#include "support/AwkwardStream.h"
#include "support/Catchers.h"
#include "support/Record.h"
#include "support/ScriptedParser.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>

namespace {

class HostFileParser : public ezGenericFileParser {
public:
    using ezGenericFileParser::ezGenericFileParser;

    bool AdjustDLNAInfo(ezMediaInfo* /*anInfo*/) override { return false; }

    using ezGenericFileParser::mEnvironmentInfo;
    using ezGenericFileParser::mExtension;
    using ezGenericFileParser::mItemClassName;
    using ezGenericFileParser::mManager;
    using ezGenericFileParser::mMimeType;
    using ezGenericFileParser::mName;
};

constexpr const char* kTrack = "object.item.audioItem.musicTrack";

std::string ParsePath(const char* anExtension, const char* aPath) {
    HostFileParser parser(anExtension, "audio/mpeg", kTrack, nullptr);
    AwkwardStream stream("content", Delivery(), aPath);
    return DumpRecord(Record(parser.Parse(stream)).get());
}

const char* const kAnswer = "cn=\"object.item.audioItem.musicTrack\"\nmt=\"audio/mpeg\"\n";

} // namespace

static_assert(std::is_abstract<ezGenericFileParser>::value, "a host supplies AdjustDLNAInfo");
static_assert(std::is_base_of<ezMediaParser, ezGenericFileParser>::value, "filed in a manager");
static_assert(std::is_constructible<HostFileParser, const ezCString&, const ezCString&, const ezCString&,
                                    ezPropertyList*>::value,
              "arguments in this order");

TEST(GenericFileParser, IsBuiltAsAWildcardParserWithoutCoverArt) {
    const ezEnvironment environment;
    HostFileParser parser("mp3", "audio/mpeg", kTrack, environment.Get());
    EXPECT_STREQ(parser.GetType().c_str(), "*");
    EXPECT_FALSE(parser.CanExtractCoverArt());
    EXPECT_EQ(parser.mEnvironmentInfo, environment.Get());
    EXPECT_EQ(parser.mManager, nullptr);
    EXPECT_STREQ(parser.mExtension.c_str(), "mp3");
    EXPECT_STREQ(parser.mMimeType.c_str(), "audio/mpeg");
    EXPECT_STREQ(parser.mItemClassName.c_str(), kTrack);
    EXPECT_TRUE(AreInOrder({&parser.mMimeType, &parser.mItemClassName, &parser.mExtension, &parser.mName}));
}

TEST(GenericFileParser, NameHasNoBlankAfterTheComma) {
    HostFileParser parser("mp3", "audio/mpeg", kTrack, nullptr);
    EXPECT_STREQ(parser.mName.c_str(),
                 "ezGenericFileParser(mp3 -> audio/mpeg,object.item.audioItem.musicTrack)");
    HostFileParser empty("", "", "", nullptr);
    EXPECT_STREQ(empty.mName.c_str(), "ezGenericFileParser( -> ,)");
}

TEST(GenericFileParser, AnswersItsExtensionWithMimeTypeAndClassAndNothingElse) {
    EXPECT_EQ(ParsePath("mp3", "/music/song.mp3"), kAnswer);
}

TEST(GenericFileParser, AnswersAnUpperCaseExtensionBecauseTheStreamLowersIt) {
    EXPECT_EQ(ParsePath("mp3", "/music/SONG.MP3"), kAnswer);
}

TEST(GenericFileParser, BuiltInUpperCaseItNeverAnswers) {
    for (const char* path : {"/music/song.mp3", "/music/song.MP3", "/music/song.Mp3"}) {
        EXPECT_EQ(ParsePath("MP3", path), "null\n") << path;
    }
}

TEST(GenericFileParser, ComparesTheWholeExtension) {
    for (const char* path : {"/music/song.mp", "/music/song.mp33", "/music/song.mp3.bak", "/music/song.amp3",
                             "/music/mp3/song.wav", "/music/song.mp3 "}) {
        EXPECT_EQ(ParsePath("mp3", path), "null\n") << path;
    }
}

TEST(GenericFileParser, GoesByTheStreamsExtensionNotByItsPath) {
    HostFileParser parser("mp3", "audio/mpeg", kTrack, nullptr);
    AwkwardStream stream("content", Delivery(), "/music/song.wav");
    stream.SetExtension("MP3");
    EXPECT_EQ(DumpRecord(Record(parser.Parse(stream)).get()), kAnswer);
    AwkwardStream other("content", Delivery(), "/music/song.mp3");
    other.SetExtension("wav");
    EXPECT_EQ(DumpRecord(Record(parser.Parse(other)).get()), "null\n");
}

TEST(GenericFileParser, BuiltForNoExtensionItAnswersAStreamWithout) {
    HostFileParser none("", "audio/mpeg", kTrack, nullptr);
    HostFileParser mp3("mp3", "audio/mpeg", kTrack, nullptr);
    AwkwardStream stream("content", Delivery(), "/music/song");
    stream.SetExtension("");
    EXPECT_EQ(DumpRecord(Record(none.Parse(stream)).get()), kAnswer);
    EXPECT_EQ(DumpRecord(Record(mp3.Parse(stream)).get()), "null\n");
}

TEST(GenericFileParser, ReadsNoContentAndLogsNothing) {
    LogCatcher log;
    for (const char* path : {"/music/song.mp3", "/music/song.wav"}) {
        HostFileParser parser("mp3", "audio/mpeg", kTrack, nullptr);
        AwkwardStream stream("content", Delivery(), path);
        const Record record(parser.Parse(stream));
        EXPECT_EQ(stream.GetCosts().mReads, 0U);
        EXPECT_EQ(stream.GetCosts().mSeeks, 0U);
        EXPECT_EQ(stream.Tell(), 0U);
    }
    EXPECT_TRUE(log.Lines().empty());
}

TEST(GenericFileParser, EveryAnswerIsANewRecord) {
    HostFileParser parser("mp3", "audio/mpeg", kTrack, nullptr);
    AwkwardStream stream("content", Delivery(), "/music/song.mp3");
    const Record first(parser.Parse(stream));
    const Record second(parser.Parse(stream));
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_NE(first, second);
}

TEST(GenericFileParser, DeclaresNothing) {
    HostFileParser parser("mp3", "audio/mpeg", kTrack, nullptr);
    EXPECT_TRUE(parser.GetDLNAInfo().IsEmpty());
}
