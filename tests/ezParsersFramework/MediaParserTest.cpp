#include "ez/MediaParser.h"

#include "ezPlatform/base/Log.h"
#include "ezPlatform/media/MediaInfo.h"

#include "support/AwkwardStream.h"
#include "support/Catchers.h"
#include "support/Record.h"
#include "support/ScriptedParser.h"
#include "support/ScriptedSystem.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace {

constexpr std::size_t kBegin = kezMediaParser_DefaultBeginBufferSize;
const char* const kWarning = "ezMediaParser: Unable to read from end\n";

class PlainMediaParser : public ezMediaParser {
public:
    using ezMediaParser::ezMediaParser;

    bool AdjustDLNAInfo(ezMediaInfo* /*anInfo*/) override { return false; }

    using ezMediaParser::IsBigEndianPlatform;
    using ezMediaParser::mManager;
    using ezMediaParser::Read;
};

/// Notes the blocks that it is shown and answers with the record that it was given.
class BlockParser : public ezMediaParser {
public:
    struct Blocks {
        std::string mBegin;
        std::string mEnd;
        std::uint64_t mSize;
    };

    explicit BlockParser(ezMediaInfo* anAnswer = nullptr)
        : ezMediaParser("block", nullptr, false), mAnswer(anAnswer) {}

    bool AdjustDLNAInfo(ezMediaInfo* /*anInfo*/) override { return false; }

    const std::vector<Blocks>& Shown() const { return mShown; }

protected:
    ezMediaInfo* Read(uint8* aBegin, std::size_t aBeginSize, uint8* aEnd, std::size_t aEndSize,
                      const ezuint64& aMediaSize) override {
        mShown.push_back({std::string(aBegin, aBegin + aBeginSize), std::string(aEnd, aEnd + aEndSize),
                          aMediaSize.ToUInt64()});
        return mAnswer;
    }

private:
    ezMediaInfo* mAnswer;
    std::vector<Blocks> mShown;
};

/// Bytes that tell their place.
std::string Content(std::size_t aSize) {
    std::string content(aSize, '\0');
    for (std::size_t i = 0; i < aSize; ++i) {
        content[i] = static_cast<char>(i * 7 + i / 251);
    }
    return content;
}

Delivery UnknownSize() {
    Delivery delivery;
    delivery.mfSizeKnown = false;
    return delivery;
}

Delivery FailingAt(std::size_t anOffset) {
    Delivery delivery;
    delivery.mFailingOffset = anOffset;
    return delivery;
}

} // namespace

static_assert(std::is_abstract<ezMediaParser>::value, "AdjustDLNAInfo is left to every parser");
static_assert(std::is_base_of<ezBaseParser, ezMediaParser>::value, "");
static_assert(
    std::is_same<decltype(&ezMediaParser::ParseFromStream),
                 ezMediaInfo* (ezMediaParser::*)(ezMediaParserStream&, std::size_t, std::size_t)>::value,
    "sizes of blocks are sizes in memory");

TEST(MediaParser, IsBuiltLikeItsBaseAndHasNoManager) {
    const ezEnvironment environment;
    for (const bool fCoverArt : {false, true}) {
        PlainMediaParser parser("avi", environment.Get(), fCoverArt);
        EXPECT_STREQ(parser.GetType().c_str(), "avi");
        EXPECT_EQ(parser.CanExtractCoverArt(), fCoverArt);
        EXPECT_EQ(parser.mManager, nullptr);
    }
}

TEST(MediaParser, OperationsStandInOrderAfterThoseOfTheBase) {
    EXPECT_EQ(VirtualSlotOf(&ezMediaParser::ParseFromStream), 5U);
    EXPECT_EQ(VirtualSlotOf(&PlainMediaParser::Read), 6U);
}

TEST(MediaParser, TellsTheByteOrderOfTheHost) {
    const std::uint16_t one = 1;
    const bool fBigEndian = *reinterpret_cast<const unsigned char*>(&one) == 0;
    EXPECT_EQ(PlainMediaParser::IsBigEndianPlatform(), fBigEndian);
}

TEST(MediaParser, RecognisesNothingInTheBlocksUntilAFormatOverridesRead) {
    PlainMediaParser parser("avi", nullptr, false);
    uint8 byte = 0;
    EXPECT_EQ(parser.Read(&byte, 1, &byte, 1, 1), nullptr);
    AwkwardStream stream(Content(100));
    EXPECT_EQ(parser.ParseFromStream(stream, 10, 10), nullptr);
    EXPECT_EQ(parser.Parse(stream), nullptr);
}

TEST(MediaParserParseFromStream, TenByteFileIsReadWholeIntoEachBlock) {
    LogCatcher log;
    BlockParser parser;
    AwkwardStream stream("0123456789");
    EXPECT_EQ(parser.ParseFromStream(stream, kBegin, 128), nullptr);
    ASSERT_EQ(parser.Shown().size(), 1U);
    EXPECT_EQ(parser.Shown()[0].mBegin, "0123456789");
    EXPECT_EQ(parser.Shown()[0].mEnd, "0123456789");
    EXPECT_EQ(parser.Shown()[0].mSize, 10U);
    EXPECT_TRUE(log.Lines().empty());
}

TEST(MediaParserParseFromStream, BlocksAreTheFirstAndTheLastBytesOfTheMedia) {
    const std::string content = Content(100000);
    BlockParser parser;
    AwkwardStream stream(content);
    parser.ParseFromStream(stream, kBegin, 128);
    ASSERT_EQ(parser.Shown().size(), 1U);
    EXPECT_EQ(parser.Shown()[0].mBegin, content.substr(0, 32768));
    EXPECT_EQ(parser.Shown()[0].mEnd, content.substr(content.size() - 128));
    EXPECT_EQ(parser.Shown()[0].mSize, 100000U);
}

TEST(MediaParserParseFromStream, EachBlockIsLimitedToTheMediaOnItsOwn) {
    const std::string content = Content(100);
    for (const std::size_t begin : {1U, 99U, 100U, 101U}) {
        for (const std::size_t end : {1U, 99U, 100U, 101U}) {
            BlockParser parser;
            AwkwardStream stream(content);
            parser.ParseFromStream(stream, begin, end);
            ASSERT_EQ(parser.Shown().size(), 1U);
            EXPECT_EQ(parser.Shown()[0].mBegin, content.substr(0, begin)) << begin << " " << end;
            EXPECT_EQ(parser.Shown()[0].mEnd,
                      content.substr(content.size() - std::min<std::size_t>(end, 100)))
                << begin << " " << end;
            EXPECT_EQ(parser.Shown()[0].mSize, 100U);
        }
    }
}

TEST(MediaParserParseFromStream, HugeBlocksOfASmallMediaAreNeverTaken) {
    LogCatcher log;
    BlockParser parser;
    AwkwardStream stream("0123456789");
    parser.ParseFromStream(stream, SIZE_MAX, SIZE_MAX);
    ASSERT_EQ(parser.Shown().size(), 1U);
    EXPECT_EQ(parser.Shown()[0].mBegin, "0123456789");
    EXPECT_EQ(parser.Shown()[0].mEnd, "0123456789");
    EXPECT_TRUE(log.Lines().empty());
}

TEST(MediaParserParseFromStream, OfUnknownSizeTheBeginBlockIsAskedForInFullAndTheEndIsDropped) {
    const std::string content = Content(40000);
    LogCatcher log;
    BlockParser parser;
    AwkwardStream stream(content, UnknownSize());
    parser.ParseFromStream(stream, kBegin, 128);
    ASSERT_EQ(parser.Shown().size(), 1U);
    EXPECT_EQ(parser.Shown()[0].mBegin, content.substr(0, 32768));
    EXPECT_EQ(parser.Shown()[0].mEnd, "");
    EXPECT_EQ(parser.Shown()[0].mSize, 0U);
    ASSERT_EQ(log.Texts(), std::vector<std::string>{kWarning});
    EXPECT_EQ(log.Lines()[0].mLevel, 2);
    EXPECT_EQ(log.Lines()[0].mModule, 10);
}

TEST(MediaParserParseFromStream, AShortMediaOfUnknownSizeGivesNullWithoutAWarning) {
    LogCatcher log;
    const Record answer(new ezMediaInfo);
    BlockParser parser(answer.get());
    AwkwardStream stream(Content(32767), UnknownSize());
    EXPECT_EQ(parser.ParseFromStream(stream, kBegin, 128), nullptr);
    EXPECT_TRUE(parser.Shown().empty());
    EXPECT_TRUE(log.Lines().empty());
}

TEST(MediaParserParseFromStream, ALargeEndBlockOfUnknownSizeIsDroppedToo) {
    LogCatcher log;
    BlockParser parser;
    AwkwardStream stream("0123456789", UnknownSize());
    parser.ParseFromStream(stream, 4, 16U * 1024U * 1024U);
    ASSERT_EQ(parser.Shown().size(), 1U);
    EXPECT_EQ(parser.Shown()[0].mBegin, "0123");
    EXPECT_EQ(parser.Shown()[0].mEnd, "");
    EXPECT_EQ(log.Texts(), std::vector<std::string>{kWarning});
}

TEST(MediaParserParseFromStream, WarningIsWrittenOnlyAboveItsLevel) {
    for (const int level : {0, 1, 2, 3, 4, 5}) {
        LogCatcher log(level);
        const Record answer(new ezMediaInfo);
        BlockParser parser(answer.get());
        AwkwardStream stream("0123456789", UnknownSize());
        EXPECT_EQ(parser.ParseFromStream(stream, 4, 4), answer.get()) << level;
        EXPECT_EQ(log.Lines().size(), level > 2 ? 1U : 0U) << level;
    }
}

TEST(MediaParserParseFromStream, ABeginOfZeroSkipsTheBeginRead) {
    LogCatcher log;
    BlockParser parser;
    // Only the end is read: a failure of the first byte is never met.
    AwkwardStream stream(Content(20000), FailingAt(0));
    parser.ParseFromStream(stream, 0, 16);
    ASSERT_EQ(parser.Shown().size(), 1U);
    EXPECT_EQ(parser.Shown()[0].mBegin, "");
    EXPECT_EQ(parser.Shown()[0].mEnd, Content(20000).substr(19984));
    EXPECT_EQ(parser.Shown()[0].mSize, 20000U);
    EXPECT_EQ(stream.GetCosts().mReads, 1U);
    EXPECT_TRUE(log.Lines().empty());
}

TEST(MediaParserParseFromStream, AnEndOfZeroSkipsTheEndReadAndItsWarning) {
    LogCatcher log;
    for (const bool fSizeKnown : {false, true}) {
        BlockParser parser;
        AwkwardStream stream(Content(20000), fSizeKnown ? Delivery() : UnknownSize());
        parser.ParseFromStream(stream, 16, 0);
        ASSERT_EQ(parser.Shown().size(), 1U);
        EXPECT_EQ(parser.Shown()[0].mBegin, Content(16));
        EXPECT_EQ(parser.Shown()[0].mEnd, "");
        EXPECT_EQ(parser.Shown()[0].mSize, fSizeKnown ? 20000U : 0U);
        EXPECT_EQ(stream.GetCosts().mReads, 1U);
        EXPECT_EQ(stream.Tell(), 16U);
    }
    EXPECT_TRUE(log.Lines().empty());
}

TEST(MediaParserParseFromStream, WithoutBlocksReadIsCalledAllTheSame) {
    ScriptedSystem system;
    const Record answer(new ezMediaInfo);
    BlockParser parser(answer.get());
    AwkwardStream stream(Content(100));
    EXPECT_EQ(parser.ParseFromStream(stream, 0, 0), answer.get());
    ASSERT_EQ(parser.Shown().size(), 1U);
    EXPECT_EQ(parser.Shown()[0].mSize, 100U);
    EXPECT_EQ(stream.GetCosts().mReads, 0U);
    EXPECT_EQ(stream.GetCosts().mSeeks, 0U);
    EXPECT_EQ(system.GetCounts().mAllocate, 0U);
}

TEST(MediaParserParseFromStream, AFailedBeginReadGivesNullAndReadsNoEnd) {
    LogCatcher log;
    const Record answer(new ezMediaInfo);
    BlockParser parser(answer.get());
    AwkwardStream stream(Content(20000), FailingAt(3));
    EXPECT_EQ(parser.ParseFromStream(stream, 16, 16), nullptr);
    EXPECT_TRUE(parser.Shown().empty());
    EXPECT_EQ(stream.GetCosts().mReads, 1U);
    EXPECT_TRUE(log.Lines().empty());
}

TEST(MediaParserParseFromStream, AFailedEndReadIsWarnedOfAndTheBeginBlockServes) {
    LogCatcher log;
    const Record answer(new ezMediaInfo);
    BlockParser parser(answer.get());
    AwkwardStream stream(Content(20000), FailingAt(19990));
    EXPECT_EQ(parser.ParseFromStream(stream, 16, 16), answer.get());
    ASSERT_EQ(parser.Shown().size(), 1U);
    EXPECT_EQ(parser.Shown()[0].mBegin, Content(16));
    EXPECT_EQ(parser.Shown()[0].mEnd, "");
    EXPECT_EQ(parser.Shown()[0].mSize, 20000U);
    EXPECT_EQ(log.Texts(), std::vector<std::string>{kWarning});
}

TEST(MediaParserParseFromStream, AMediaShorterThanItsSizeSaysGivesNull) {
    BlockParser parser;
    AwkwardStream stream(Content(100));
    stream.SetContent(Content(50));
    EXPECT_EQ(parser.ParseFromStream(stream, kBegin, 16), nullptr);
    EXPECT_TRUE(parser.Shown().empty());
}

TEST(MediaParserParseFromStream, ATrickleIsAFailureForTheExactReads) {
    LogCatcher log;
    Delivery trickle;
    trickle.mMaximumRead = 10;
    BlockParser parser;
    AwkwardStream stream(Content(20000), trickle);
    EXPECT_EQ(parser.ParseFromStream(stream, 11, 4), nullptr);
    EXPECT_TRUE(parser.Shown().empty());
    AwkwardStream enough(Content(20000), trickle);
    parser.ParseFromStream(enough, 10, 11);
    ASSERT_EQ(parser.Shown().size(), 1U);
    EXPECT_EQ(parser.Shown()[0].mBegin, Content(10));
    EXPECT_EQ(parser.Shown()[0].mEnd, "");
    EXPECT_EQ(log.Texts(), std::vector<std::string>{kWarning});
}

TEST(MediaParserParseFromStream, BeginBlockIsReadWhereTheStreamStands) {
    const std::string content = Content(20000);
    BlockParser parser;
    AwkwardStream stream(content);
    std::string skipped(9000, '\0');
    ASSERT_TRUE(stream.Read(skipped.size(), skipped.data()));
    stream.ResetCosts();
    parser.ParseFromStream(stream, 16, 0);
    ASSERT_EQ(parser.Shown().size(), 1U);
    EXPECT_EQ(parser.Shown()[0].mBegin, content.substr(9000, 16));
    EXPECT_EQ(stream.Tell(), 9016U);
    EXPECT_EQ(stream.GetCosts().mSeeks, 0U);
}

TEST(MediaParserParseFromStream, BeginBlockIsLimitedByTheMediaNotByWhatIsLeftOfIt) {
    BlockParser parser;
    AwkwardStream stream("0123456789");
    char bytes[5];
    ASSERT_TRUE(stream.Read(sizeof bytes, bytes));
    EXPECT_EQ(parser.ParseFromStream(stream, 10, 0), nullptr); // 10 bytes from position 5 cannot be had
    EXPECT_TRUE(parser.Shown().empty());
}

TEST(MediaParserParseFromStream, ABlockThatCannotBeTakenGivesNullBeforeAnythingIsRead) {
    for (const std::size_t refused : {0U, 1U}) {
        LogCatcher log;
        ScriptedSystem system;
        system.mAllocateOutcomes.resize(refused + 1);
        system.mAllocateOutcomes[refused].mError = ENOMEM;
        const Record answer(new ezMediaInfo);
        BlockParser parser(answer.get());
        AwkwardStream stream(Content(20000));
        EXPECT_EQ(parser.ParseFromStream(stream, 16, 16), nullptr) << refused;
        EXPECT_TRUE(parser.Shown().empty()) << refused;
        EXPECT_EQ(stream.GetCosts().mReads, 0U) << refused;
        EXPECT_EQ(stream.Tell(), 0U) << refused;
        EXPECT_TRUE(log.Lines().empty()) << refused;
        // The next parse has its blocks again.
        EXPECT_EQ(parser.ParseFromStream(stream, 16, 16), answer.get()) << refused;
    }
}

TEST(MediaParserParseFromStream, AHugeEndBlockOfUnknownSizeThatIsRefusedGivesNull) {
    ScriptedSystem system;
    system.mAllocateOutcomes.resize(2);
    system.mAllocateOutcomes[1].mError = ENOMEM;
    const Record answer(new ezMediaInfo);
    BlockParser parser(answer.get());
    AwkwardStream stream(Content(20000), UnknownSize());
    EXPECT_EQ(parser.ParseFromStream(stream, 16, SIZE_MAX), nullptr);
    EXPECT_EQ(system.GetCounts().mAllocate, 2U);
    EXPECT_TRUE(parser.Shown().empty());
}

TEST(MediaParserParseFromStream, AnswerIsWhatReadReturned) {
    const Record answer(new ezMediaInfo);
    BlockParser parser(answer.get());
    AwkwardStream stream("0123456789");
    EXPECT_EQ(parser.ParseFromStream(stream, 4, 4), answer.get());
}
