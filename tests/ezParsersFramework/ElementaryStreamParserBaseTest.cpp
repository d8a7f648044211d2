#include "ez/ElementaryStreamParser.h"

#include "ezPlatform/base/System.h"
#include "ezPlatform/media/MediaInfo.h"

#include "support/Catchers.h"
#include "support/Record.h"
#include "support/ReplacedSystem.h"
#include "support/ScriptedEltStreamParser.h"
#include "support/ScriptedSystem.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using Parser = ezElementaryStreamParser;
using Satisfied = ScriptedEltStreamParser::Satisfied;
using Texts = std::vector<std::string>;

const char* const kNoRequest = "mReadRequestSize > 0 @ ElementaryStreamParser";
const char* const kNotRenewed = "mReadRequestSize > mReadCurrentSize @ ElementaryStreamParser";
const char* const kNotExact = "mReadRequestSize == mReadCurrentSize @ ElementaryStreamParser";

std::string Bytes(std::size_t aCount, std::size_t aFirst = 0) {
    std::string bytes(aCount, '\0');
    for (std::size_t i = 0; i < aCount; ++i) {
        bytes[i] = static_cast<char>((aFirst + i) % 251);
    }
    return bytes;
}

std::string DecisionLine(const char* aHow, const std::string& aCount, const char* aName = "Scripted") {
    return std::string("ElementaryStreamParser: '") + aName + "' Parsing " + aHow + " with " + aCount +
           " read bytes\n";
}

/// An info that tells of its end.
class WatchedStreamInfo : public ezElementaryStreamInfo {
public:
    WatchedStreamInfo(const char* aName, uint32 anID, int* aDeleted)
        : ezElementaryStreamInfo(aName, anID), mDeleted(aDeleted) {}
    ~WatchedStreamInfo() override { ++*mDeleted; }

private:
    int* mDeleted;
};

/// Grows blocks by moving them, always. One block at a time.
class MovingSystem : public ReplacedSystem {
public:
    MovingSystem() : ReplacedSystem([](ezSystemCalls& aCalls) { aCalls.mReallocate = sReallocate; }) {}

private:
    static void* sReallocate(void* aBlock, std::size_t aSize) {
        void* moved = std::malloc(aSize);
        if (aBlock != nullptr && moved != nullptr) {
            std::memcpy(moved, aBlock, std::min(gSize, aSize));
            std::memset(aBlock, 0x5E, gSize);
            std::free(aBlock);
        }
        gSize = aSize;
        return moved;
    }

    inline static std::size_t gSize = 0;
};

/// The smallest format: wants bytes for ever.
class PlainParser : public ezElementaryStreamParser {
public:
    using ezElementaryStreamParser::ezElementaryStreamParser;
    parsing_status_t StartParsing(bool /*afFromError*/) override {
        RequestRead(1);
        return MSS_IN_PROGRESS;
    }
    parsing_status_t ContinueParsing(const unsigned char* /*aBuffer*/, uint32 aSize) override {
        RequestRead(aSize);
        return MSS_IN_PROGRESS;
    }
    bool HasNothing() const {
        return mTotalReadSize == 0 && mReadCurrentSize == 0 && mReadRequestSize == 0 && !mSkipRead &&
               mReadBufferSize == 0 && mReadBuffer == nullptr;
    }
};

} // namespace

// ---- what stands where ----

TEST(ElementaryStreamParser, StatusesHaveTheirNumbersInThirtyTwoBits) {
    EXPECT_EQ(static_cast<int>(Parser::MSS_COMPLETED), 0);
    EXPECT_EQ(static_cast<int>(Parser::MSS_IN_PROGRESS), 1);
    EXPECT_EQ(static_cast<int>(Parser::MSS_UNRECOVERABLE_ERROR), 2);
    EXPECT_EQ(sizeof(Parser::parsing_status_t), 4U);
}

TEST(ElementaryStreamParser, IsPolymorphicAndLeavesTheFormatToItsDerivedClasses) {
    EXPECT_TRUE(std::has_virtual_destructor<Parser>::value);
    EXPECT_TRUE(std::has_virtual_destructor<ezElementaryStreamInfo>::value);
    EXPECT_TRUE(std::is_abstract<Parser>::value);
}

TEST(ElementaryStreamParser, StreamInfoTellsNameAndIdentifier) {
    const char* const name = "audio";
    const ezElementaryStreamInfo info(name, 0xFFFFFFFF);
    EXPECT_EQ(info.GetName(), name); // the text itself, not a copy
    EXPECT_EQ(info.GetID(), 0xFFFFFFFFU);
}

TEST(ElementaryStreamParser, BeginsIdleWithWhatItWasGiven) {
    const char* const name = "AC3";
    int deleted = 0;
    auto* streamInfo = new WatchedStreamInfo("audio", 0xBD, &deleted);
    auto* mediaInfo = new CountedMediaInfo;
    {
        const PlainParser parser(name, 1000, streamInfo, mediaInfo);
        EXPECT_EQ(parser.GetName(), name);
        EXPECT_EQ(parser.GetMaxReadSize(), 1000U);
        EXPECT_EQ(parser.GetEltStreamInfo(), streamInfo);
        EXPECT_EQ(parser.GetEltStreamInfo()->GetID(), 0xBDU);
        EXPECT_EQ(parser.GetMediaInfo(), mediaInfo);
        EXPECT_EQ(parser.GetParserStatus(), Parser::MSS_COMPLETED);
        EXPECT_TRUE(parser.HasNothing());
        EXPECT_EQ(deleted, 0);
        EXPECT_EQ(CountedMediaInfo::Count(), 1);
    }
    EXPECT_EQ(deleted, 1);
    EXPECT_EQ(CountedMediaInfo::Count(), 0);
}

TEST(ElementaryStreamParser, BothInfosMayBeNull) {
    PlainParser parser("MP3", 1000, nullptr, nullptr);
    EXPECT_EQ(parser.GetEltStreamInfo(), nullptr);
    EXPECT_EQ(parser.GetMediaInfo(), nullptr);
    parser.Open();
    EXPECT_EQ(parser.AddPacket("abc", 3, false), Parser::MSS_IN_PROGRESS);
    EXPECT_EQ(parser.Close(), nullptr);
}

// ---- the record ----

TEST(ElementaryStreamParser, SetMediaInfoDeletesTheRecordBefore) {
    auto* second = new CountedMediaInfo;
    PlainParser parser("MP3", 1000, nullptr, new CountedMediaInfo);
    EXPECT_EQ(CountedMediaInfo::Count(), 2);
    parser.SetMediaInfo(second);
    EXPECT_EQ(CountedMediaInfo::Count(), 1);
    EXPECT_EQ(parser.GetMediaInfo(), second);
    parser.SetMediaInfo(second); // its own again: nothing to delete
    EXPECT_EQ(CountedMediaInfo::Count(), 1);
    EXPECT_EQ(parser.GetMediaInfo(), second);
    parser.SetMediaInfo(nullptr);
    EXPECT_EQ(CountedMediaInfo::Count(), 0);
    EXPECT_EQ(parser.GetMediaInfo(), nullptr);
}

TEST(ElementaryStreamParser, CloseHandsTheRecordOverOnce) {
    auto* info = new CountedMediaInfo;
    Record record;
    {
        ScriptedEltStreamParser parser({EltStep::OfRead(100)}, 1000, "Scripted", info);
        parser.Open();
        parser.Push(Bytes(50));
        record.reset(parser.Close());
        EXPECT_EQ(record.get(), info);
        EXPECT_EQ(parser.GetMediaInfo(), nullptr);
        EXPECT_EQ(parser.Close(), nullptr);
    }
    EXPECT_EQ(CountedMediaInfo::Count(), 1); // outlives the parser
    record.reset();
    EXPECT_EQ(CountedMediaInfo::Count(), 0);
}

TEST(ElementaryStreamParser, CloseLeavesAnIdleParserWithoutBufferThatKeepsItsTotal) {
    ScriptedEltStreamParser parser({EltStep::OfRead(100)});
    parser.Open();
    parser.Push(Bytes(50));
    EXPECT_NE(parser.ReadBuffer(), nullptr);
    EXPECT_EQ(parser.Close(), nullptr);
    EXPECT_EQ(parser.GetParserStatus(), Parser::MSS_COMPLETED);
    EXPECT_EQ(parser.ReadBuffer(), nullptr);
    EXPECT_EQ(parser.ReadBufferSize(), 0U);
    EXPECT_EQ(parser.ReadCurrentSize(), 0U);
    EXPECT_EQ(parser.ReadRequestSize(), 0U);
    EXPECT_EQ(parser.TotalReadSize(), 50U);
}

TEST(ElementaryStreamParser, ClosesWithoutHavingBeenOpened) {
    PlainParser parser("MP3", 1000, nullptr, new CountedMediaInfo);
    const Record record(parser.Close());
    EXPECT_NE(record, nullptr);
    EXPECT_EQ(parser.GetParserStatus(), Parser::MSS_COMPLETED);
}

TEST(ElementaryStreamParser, CanBeOpenedAgainWithARecordOfSetMediaInfo) {
    ScriptedEltStreamParser parser({EltStep::OfRead(4), EltStep::OfCompletion()}, 1000, "Scripted",
                                   new CountedMediaInfo);
    parser.Open();
    EXPECT_EQ(parser.Push(Bytes(10)), Parser::MSS_COMPLETED);
    const Record first(parser.Close());
    auto* info = new CountedMediaInfo;
    parser.SetMediaInfo(info);
    parser.Open();
    EXPECT_EQ(parser.TotalReadSize(), 0U);
    EXPECT_EQ(parser.GetParserStatus(), Parser::MSS_IN_PROGRESS);
    EXPECT_EQ(parser.Push(Bytes(3, 7)), Parser::MSS_IN_PROGRESS);
    EXPECT_EQ(parser.Push(Bytes(3, 10)), Parser::MSS_COMPLETED);
    EXPECT_EQ(parser.mSatisfied.back(), (Satisfied{false, 4, Bytes(4, 7)}));
    const Record second(parser.Close());
    EXPECT_EQ(second.get(), info);
}

TEST(ElementaryStreamParser, OpenInTheMiddleBeginsAgainAndKeepsTheRecord) {
    ScriptedEltStreamParser parser({EltStep::OfRead(10), EltStep::OfCompletion()}, 1000, "Scripted",
                                   new CountedMediaInfo);
    parser.Open();
    parser.Push(Bytes(7));
    const ezMediaInfo* info = parser.GetMediaInfo();
    parser.Open();
    EXPECT_EQ(parser.GetMediaInfo(), info);
    EXPECT_EQ(parser.TotalReadSize(), 0U);
    EXPECT_EQ(parser.ReadCurrentSize(), 0U);
    EXPECT_EQ(parser.Push(Bytes(10, 40)), Parser::MSS_COMPLETED);
    EXPECT_EQ(parser.mSatisfied, (std::vector<Satisfied>{{false, 10, Bytes(10, 40)}}));
}

// ---- starting ----

TEST(ElementaryStreamParser, OpenTakesTheStatusOfTheStart) {
    LogCatcher log;
    for (const auto& [step, status] : {std::pair(EltStep::OfRead(1), Parser::MSS_IN_PROGRESS),
                                       std::pair(EltStep::OfCompletion(), Parser::MSS_COMPLETED),
                                       std::pair(EltStep::OfFailure(), Parser::MSS_UNRECOVERABLE_ERROR)}) {
        ScriptedEltStreamParser parser({step});
        parser.Open();
        EXPECT_EQ(parser.GetParserStatus(), status);
        EXPECT_EQ(parser.mStarts, std::vector<bool>{false});
    }
    EXPECT_TRUE(log.Lines().empty()); // only a packet logs a decision
}

TEST(ElementaryStreamParser, APacketOfAnIdleParserIsNeitherLookedAtNorCounted) {
    LogCatcher log;
    ScriptedEltStreamParser parser({EltStep::OfRead(1)});
    EXPECT_EQ(parser.Push(Bytes(10)), Parser::MSS_COMPLETED);
    EXPECT_EQ(parser.Push(Bytes(10), true), Parser::MSS_COMPLETED);
    EXPECT_EQ(parser.TotalReadSize(), 0U);
    EXPECT_TRUE(parser.mStarts.empty());
    EXPECT_TRUE(log.Lines().empty());
}

TEST(ElementaryStreamParser, APacketAfterTheDecisionLeavesStatusAndTotal) {
    for (const auto& [step, status] : {std::pair(EltStep::OfCompletion(), Parser::MSS_COMPLETED),
                                       std::pair(EltStep::OfFailure(), Parser::MSS_UNRECOVERABLE_ERROR)}) {
        ScriptedEltStreamParser parser({EltStep::OfRead(4), step});
        parser.Open();
        EXPECT_EQ(parser.Push(Bytes(100)), status);
        LogCatcher log;
        EXPECT_EQ(parser.Push(Bytes(50)), status);
        EXPECT_EQ(parser.Push(Bytes(50), true), status);
        EXPECT_EQ(parser.Push(""), status);
        EXPECT_EQ(parser.TotalReadSize(), 100U);
        EXPECT_EQ(parser.mStarts.size(), 1U);
        EXPECT_EQ(parser.mSatisfied.size(), 1U);
        EXPECT_TRUE(log.Lines().empty());
    }
}

// ---- gathering ----

TEST(ElementaryStreamParser, ARequestOfTenIsGatheredFromThreeThreeAndFour) {
    ScriptedEltStreamParser parser({EltStep::OfRead(10), EltStep::OfRead(5)});
    parser.Open();
    EXPECT_EQ(parser.Push(Bytes(3)), Parser::MSS_IN_PROGRESS);
    EXPECT_EQ(parser.Push(Bytes(3, 3)), Parser::MSS_IN_PROGRESS);
    EXPECT_TRUE(parser.mSatisfied.empty());
    EXPECT_EQ(parser.ReadCurrentSize(), 6U);
    EXPECT_EQ(parser.Push(Bytes(4, 6)), Parser::MSS_IN_PROGRESS);
    EXPECT_EQ(parser.mSatisfied, (std::vector<Satisfied>{{false, 10, Bytes(10)}}));
    EXPECT_EQ(parser.TotalReadSize(), 10U);
}

TEST(ElementaryStreamParser, APacketOfAHundredSatisfiesTenRequestsOfTen) {
    ScriptedEltStreamParser parser({EltStep::OfRead(10)});
    parser.Open();
    EXPECT_EQ(parser.Push(Bytes(100)), Parser::MSS_IN_PROGRESS);
    ASSERT_EQ(parser.mSatisfied.size(), 10U);
    for (std::size_t i = 0; i < 10; ++i) {
        EXPECT_EQ(parser.mSatisfied[i], (Satisfied{false, 10, Bytes(10, 10 * i)}));
    }
    EXPECT_EQ(parser.TotalReadSize(), 100U);
}

TEST(ElementaryStreamParser, ContinueParsingGetsTheReadBufferItself) {
    ScriptedEltStreamParser parser({EltStep::OfRead(8), EltStep::OfRead(8)});
    parser.Open();
    parser.Push(Bytes(8));
    EXPECT_EQ(parser.mLastBlock, parser.ReadBuffer());
}

TEST(ElementaryStreamParser, AppendKeepsWhatWasGatheredBeforeTheNewBytes) {
    ScriptedEltStreamParser parser(
        {EltStep::OfRead(4), EltStep::OfAppend(6), EltStep::OfAppend(1), EltStep::OfRead(2)});
    parser.Open();
    parser.Push(Bytes(13));
    EXPECT_EQ(
        parser.mSatisfied,
        (std::vector<Satisfied>{
            {false, 4, Bytes(4)}, {false, 10, Bytes(10)}, {false, 11, Bytes(11)}, {false, 2, Bytes(2, 11)}}));
}

TEST(ElementaryStreamParser, AppendAfterASkipIsARead) {
    ScriptedEltStreamParser parser({EltStep::OfSkip(4), EltStep::OfAppend(3), EltStep::OfAppend(2)});
    parser.Open();
    parser.Push(Bytes(4));
    EXPECT_EQ(parser.ReadRequestSize(), 3U);
    EXPECT_EQ(parser.ReadCurrentSize(), 0U);
    EXPECT_FALSE(parser.IsSkipping());
    parser.Push(Bytes(5, 4));
    EXPECT_EQ(parser.mSatisfied,
              (std::vector<Satisfied>{{true, 4, ""}, {false, 3, Bytes(3, 4)}, {false, 5, Bytes(5, 4)}}));
}

TEST(ElementaryStreamParser, AFirstRequestMayBeAnAppend) {
    ScriptedEltStreamParser parser({EltStep::OfAppend(3), EltStep::OfCompletion()});
    parser.Open();
    EXPECT_EQ(parser.Push(Bytes(3)), Parser::MSS_COMPLETED);
    EXPECT_EQ(parser.mSatisfied, (std::vector<Satisfied>{{false, 3, Bytes(3)}}));
}

TEST(ElementaryStreamParser, ASkipAppendedToAReadCountsFromWhatWasGathered) {
    ScriptedEltStreamParser parser({EltStep::OfRead(4), EltStep::OfSkipAppended(6), EltStep::OfAppend(2)});
    parser.Open();
    parser.Push(Bytes(4));
    EXPECT_EQ(parser.ReadRequestSize(), 10U);
    EXPECT_EQ(parser.ReadCurrentSize(), 4U);
    EXPECT_TRUE(parser.IsSkipping());
    EXPECT_EQ(parser.ReadBufferSize(), 4U);
    parser.Push(Bytes(8, 4));
    EXPECT_EQ(parser.mSatisfied,
              (std::vector<Satisfied>{
                  {false, 4, Bytes(4)}, {true, 10, ""}, {false, 2, Bytes(2, 10)}})); // fresh after a skip
}

TEST(ElementaryStreamParser, ASkipAppendedToASkipIsAFreshOne) {
    ScriptedEltStreamParser parser({EltStep::OfSkip(4), EltStep::OfSkipAppended(6), EltStep::OfRead(1)});
    parser.Open();
    parser.Push(Bytes(4));
    EXPECT_EQ(parser.ReadRequestSize(), 6U);
    EXPECT_EQ(parser.ReadCurrentSize(), 0U);
}

TEST(ElementaryStreamParser, AnAppendToARequestHalfwayKeepsItsBytes) {
    ScriptedEltStreamParser parser({EltStep::OfRead(4), EltStep::OfCompletion()});
    parser.Open();
    parser.Push(Bytes(3));
    parser.RequestAppend(2);
    EXPECT_EQ(parser.ReadCurrentSize(), 3U);
    EXPECT_EQ(parser.Push(Bytes(3, 3)), Parser::MSS_COMPLETED);
    EXPECT_EQ(parser.mSatisfied, (std::vector<Satisfied>{{false, 6, Bytes(6)}}));
}

TEST(ElementaryStreamParser, AReadDropsARequestHalfway) {
    ScriptedEltStreamParser parser({EltStep::OfRead(4), EltStep::OfCompletion()});
    parser.Open();
    parser.Push(Bytes(3));
    parser.RequestRead(2);
    EXPECT_EQ(parser.ReadCurrentSize(), 0U);
    EXPECT_EQ(parser.Push(Bytes(3, 3)), Parser::MSS_COMPLETED);
    EXPECT_EQ(parser.mSatisfied, (std::vector<Satisfied>{{false, 2, Bytes(2, 3)}}));
}

TEST(ElementaryStreamParser, ShorthandsPlaceTheirKindOfRequest) {
    struct Placed {
        uint32 mSize;
        bool mfSkip;
        bool mfAppend;
    };
    class PlacingParser : public PlainParser {
    public:
        using PlainParser::PlainParser;
        void RequestReadOrSkip(uint32 aSize, bool aSkipRead, bool aAppend) override {
            mPlaced.push_back({aSize, aSkipRead, aAppend});
        }
        std::vector<Placed> mPlaced;
    };
    PlacingParser parser("Placing", 1000, nullptr, nullptr);
    parser.RequestRead(1);
    parser.RequestAppend(2);
    parser.RequestSkip(3);
    ASSERT_EQ(parser.mPlaced.size(), 3U);
    EXPECT_TRUE(parser.mPlaced[0].mSize == 1 && !parser.mPlaced[0].mfSkip && !parser.mPlaced[0].mfAppend);
    EXPECT_TRUE(parser.mPlaced[1].mSize == 2 && !parser.mPlaced[1].mfSkip && parser.mPlaced[1].mfAppend);
    EXPECT_TRUE(parser.mPlaced[2].mSize == 3 && parser.mPlaced[2].mfSkip && !parser.mPlaced[2].mfAppend);
}

TEST(ElementaryStreamParser, GetReadDataTakesNoMoreThanIsMissingAndMovesBothArguments) {
    ScriptedEltStreamParser parser({EltStep::OfRead(10)});
    parser.Open();
    const std::string bytes = Bytes(25);
    const unsigned char* const begin = reinterpret_cast<const unsigned char*>(bytes.data());
    const unsigned char* source = begin;
    uint32 size = 4;
    parser.GetReadData(source, size);
    EXPECT_EQ(source, begin + 4);
    EXPECT_EQ(size, 0U);
    EXPECT_EQ(parser.ReadCurrentSize(), 4U);
    size = 21;
    parser.GetReadData(source, size);
    EXPECT_EQ(source, begin + 10);
    EXPECT_EQ(size, 15U);
    EXPECT_EQ(parser.ReadCurrentSize(), 10U);
    EXPECT_EQ(std::memcmp(parser.ReadBuffer(), bytes.data(), 10), 0);
    EXPECT_TRUE(parser.mSatisfied.empty()); // taking alone hands nothing out
}

TEST(ElementaryStreamParser, GetReadDataWithoutAnythingMissingAssertsAndTakesNothing) {
    ScriptedEltStreamParser parser({EltStep::OfRead(2)});
    parser.Open();
    const std::string bytes = Bytes(5);
    const unsigned char* source = reinterpret_cast<const unsigned char*>(bytes.data());
    uint32 size = 2;
    parser.GetReadData(source, size);
    const AssertCatcher assertions;
    const unsigned char* const before = source;
    size = 3;
    parser.GetReadData(source, size);
    EXPECT_EQ(source, before);
    EXPECT_EQ(size, 3U);
    EXPECT_EQ(parser.ReadCurrentSize(), 2U);
    EXPECT_EQ(assertions.Failures(), AssertCatcher::Noted({kNotRenewed}));
}

// ---- the buffer ----

TEST(ElementaryStreamParser, TheBufferOnlyGrowsAndExactlyToTheRequest) {
    ScriptedEltStreamParser parser({EltStep::OfRead(10), EltStep::OfRead(3), EltStep::OfAppend(4),
                                    EltStep::OfAppend(4), EltStep::OfRead(10), EltStep::OfRead(12)});
    const ScriptedSystem system;
    const std::array<uint32, 6> pushes = {10, 3, 4, 4, 10, 12};
    const std::array<uint32, 6> capacities = {10, 10, 10, 11, 11, 12};
    const std::array<std::size_t, 6> allocations = {1, 1, 1, 2, 2, 3};
    parser.Open();
    for (std::size_t i = 0; i < pushes.size(); ++i) {
        EXPECT_EQ(parser.ReadBufferSize(), capacities[i]) << i;
        EXPECT_EQ(system.GetCounts().mAllocate, allocations[i]) << i;
        parser.Push(Bytes(pushes[i]));
    }
}

TEST(ElementaryStreamParser, ASkipNeverTouchesTheBuffer) {
    ScriptedEltStreamParser parser({EltStep::OfSkip(0xFFFFFFFF)});
    const ScriptedSystem system;
    parser.Open();
    parser.Push(Bytes(5000));
    EXPECT_EQ(parser.ReadBuffer(), nullptr);
    EXPECT_EQ(parser.ReadBufferSize(), 0U);
    EXPECT_EQ(parser.ReadCurrentSize(), 5000U);
    EXPECT_EQ(system.GetCounts().mAllocate, 0U);
}

TEST(ElementaryStreamParser, ASatisfiedSkipMayComeWithoutAnyBlock) {
    ScriptedEltStreamParser parser({EltStep::OfSkip(3), EltStep::OfCompletion()});
    static const unsigned char kSomewhere = 0;
    parser.mLastBlock = &kSomewhere;
    parser.Open();
    EXPECT_EQ(parser.Push(Bytes(3)), Parser::MSS_COMPLETED);
    EXPECT_EQ(parser.mSatisfied, (std::vector<Satisfied>{{true, 3, ""}}));
    EXPECT_EQ(parser.mLastBlock, nullptr);
}

TEST(ElementaryStreamParser, ASkipLeavesTheGatheredBytesAsTheyAre) {
    ScriptedEltStreamParser parser({EltStep::OfRead(4), EltStep::OfSkip(100), EltStep::OfRead(1)});
    parser.Open();
    parser.Push(Bytes(60));
    EXPECT_EQ(std::memcmp(parser.ReadBuffer(), Bytes(4).data(), 4), 0);
    EXPECT_EQ(parser.ReadBufferSize(), 4U);
}

TEST(ElementaryStreamParser, PlacingARequestMayMoveTheBuffer) {
    const MovingSystem system;
    ScriptedEltStreamParser parser(
        {EltStep::OfRead(16), EltStep::OfAppend(8), EltStep::OfAppend(40), EltStep::OfCompletion()});
    parser.Open();
    parser.Push(Bytes(16));
    const unsigned char* const first = parser.mLastBlock;
    EXPECT_NE(parser.ReadBuffer(), first); // the bytes that the format was given lie elsewhere by now
    EXPECT_EQ(parser.Push(Bytes(48, 16)), Parser::MSS_COMPLETED);
    EXPECT_EQ(
        parser.mSatisfied,
        (std::vector<Satisfied>{{false, 16, Bytes(16)}, {false, 24, Bytes(24)}, {false, 64, Bytes(64)}}));
}

// ---- decisions and their log ----

TEST(ElementaryStreamParser, ADecisionInTheMiddleOfAPacketCountsThePacketAndLogsTheBytes) {
    LogCatcher log;
    ScriptedEltStreamParser parser({EltStep::OfRead(4), EltStep::OfCompletion()});
    parser.Open();
    EXPECT_EQ(parser.Push(Bytes(100)), Parser::MSS_COMPLETED);
    EXPECT_EQ(parser.GetParserStatus(), Parser::MSS_COMPLETED);
    EXPECT_EQ(parser.TotalReadSize(), 100U);
    EXPECT_EQ(log.Texts(), Texts{"ElementaryStreamParser: 'Scripted' Parsing completed with 4 read bytes\n"});
    EXPECT_EQ(log.Lines()[0].mLevel, EZLOGLEVEL_DEBUG);
    EXPECT_EQ(log.Lines()[0].mModule, EZLOG_M_PARSERS);
}

TEST(ElementaryStreamParser, TheBytesOfADecisionAreThoseOfAllPackets) {
    LogCatcher log;
    ScriptedEltStreamParser parser({EltStep::OfRead(10), EltStep::OfSkip(95), EltStep::OfFailure()}, 10000,
                                   "DTS");
    parser.Open();
    parser.Push(Bytes(50));
    parser.Push(Bytes(50));
    EXPECT_EQ(parser.Push(Bytes(50)), Parser::MSS_UNRECOVERABLE_ERROR);
    EXPECT_EQ(parser.TotalReadSize(), 150U);
    EXPECT_EQ(log.Texts(), Texts{"ElementaryStreamParser: 'DTS' Parsing failed with 105 read bytes\n"});
}

TEST(ElementaryStreamParser, NoLineBelowItsLevel) {
    LogCatcher log(EZLOGLEVEL_DEBUG);
    ScriptedEltStreamParser decided({EltStep::OfRead(4), EltStep::OfCompletion()});
    decided.Open();
    decided.Push(Bytes(4));
    ScriptedEltStreamParser limited({EltStep::OfRead(4)}, 10);
    limited.Open();
    EXPECT_EQ(limited.Push(Bytes(10)), Parser::MSS_UNRECOVERABLE_ERROR);
    EXPECT_TRUE(log.Lines().empty());
}

TEST(ElementaryStreamParser, TheLimitTripsWhenItIsReachedExactly) {
    LogCatcher log;
    ScriptedEltStreamParser parser({EltStep::OfSkip(300)}, 1000);
    parser.Open();
    EXPECT_EQ(parser.Push(Bytes(999)), Parser::MSS_IN_PROGRESS);
    EXPECT_TRUE(log.Lines().empty());
    EXPECT_EQ(parser.Push(Bytes(1)), Parser::MSS_UNRECOVERABLE_ERROR);
    EXPECT_EQ(parser.TotalReadSize(), 1000U);
    EXPECT_EQ(log.Texts(), Texts{"ElementaryStreamParser: 'Scripted' total read size 1000 greater than limit "
                                 "1000, assume parsing failed\n"});
    EXPECT_EQ(log.Lines()[0].mLevel, EZLOGLEVEL_DEBUG);
    EXPECT_EQ(log.Lines()[0].mModule, EZLOG_M_PARSERS);
}

TEST(ElementaryStreamParser, TheLimitTripsWhenItIsPassed) {
    LogCatcher log;
    ScriptedEltStreamParser parser({EltStep::OfSkip(300)}, 1000);
    parser.Open();
    EXPECT_EQ(parser.Push(Bytes(1316)), Parser::MSS_UNRECOVERABLE_ERROR);
    EXPECT_EQ(log.Texts(), Texts{"ElementaryStreamParser: 'Scripted' total read size 1316 greater than limit "
                                 "1000, assume parsing failed\n"});
    EXPECT_EQ(parser.mSatisfied.size(), 4U); // the packet was looked at as a whole before
}

TEST(ElementaryStreamParser, ADecisionOnThePacketThatReachesTheLimitStands) {
    LogCatcher log;
    ScriptedEltStreamParser parser({EltStep::OfRead(1000), EltStep::OfCompletion()}, 1000);
    parser.Open();
    EXPECT_EQ(parser.Push(Bytes(1000)), Parser::MSS_COMPLETED);
    EXPECT_EQ(log.Texts(), Texts{DecisionLine("completed", "1000")});
}

TEST(ElementaryStreamParser, ALimitOfNothingFailsWithTheFirstPacketEvenAnEmptyOne) {
    ScriptedEltStreamParser parser({EltStep::OfRead(1)}, 0);
    parser.Open();
    EXPECT_EQ(parser.GetParserStatus(), Parser::MSS_IN_PROGRESS);
    EXPECT_EQ(parser.Push(""), Parser::MSS_UNRECOVERABLE_ERROR);
}

TEST(ElementaryStreamParser, AResetDoesNotSetTheTotalBack) {
    LogCatcher log;
    ScriptedEltStreamParser parser({EltStep::OfRead(5000)}, 1000);
    parser.Open();
    parser.Push(Bytes(600));
    parser.ResetParsing(false);
    EXPECT_EQ(parser.TotalReadSize(), 600U);
    EXPECT_EQ(parser.Push(Bytes(400)), Parser::MSS_UNRECOVERABLE_ERROR);
    EXPECT_TRUE(log.Has("ElementaryStreamParser: 'Scripted' total read size 1000 greater than limit 1000, "
                        "assume parsing failed\n"));
}

// ---- packets of nothing ----

TEST(ElementaryStreamParser, AnEmptyPacketPassesTheRequestAssertionAndChangesNothing) {
    LogCatcher log;
    const AssertCatcher assertions;
    ScriptedEltStreamParser parser({EltStep::OfRead(10)}, 1000);
    parser.Open();
    parser.Push(Bytes(4));
    EXPECT_EQ(parser.AddPacket("abc", 0, false), Parser::MSS_IN_PROGRESS);
    EXPECT_EQ(parser.ReadCurrentSize(), 4U);
    EXPECT_EQ(parser.TotalReadSize(), 4U);
    EXPECT_TRUE(assertions.Failures().empty());
    EXPECT_TRUE(log.Lines().empty());
}

TEST(ElementaryStreamParser, AnEmptyPacketTripsALimitThatTheTotalHasReached) {
    // In progress at the limit: only a format that was started anew by hand can be.
    LogCatcher log;
    ScriptedEltStreamParser parser({EltStep::OfRead(5000)}, 1000);
    parser.Open();
    EXPECT_EQ(parser.Push(Bytes(1000)), Parser::MSS_UNRECOVERABLE_ERROR);
    parser.ResetParsing(false);
    EXPECT_EQ(parser.GetParserStatus(), Parser::MSS_IN_PROGRESS);
    log.Clear();
    EXPECT_EQ(parser.Push(""), Parser::MSS_UNRECOVERABLE_ERROR);
    EXPECT_EQ(parser.TotalReadSize(), 1000U);
    EXPECT_EQ(log.Texts(), Texts{"ElementaryStreamParser: 'Scripted' total read size 1000 greater than limit "
                                 "1000, assume parsing failed\n"});
}

TEST(ElementaryStreamParser, AnEmptyPacketStillOwesItsRequest) {
    const AssertCatcher assertions;
    LogCatcher log(EZLOGLEVEL_DEBUG + 1);
    ScriptedEltStreamParser parser({EltStep::OfNothing()});
    parser.Open();
    EXPECT_EQ(parser.GetParserStatus(), Parser::MSS_IN_PROGRESS);
    EXPECT_EQ(parser.Push(""), Parser::MSS_UNRECOVERABLE_ERROR);
    EXPECT_EQ(assertions.Failures(), AssertCatcher::Noted({kNoRequest}));
    EXPECT_TRUE(log.Has(DecisionLine("failed", "0")));
}

TEST(ElementaryStreamParser, ANullPacketCountsAsEmpty) {
    ScriptedEltStreamParser parser({EltStep::OfRead(10)}, 1000);
    parser.Open();
    EXPECT_EQ(parser.AddPacket(nullptr, 0, false), Parser::MSS_IN_PROGRESS);
    EXPECT_EQ(parser.AddPacket(nullptr, 5000, false), Parser::MSS_IN_PROGRESS);
    EXPECT_EQ(parser.TotalReadSize(), 0U);
    EXPECT_EQ(parser.ReadCurrentSize(), 0U);
    EXPECT_EQ(parser.AddPacket(nullptr, 5000, true), Parser::MSS_IN_PROGRESS);
    EXPECT_EQ(parser.mStarts, (std::vector<bool>{false, true}));
}

// ---- mistakes of a format ----

TEST(ElementaryStreamParser, AStartWithoutARequestEndsAsFailureAtTheNextPacket) {
    const AssertCatcher assertions;
    LogCatcher log;
    ScriptedEltStreamParser parser({EltStep::OfNothing()});
    parser.Open();
    EXPECT_EQ(parser.Push(Bytes(100)), Parser::MSS_UNRECOVERABLE_ERROR);
    EXPECT_EQ(assertions.Failures(), AssertCatcher::Noted({kNoRequest}));
    EXPECT_TRUE(parser.mSatisfied.empty());
    EXPECT_EQ(parser.TotalReadSize(), 100U);
    EXPECT_TRUE(log.Has(DecisionLine("failed", "0")));
}

TEST(ElementaryStreamParser, AFirstRequestOfNothingEndsAsFailure) {
    for (const EltStep& step : {EltStep::OfRead(0), EltStep::OfAppend(0), EltStep::OfSkip(0)}) {
        const AssertCatcher assertions;
        ScriptedEltStreamParser parser({step});
        parser.Open();
        EXPECT_EQ(parser.Push(Bytes(100)), Parser::MSS_UNRECOVERABLE_ERROR);
        EXPECT_EQ(assertions.Failures(), AssertCatcher::Noted({kNoRequest}));
        EXPECT_TRUE(parser.mSatisfied.empty());
    }
}

TEST(ElementaryStreamParser, OfAnEmptyPacketNothingIsTaken) {
    const AssertCatcher assertions;
    ScriptedEltStreamParser parser({EltStep::OfRead(4)});
    parser.Open();
    const unsigned char* source = nullptr;
    uint32 size = 0;
    parser.GetReadData(source, size);
    EXPECT_EQ(source, nullptr);
    EXPECT_EQ(size, 0U);
    EXPECT_EQ(parser.ReadCurrentSize(), 0U);
    EXPECT_TRUE(assertions.Failures().empty());
}

TEST(ElementaryStreamParser, ARequestThatIsNotRenewedEndsAsFailureWithinThePacket) {
    const AssertCatcher assertions;
    LogCatcher log;
    ScriptedEltStreamParser parser({EltStep::OfRead(4), EltStep::OfNothing()});
    parser.Open();
    EXPECT_EQ(parser.Push(Bytes(100)), Parser::MSS_UNRECOVERABLE_ERROR);
    EXPECT_EQ(assertions.Failures(), AssertCatcher::Noted({kNotRenewed}));
    EXPECT_EQ(parser.mSatisfied.size(), 1U);
    EXPECT_EQ(parser.TotalReadSize(), 100U);
    EXPECT_TRUE(log.Has(DecisionLine("failed", "4")));
}

TEST(ElementaryStreamParser, ARequestThatIsNotRenewedTripsTheNextPacket) {
    const AssertCatcher assertions;
    ScriptedEltStreamParser parser({EltStep::OfRead(4), EltStep::OfNothing()});
    parser.Open();
    EXPECT_EQ(parser.Push(Bytes(4)), Parser::MSS_IN_PROGRESS);
    EXPECT_EQ(parser.Push(""), Parser::MSS_IN_PROGRESS); // its size is not 0, and nothing is taken
    EXPECT_TRUE(assertions.Failures().empty());
    EXPECT_EQ(parser.Push(Bytes(1)), Parser::MSS_UNRECOVERABLE_ERROR);
    EXPECT_EQ(assertions.Failures(), AssertCatcher::Noted({kNotRenewed}));
    EXPECT_EQ(parser.mSatisfied.size(), 1U);
}

TEST(ElementaryStreamParser, ALaterRequestOfNothingEndsAsFailure) {
    for (const EltStep& step : {EltStep::OfRead(0), EltStep::OfAppend(0), EltStep::OfSkip(0)}) {
        const AssertCatcher assertions;
        ScriptedEltStreamParser parser({EltStep::OfRead(4), step});
        parser.Open();
        EXPECT_EQ(parser.Push(Bytes(5)), Parser::MSS_UNRECOVERABLE_ERROR);
        EXPECT_EQ(assertions.Failures(), AssertCatcher::Noted({kNotRenewed}));
        EXPECT_EQ(parser.mSatisfied.size(), 1U);
    }
}

TEST(ElementaryStreamParser, ALaterRequestOfNothingAtThePacketsEndTripsTheNextOne) {
    const AssertCatcher assertions;
    ScriptedEltStreamParser parser({EltStep::OfRead(4), EltStep::OfRead(0)});
    parser.Open();
    EXPECT_EQ(parser.Push(Bytes(4)), Parser::MSS_IN_PROGRESS);
    EXPECT_EQ(parser.Push(Bytes(4)), Parser::MSS_UNRECOVERABLE_ERROR);
    EXPECT_EQ(assertions.Failures(), AssertCatcher::Noted({kNoRequest}));
}

TEST(ElementaryStreamParser, AFormatThatTakesTooMuchIsCaught) {
    class GreedyParser : public PlainParser {
    public:
        using PlainParser::PlainParser;
        void GetReadData(const unsigned char*& aSrcBuffer, uint32& aSize) override {
            ezElementaryStreamParser::GetReadData(aSrcBuffer, aSize);
            ++mReadCurrentSize;
        }
    };
    const AssertCatcher assertions;
    GreedyParser parser("Greedy", 1000, nullptr, nullptr);
    parser.Open();
    EXPECT_EQ(parser.AddPacket("abc", 3, false), Parser::MSS_UNRECOVERABLE_ERROR);
    EXPECT_EQ(assertions.Failures(), AssertCatcher::Noted({kNotExact}));
}

TEST(ElementaryStreamParser, AFormatThatTakesNothingEndsAsFailure) {
    class LazyParser : public PlainParser {
    public:
        using PlainParser::PlainParser;
        void GetReadData(const unsigned char*& /*aSrcBuffer*/, uint32& /*aSize*/) override {}
    };
    LazyParser parser("Lazy", 1000, nullptr, nullptr);
    parser.Open();
    EXPECT_EQ(parser.AddPacket("abc", 3, false), Parser::MSS_UNRECOVERABLE_ERROR);
}

// ---- numbers that grow past 32 bits ----

TEST(ElementaryStreamParser, ARequestThatGrowsPastThirtyTwoBitsStaysAtTheLargest) {
    ScriptedSystem system;
    ScriptedEltStreamParser parser({EltStep::OfRead(4)});
    parser.Open();
    parser.Push(Bytes(3));
    parser.RequestReadOrSkip(0xFFFFFFFF, true, true); // a skip: no memory is asked for
    EXPECT_EQ(parser.ReadRequestSize(), 0xFFFFFFFFU);
    EXPECT_EQ(parser.ReadCurrentSize(), 3U);
    EXPECT_EQ(parser.Push(Bytes(100)), Parser::MSS_IN_PROGRESS);
    EXPECT_EQ(parser.ReadCurrentSize(), 103U);
    EXPECT_TRUE(parser.mSatisfied.empty());
}

TEST(ElementaryStreamParser, AnAppendThatGrowsPastThirtyTwoBitsAsksForTheLargestBlock) {
    ScriptedSystem system;
    ScriptedEltStreamParser parser({EltStep::OfRead(4), EltStep::OfAppend(0xFFFFFFFF)});
    parser.Open();
    ScriptedSystem::Outcome refused;
    refused.mError = ENOMEM;
    system.mAllocateOutcomes = {refused};
    EXPECT_EQ(parser.Push(Bytes(4)), Parser::MSS_UNRECOVERABLE_ERROR); // 3 would have been had
    EXPECT_TRUE(system.mAllocateOutcomes.empty());
    EXPECT_EQ(parser.ReadRequestSize(), 0xFFFFFFFFU);
    EXPECT_EQ(parser.ReadBufferSize(), 4U);
}

TEST(ElementaryStreamParser, ATotalThatGrowsPastThirtyTwoBitsStaysAtTheLargest) {
    class OldParser : public ScriptedEltStreamParser {
    public:
        using ScriptedEltStreamParser::ScriptedEltStreamParser;
        void SetTotal(uint32 aTotal) { mTotalReadSize = aTotal; }
    };
    LogCatcher log;
    OldParser parser({EltStep::OfSkip(1000)}, 0xFFFFFFFF);
    parser.Open();
    parser.SetTotal(0xFFFFFFF0);
    EXPECT_EQ(parser.Push(Bytes(14)), Parser::MSS_IN_PROGRESS);
    EXPECT_EQ(parser.TotalReadSize(), 0xFFFFFFFEU);
    EXPECT_EQ(parser.Push(Bytes(14)), Parser::MSS_UNRECOVERABLE_ERROR);
    EXPECT_EQ(parser.TotalReadSize(), 0xFFFFFFFFU);
    EXPECT_EQ(log.Texts(), Texts{"ElementaryStreamParser: 'Scripted' total read size 4294967295 greater than "
                                 "limit 4294967295, assume parsing failed\n"});
}

// ---- a block that cannot be had ----

TEST(ElementaryStreamParser, AStartWhoseBlockCannotBeHadFailsAndALaterOpenWorks) {
    ScriptedSystem system;
    ScriptedSystem::Outcome refused;
    refused.mError = ENOMEM;
    system.mAllocateOutcomes = {refused};
    ScriptedEltStreamParser parser({EltStep::OfRead(10), EltStep::OfCompletion()});
    parser.Open();
    EXPECT_EQ(parser.GetParserStatus(), Parser::MSS_UNRECOVERABLE_ERROR);
    EXPECT_EQ(parser.Push(Bytes(10)), Parser::MSS_UNRECOVERABLE_ERROR);
    EXPECT_EQ(parser.TotalReadSize(), 0U);
    parser.Open();
    EXPECT_EQ(parser.GetParserStatus(), Parser::MSS_IN_PROGRESS);
    EXPECT_EQ(parser.Push(Bytes(10)), Parser::MSS_COMPLETED);
    EXPECT_EQ(parser.mSatisfied, (std::vector<Satisfied>{{false, 10, Bytes(10)}}));
}

TEST(ElementaryStreamParser, ABlockThatCannotBeHadInTheMiddleFailsAndALaterOpenWorks) {
    LogCatcher log;
    const AssertCatcher assertions;
    ScriptedSystem system;
    ScriptedEltStreamParser parser({EltStep::OfRead(4), EltStep::OfRead(10), EltStep::OfCompletion()});
    parser.Open();
    ScriptedSystem::Outcome refused;
    refused.mError = ENOMEM;
    system.mAllocateOutcomes = {refused};
    EXPECT_EQ(parser.Push(Bytes(100)), Parser::MSS_UNRECOVERABLE_ERROR);
    EXPECT_EQ(parser.mSatisfied.size(), 1U);
    EXPECT_EQ(log.Texts(), Texts{DecisionLine("failed", "4")});
    parser.Open();
    EXPECT_EQ(parser.Push(Bytes(14)), Parser::MSS_COMPLETED);
    EXPECT_EQ(parser.mSatisfied.back(), (Satisfied{false, 10, Bytes(10, 4)}));
    EXPECT_TRUE(assertions.Failures().empty()); // memory is nobody's mistake
}

TEST(ElementaryStreamParser, ADecisionStandsWhateverBecameOfTheBlock) {
    class BoldParser : public PlainParser {
    public:
        using PlainParser::PlainParser;
        parsing_status_t ContinueParsing(const unsigned char* /*aBuffer*/, uint32 /*aSize*/) override {
            RequestRead(5000);
            return MSS_COMPLETED;
        }
    };
    ScriptedSystem system;
    BoldParser parser("Bold", 1000, nullptr, nullptr);
    parser.Open();
    ScriptedSystem::Outcome refused;
    refused.mError = ENOMEM;
    system.mAllocateOutcomes = {refused};
    EXPECT_EQ(parser.AddPacket("abc", 3, false), Parser::MSS_COMPLETED);
}

TEST(ElementaryStreamParser, ARequestFromOutsideWhoseBlockCannotBeHadTakesNothing) {
    ScriptedSystem system;
    ScriptedEltStreamParser parser({EltStep::OfRead(4)});
    parser.Open();
    ScriptedSystem::Outcome refused;
    refused.mError = ENOMEM;
    system.mAllocateOutcomes = {refused};
    parser.RequestRead(5000);
    EXPECT_EQ(parser.Push(Bytes(100)), Parser::MSS_UNRECOVERABLE_ERROR);
    EXPECT_TRUE(parser.mSatisfied.empty());
}

TEST(ElementaryStreamParser, ASmallerRequestAfterARefusedBlockGoesOn) {
    class ModestParser : public ScriptedEltStreamParser {
    public:
        using ScriptedEltStreamParser::ScriptedEltStreamParser;
        parsing_status_t ContinueParsing(const unsigned char* aBuffer, uint32 aSize) override {
            RequestRead(5000);
            return ScriptedEltStreamParser::ContinueParsing(aBuffer, aSize);
        }
    };
    ScriptedSystem system;
    ModestParser parser({EltStep::OfRead(4), EltStep::OfRead(3), EltStep::OfCompletion()});
    parser.Open();
    ScriptedSystem::Outcome refused;
    refused.mError = ENOMEM;
    system.mAllocateOutcomes = {refused};
    parser.Push(Bytes(4));
    EXPECT_EQ(parser.GetParserStatus(), Parser::MSS_IN_PROGRESS);
    EXPECT_EQ(parser.ReadRequestSize(), 3U);
    EXPECT_EQ(parser.ReadBufferSize(), 4U);
}

// ---- interrupting and starting anew ----

TEST(ElementaryStreamParser, InterruptParsingFreesTheBufferAndKeepsTotalAndRecord) {
    ScriptedEltStreamParser parser({EltStep::OfRead(10)}, 1000, "Scripted", new CountedMediaInfo);
    parser.Open();
    parser.Push(Bytes(7));
    parser.InterruptParsing();
    EXPECT_EQ(parser.GetParserStatus(), Parser::MSS_COMPLETED);
    EXPECT_EQ(parser.ReadBuffer(), nullptr);
    EXPECT_EQ(parser.ReadBufferSize(), 0U);
    EXPECT_EQ(parser.ReadCurrentSize(), 0U);
    EXPECT_EQ(parser.ReadRequestSize(), 0U);
    EXPECT_FALSE(parser.IsSkipping());
    EXPECT_EQ(parser.TotalReadSize(), 7U);
    EXPECT_EQ(CountedMediaInfo::Count(), 1);
    EXPECT_EQ(parser.Push(Bytes(7)), Parser::MSS_COMPLETED);
    EXPECT_EQ(parser.TotalReadSize(), 7U);
}

TEST(ElementaryStreamParser, InterruptParsingForgetsASkip) {
    ScriptedEltStreamParser parser({EltStep::OfSkip(10)});
    parser.Open();
    EXPECT_TRUE(parser.IsSkipping());
    parser.InterruptParsing();
    EXPECT_FALSE(parser.IsSkipping());
}

TEST(ElementaryStreamParser, ResetParsingStartsAnewAndKeepsTheBuffer) {
    ScriptedEltStreamParser parser({EltStep::OfRead(10), EltStep::OfRead(4)});
    parser.Open();
    parser.Push(Bytes(12));
    const unsigned char* const buffer = parser.ReadBuffer();
    const ScriptedSystem system;
    parser.ResetParsing(false);
    EXPECT_EQ(parser.ReadBuffer(), buffer);
    EXPECT_EQ(parser.ReadBufferSize(), 10U);
    EXPECT_EQ(parser.ReadCurrentSize(), 0U);
    EXPECT_EQ(parser.ReadRequestSize(), 10U);
    EXPECT_EQ(system.GetCounts().mAllocate, 0U);
    EXPECT_EQ(parser.mStarts, (std::vector<bool>{false, false}));
    parser.ResetParsing(true);
    EXPECT_EQ(parser.mStarts, (std::vector<bool>{false, false, true}));
}

TEST(ElementaryStreamParser, ResetParsingForgetsASkipSoThatAnAppendIsARead) {
    ScriptedEltStreamParser parser({EltStep::OfSkip(10)});
    parser.mScriptAfterLoss = {EltStep::OfNothing()};
    parser.Open();
    parser.Push(Bytes(4));
    parser.ResetParsing(true);
    EXPECT_FALSE(parser.IsSkipping());
    EXPECT_EQ(parser.ReadCurrentSize(), 0U);
    EXPECT_EQ(parser.ReadRequestSize(), 0U);
}

// ---- lost packets ----

TEST(ElementaryStreamParser, LostPacketsRestartTheFormatWithThePacketThatTellsOfThem) {
    ScriptedEltStreamParser parser({EltStep::OfRead(10), EltStep::OfCompletion()});
    parser.Open();
    parser.Push(Bytes(7));
    EXPECT_EQ(parser.Push(Bytes(6, 100), true), Parser::MSS_IN_PROGRESS);
    EXPECT_EQ(parser.mStarts, (std::vector<bool>{false, true}));
    EXPECT_EQ(parser.ReadCurrentSize(), 6U); // the seven are dropped
    EXPECT_EQ(parser.TotalReadSize(), 13U);
    EXPECT_EQ(parser.Push(Bytes(4, 106)), Parser::MSS_COMPLETED);
    EXPECT_EQ(parser.mSatisfied, (std::vector<Satisfied>{{false, 10, Bytes(10, 100)}}));
}

TEST(ElementaryStreamParser, ARestartThatDecidesStandsWithoutAssertion) {
    for (const auto& [step, status, how] :
         {std::tuple(EltStep::OfCompletion(), Parser::MSS_COMPLETED, "completed"),
          std::tuple(EltStep::OfFailure(), Parser::MSS_UNRECOVERABLE_ERROR, "failed")}) {
        LogCatcher log;
        const AssertCatcher assertions;
        ScriptedEltStreamParser parser({EltStep::OfRead(10)});
        parser.mScriptAfterLoss = {step};
        parser.Open();
        parser.Push(Bytes(7));
        EXPECT_EQ(parser.Push(Bytes(20), true), status);
        EXPECT_TRUE(assertions.Failures().empty());
        EXPECT_TRUE(parser.mSatisfied.empty());
        EXPECT_EQ(parser.TotalReadSize(), 27U);
        EXPECT_EQ(log.Texts(), Texts{DecisionLine(how, "7")}); // nothing of the packet was taken
    }
}

TEST(ElementaryStreamParser, ARestartThatDecidesBeyondTheLimitIsNotALimitsFailure) {
    LogCatcher log;
    ScriptedEltStreamParser parser({EltStep::OfRead(1000)}, 10);
    parser.mScriptAfterLoss = {EltStep::OfCompletion()};
    parser.Open();
    EXPECT_EQ(parser.Push(Bytes(20), true), Parser::MSS_COMPLETED);
    EXPECT_EQ(log.Texts(), Texts{DecisionLine("completed", "0")});
}

TEST(ElementaryStreamParser, ARestartWithoutARequestEndsAsFailure) {
    const AssertCatcher assertions;
    ScriptedEltStreamParser parser({EltStep::OfRead(10)});
    parser.mScriptAfterLoss = {EltStep::OfNothing()};
    parser.Open();
    EXPECT_EQ(parser.Push(Bytes(20), true), Parser::MSS_UNRECOVERABLE_ERROR);
    EXPECT_EQ(assertions.Failures(), AssertCatcher::Noted({kNoRequest}));
}

TEST(ElementaryStreamParser, ARestartWhoseBlockCannotBeHadFails) {
    ScriptedSystem system;
    ScriptedEltStreamParser parser({EltStep::OfRead(10)});
    parser.mScriptAfterLoss = {EltStep::OfRead(100)};
    parser.Open();
    ScriptedSystem::Outcome refused;
    refused.mError = ENOMEM;
    system.mAllocateOutcomes = {refused};
    EXPECT_EQ(parser.Push(Bytes(20), true), Parser::MSS_UNRECOVERABLE_ERROR);
}

TEST(ElementaryStreamParser, AnEmptyPacketMayTellOfLostOnes) {
    ScriptedEltStreamParser parser({EltStep::OfRead(10)});
    parser.Open();
    parser.Push(Bytes(7));
    EXPECT_EQ(parser.Push("", true), Parser::MSS_IN_PROGRESS);
    EXPECT_EQ(parser.ReadCurrentSize(), 0U);
    EXPECT_EQ(parser.TotalReadSize(), 7U);
}

// ---- overriding ----

namespace {

/// Notes which of the base's own steps come back to the derived class.
class OverridingParser : public PlainParser {
public:
    OverridingParser(Texts* aCalls) : PlainParser("Overriding", 1000, nullptr, nullptr), mCalls(aCalls) {}
    ~OverridingParser() override { mCalls->push_back("destructor"); }

    void InterruptParsing() override {
        mCalls->push_back("InterruptParsing");
        PlainParser::InterruptParsing();
    }
    void ResetParsing(bool afFromError) override {
        mCalls->push_back(afFromError ? "ResetParsing true" : "ResetParsing false");
        PlainParser::ResetParsing(afFromError);
    }
    void RequestReadOrSkip(uint32 aSize, bool aSkipRead, bool aAppend) override {
        mCalls->push_back("RequestReadOrSkip");
        PlainParser::RequestReadOrSkip(aSize, aSkipRead, aAppend);
    }
    void GetReadData(const unsigned char*& aSrcBuffer, uint32& aSize) override {
        mCalls->push_back("GetReadData");
        PlainParser::GetReadData(aSrcBuffer, aSize);
    }
    parsing_status_t StartParsing(bool afFromError) override {
        mCalls->push_back("StartParsing");
        return PlainParser::StartParsing(afFromError);
    }
    parsing_status_t ContinueParsing(const unsigned char* aBuffer, uint32 aSize) override {
        mCalls->push_back("ContinueParsing");
        return PlainParser::ContinueParsing(aBuffer, aSize);
    }

private:
    Texts* mCalls;
};

} // namespace

TEST(ElementaryStreamParser, EveryStepGoesThroughTheVirtualOperations) {
    Texts calls;
    {
        const std::unique_ptr<Parser> parser = std::make_unique<OverridingParser>(&calls);
        parser->Open();
        EXPECT_EQ(calls,
                  (Texts{"InterruptParsing", "ResetParsing false", "StartParsing", "RequestReadOrSkip"}));
        calls.clear();
        parser->AddPacket("a", 1, false);
        EXPECT_EQ(calls, (Texts{"GetReadData", "ContinueParsing", "RequestReadOrSkip"}));
        calls.clear();
        parser->AddPacket("", 0, true);
        EXPECT_EQ(calls, (Texts{"ResetParsing true", "StartParsing", "RequestReadOrSkip"}));
        calls.clear();
        EXPECT_EQ(parser->Close(), nullptr);
        EXPECT_EQ(calls, Texts{"InterruptParsing"});
        calls.clear();
    }
    EXPECT_EQ(calls, Texts{"destructor"}); // whose base frees the buffer by its own InterruptParsing
}

TEST(ElementaryStreamParser, DestructionInTheMiddleFreesEverything) {
    int deleted = 0;
    {
        PlainParser parser("MP3", 1000, new WatchedStreamInfo("audio", 1, &deleted), new CountedMediaInfo);
        parser.Open();
        parser.AddPacket("abc", 3, false);
    }
    EXPECT_EQ(deleted, 1);
    EXPECT_EQ(CountedMediaInfo::Count(), 0);
}
