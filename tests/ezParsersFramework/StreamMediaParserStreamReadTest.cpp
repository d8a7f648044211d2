#include "ez/StreamMediaParserStream.h"

#include "support/Catchers.h"
#include "support/ScriptedStream.h"
#include "support/StreamProbe.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

// The two ways of reading, held against a stream that plays every status with every count, also where that
// breaks the contract of a stream.

namespace {

using Calls = std::vector<std::string>;

constexpr std::size_t kAsked = 100;
constexpr int kUnknownStatus = 77;

const std::string& TheMedia() {
    static const std::string media = RandomMedia(60000);
    return media;
}

/// What a read of kAsked bytes of the source gave.
struct Outcome {
    ezFileOffset mResult;
    std::string mBuffer;

    /// The media's bytes at aPosition, as many as aCount, and the rest untouched.
    bool HoldsOnly(std::size_t aPosition, std::size_t aCount) const {
        return mBuffer ==
               TheMedia().substr(aPosition, aCount) + std::string(mBuffer.size() - aCount, kUntouched);
    }
};

/// The buffer has room after what is asked, which a read must leave alone.
Outcome MediaRead(StreamProbe& anAdapter) {
    Outcome outcome{0, std::string(kAsked + 50, kUntouched)};
    outcome.mResult = anAdapter.MediaRead(&outcome.mBuffer[0], kAsked);
    return outcome;
}

bool IsGood(int aStatus) {
    return aStatus == ezStreamingStatus_NoError || aStatus == ezStreamingStatus_EOS;
}

/// Every status with every kind of count; not NoError with nothing, which waits.
std::vector<ScriptedStream::Outcome> Outcomes() {
    std::vector<int> statuses = {kUnknownStatus, -1};
    for (int status = 0; status <= 11; ++status) {
        statuses.push_back(status);
    }
    std::vector<ScriptedStream::Outcome> outcomes;
    for (const int status : statuses) {
        for (const std::size_t count :
             {std::size_t{0}, std::size_t{1}, kAsked - 60, kAsked, kAsked + 1, kAsked + 30, SIZE_MAX}) {
            if (status != ezStreamingStatus_NoError || count != 0) {
                outcomes.push_back({static_cast<ezStreamingStatus>(status), count});
            }
        }
    }
    return outcomes;
}

std::string Named(const ScriptedStream::Outcome& anOutcome) {
    return "status " + std::to_string(anOutcome.mStatus) + ", count " + std::to_string(anOutcome.mCount);
}

class StreamMediaParserStreamReads : public testing::TestWithParam<bool> {
protected:
    StreamMediaParserStreamReads() : mStream(TheMedia(), GetParam()) {}

    ScriptedStream mStream;
    AssertCatcher mAssertions;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(, StreamMediaParserStreamReads, testing::Bool(),
                         [](const auto& anInfo) { return anInfo.param ? "Lending" : "Copying"; });

// ---- which way ----

TEST(StreamMediaParserStreamRead, BothAnswersAreNeededForTheWayThatLends) {
    struct Case {
        bool mfOwnBuffer;
        bool mfCanLend;
        Calls mCalls;
    };
    const Case cases[] = {{true, true, {"own buffer?", "lends 3?", "lend 100 flag 1"}},
                          {true, false, {"own buffer?", "lends 3?", "read 100 flag 1"}},
                          {false, true, {"own buffer?", "read 100 flag 1"}},
                          {false, false, {"own buffer?", "read 100 flag 1"}}};
    for (const Case& answers : cases) {
        ScriptedStream stream(TheMedia(), true);
        stream.mfOwnBuffer = answers.mfOwnBuffer;
        stream.mfCanLend = answers.mfCanLend;
        StreamProbe adapter(&stream, false);
        stream.TakeCalls();
        const Outcome read = MediaRead(adapter);
        EXPECT_EQ(read.mResult, 100);
        EXPECT_TRUE(read.HoldsOnly(0, kAsked));
        EXPECT_EQ(stream.TakeCalls(), answers.mCalls);
    }
}

TEST(StreamMediaParserStreamRead, AStreamThatChangesItsMindIsReadTheOtherWay) {
    ScriptedStream stream(TheMedia(), true);
    StreamProbe adapter(&stream, false);
    ASSERT_TRUE(adapter.Open());
    for (const bool fLends : {true, false, false, true, true, false}) {
        stream.mfCanLend = fLends;
        ASSERT_TRUE(adapter.SeekLazily(20000));
        EXPECT_EQ(ReadExactly(adapter, 300), TheMedia().substr(20000, 300));
        EXPECT_EQ(ReadExactly(adapter, 9000), TheMedia().substr(20300, 9000));
    }
}

// ---- every status with every count ----

TEST(StreamMediaParserStreamRead, CopyingGivesTheCountWhateverTheStatusAndMovesOnlyOnSuccess) {
    AssertCatcher assertions;
    for (const std::size_t position : {0U, 500U}) {
        for (const ScriptedStream::Outcome& outcome : Outcomes()) {
            SCOPED_TRACE(Named(outcome) + " at " + std::to_string(position));
            ScriptedStream stream(TheMedia(), false);
            StreamProbe adapter(&stream, false);
            ASSERT_TRUE(adapter.SeekNow(position));
            stream.mOutcomes = {outcome};
            const Outcome read = MediaRead(adapter);
            const std::size_t count = std::min(outcome.mCount, kAsked);
            EXPECT_EQ(read.mResult, static_cast<ezFileOffset>(count));
            EXPECT_TRUE(read.HoldsOnly(position, count));
            EXPECT_EQ(adapter.StreamPos(), IsGood(outcome.mStatus) ? position + count : position);
            EXPECT_EQ(adapter.SeekPos(), adapter.StreamPos());
            EXPECT_TRUE(stream.mOutcomes.empty());
        }
    }
    EXPECT_EQ(assertions.Failures(), std::vector<std::string>());
}

TEST(StreamMediaParserStreamRead, LendingGivesAnErrorAndMovesBackByOneWhereCopyingGivesTheCount) {
    AssertCatcher assertions;
    for (const std::size_t position : {0U, 1U, 500U}) {
        for (const ScriptedStream::Outcome& outcome : Outcomes()) {
            SCOPED_TRACE(Named(outcome) + " at " + std::to_string(position));
            ScriptedStream stream(TheMedia(), true);
            StreamProbe adapter(&stream, false);
            ASSERT_TRUE(adapter.SeekNow(position));
            stream.mOutcomes = {outcome};
            const Outcome read = MediaRead(adapter);
            const std::size_t count = std::min(outcome.mCount, kAsked);
            if (IsGood(outcome.mStatus)) {
                EXPECT_EQ(read.mResult, static_cast<ezFileOffset>(count));
                EXPECT_TRUE(read.HoldsOnly(position, count));
                EXPECT_EQ(adapter.SeekPos(), position + count);
            } else {
                EXPECT_EQ(read.mResult, -1);
                EXPECT_TRUE(read.HoldsOnly(position, 0));
                EXPECT_EQ(adapter.SeekPos(), std::uint64_t{position} - 1) << "around 0 too";
            }
            EXPECT_EQ(adapter.StreamPos(), position) << "lending moves nothing";
            EXPECT_TRUE(stream.mOutcomes.empty());
        }
    }
    EXPECT_EQ(assertions.Failures(), std::vector<std::string>());
}

TEST_P(StreamMediaParserStreamReads, EveryStatusWithNothingThatIsNotNoErrorEndsTheWait) {
    for (int status = 1; status <= 11; ++status) {
        StreamProbe adapter(&mStream, false);
        ASSERT_TRUE(adapter.SeekNow(500));
        mStream.mOutcomes = {{ezStreamingStatus_NoError, 0}, {static_cast<ezStreamingStatus>(status), 0}};
        mStream.mOnNothing = [this] { mStream.Fire(); };
        const Outcome read = MediaRead(adapter);
        EXPECT_EQ(read.mResult, GetParam() && status != ezStreamingStatus_EOS ? -1 : 0) << status;
        EXPECT_TRUE(read.HoldsOnly(0, 0));
        EXPECT_TRUE(mStream.mOutcomes.empty());
    }
}

TEST(StreamMediaParserStreamRead, ALentNullPointerIsAnErrorWhereItShouldHoldBytes) {
    AssertCatcher assertions;
    for (const int status : {0, 1, 8}) {
        ScriptedStream stream(TheMedia(), true);
        StreamProbe adapter(&stream, false);
        ASSERT_TRUE(adapter.SeekNow(500));
        stream.mOutcomes = {{static_cast<ezStreamingStatus>(status), 40, true}};
        const Outcome read = MediaRead(adapter);
        EXPECT_EQ(read.mResult, -1) << status;
        EXPECT_TRUE(read.HoldsOnly(0, 0));
        EXPECT_EQ(adapter.SeekPos(), 499U);
        EXPECT_EQ(adapter.StreamPos(), 500U);
    }
    ScriptedStream stream(TheMedia(), true);
    StreamProbe adapter(&stream, false);
    stream.mOutcomes = {{ezStreamingStatus_EOS, 0, true}};
    EXPECT_EQ(MediaRead(adapter).mResult, 0) << "it need not point at nothing";
    EXPECT_EQ(assertions.Failures(), std::vector<std::string>());
}

TEST_P(StreamMediaParserStreamReads, AReadOfNothingAsksNothing) {
    StreamProbe adapter(&mStream, false);
    mStream.Withhold();
    mStream.TakeCalls();
    EXPECT_EQ(adapter.MediaRead(nullptr, 0), 0);
    EXPECT_EQ(ReadExactly(adapter, 0), "");
    EXPECT_EQ(mStream.TakeCalls(), Calls());
}

// ---- what the reads of the base make of it ----

TEST(StreamMediaParserStreamRead, AnErrorInTheFillLeavesTheBufferEmpty) {
    for (const bool fLending : {false, true}) {
        ScriptedStream stream(TheMedia(), fLending);
        StreamProbe adapter(&stream, false);
        stream.mOutcomes = {{ezStreamingStatus_ReadError, 0}};
        EXPECT_TRUE(adapter.Open()) << "whose one byte tells nothing";
        EXPECT_EQ(adapter.At(), 0U);
        EXPECT_EQ(adapter.SeekPos(), 0U);
        EXPECT_EQ(adapter.StreamPos(), 0U);
        EXPECT_EQ(ReadExactly(adapter, 20), TheMedia().substr(0, 20)) << "past the buffer, which is empty";
    }
}

TEST(StreamMediaParserStreamRead, AnErrorOfADirectReadIsFailureAndLeavesThePosition) {
    ScriptedStream stream(TheMedia(), true);
    StreamProbe adapter(&stream, false);
    ASSERT_TRUE(adapter.Open());
    ASSERT_TRUE(adapter.SeekLazily(20000));
    stream.mOutcomes = {{ezStreamingStatus_ReadError, 0}};
    EXPECT_EQ(ReadUpTo(adapter, kAsked), "<error>");
    EXPECT_EQ(adapter.At(), 20000U);
    EXPECT_EQ(adapter.SeekPos(), 19999U);
    EXPECT_EQ(ReadUpTo(adapter, kAsked), TheMedia().substr(19999, kAsked))
        << "a byte before: who reads on after an error seeks first";
    ASSERT_TRUE(adapter.SeekLazily(20000));
    EXPECT_EQ(ReadUpTo(adapter, kAsked), TheMedia().substr(20000, kAsked));
}

TEST(StreamMediaParserStreamRead, AnErrorAt0IsMovedAroundAndTheNextReadGivesNothing) {
    AssertCatcher assertions;
    ScriptedStream stream(TheMedia(), true);
    StreamProbe adapter(&stream, false);
    stream.mOutcomes = {{ezStreamingStatus_ReadError, 0}};
    EXPECT_EQ(MediaRead(adapter).mResult, -1);
    EXPECT_EQ(adapter.SeekPos(), UINT64_MAX);
    EXPECT_EQ(adapter.StreamPos(), 0U);
    EXPECT_EQ(MediaRead(adapter).mResult, 0) << "the stream refuses a seek there";
    ASSERT_TRUE(adapter.SeekLazily(0));
    EXPECT_EQ(MediaRead(adapter).mResult, 100);
    EXPECT_EQ(assertions.Failures(), std::vector<std::string>());
}

TEST_P(StreamMediaParserStreamReads, ACountThatIsTooLargeFillsTheBufferAndNoMore) {
    StreamProbe adapter(&mStream, false);
    mStream.mOutcomes = {{ezStreamingStatus_NoError, SIZE_MAX}};
    ASSERT_TRUE(adapter.Open());
    EXPECT_EQ(ReadExactly(adapter, 8191), TheMedia().substr(0, 8191));
    EXPECT_EQ(ReadExactly(adapter, 9000), TheMedia().substr(8191, 9000));
}

// ---- the end and the live edge ----

TEST_P(StreamMediaParserStreamReads, AtTheEndAReadGivesNothingWithoutWaiting) {
    StreamProbe adapter(&mStream, false);
    ASSERT_TRUE(adapter.Open());
    bool fNothing = false;
    mStream.mOnNothing = [&fNothing] { fNothing = true; };
    ASSERT_TRUE(adapter.SeekLazily(60000));
    EXPECT_EQ(ReadUpTo(adapter, kAsked), "");
    EXPECT_EQ(ReadExactly(adapter, 1), "");
    EXPECT_EQ(adapter.At(), 60000U);
    ASSERT_TRUE(adapter.SeekLazily(59990));
    EXPECT_EQ(ReadUpTo(adapter, kAsked), TheMedia().substr(59990));
    EXPECT_EQ(adapter.At(), 60000U);
    ASSERT_TRUE(adapter.SeekLazily(59990));
    EXPECT_EQ(ReadExactly(adapter, kAsked), "");
    EXPECT_EQ(adapter.At(), 60000U);
    EXPECT_FALSE(fNothing);
}

TEST_P(StreamMediaParserStreamReads, AtTheLiveEdgeAReadWaitsUntilAllOfItHasArrived) {
    StreamProbe adapter(&mStream, false);
    mStream.Withhold();
    std::size_t waits = 0;
    mStream.mOnNothing = [&] {
        ++waits;
        mStream.Arrive(10);
        mStream.Fire();
    };
    EXPECT_EQ(MediaRead(adapter).mBuffer.substr(0, kAsked), TheMedia().substr(0, kAsked));
    EXPECT_EQ(waits, 10U);
}

TEST_P(StreamMediaParserStreamReads, AWakeUpThatBringsNothingIsWaitedOn) {
    StreamProbe adapter(&mStream, false);
    mStream.Withhold();
    std::size_t waits = 0;
    mStream.mOnNothing = [&] {
        if (++waits == 50) {
            mStream.Arrive(kAsked);
        }
        mStream.Fire();
    };
    mStream.TakeCalls();
    EXPECT_EQ(MediaRead(adapter).mResult, 100);
    EXPECT_EQ(waits, 50U);
    const Calls calls = mStream.TakeCalls();
    EXPECT_EQ(std::count(calls.begin(), calls.end(), GetParam() ? "lend 100 flag 1" : "read 100 flag 1"), 51)
        << "asked for all of it each time";
}

TEST_P(StreamMediaParserStreamReads, ASignalThatCameLongBeforeTheWaitIsKept) {
    StreamProbe adapter(&mStream, false);
    adapter.ThresholdReached();
    mStream.mOutcomes = {{ezStreamingStatus_NoError, 0}};
    EXPECT_EQ(MediaRead(adapter).mResult, 100) << "it wakes at once, and looks again";
}

TEST_P(StreamMediaParserStreamReads, TheFreeFunctionWakesTheAdapterItIsGiven) {
    StreamProbe adapter(&mStream, false);
    sStreamThresholdCallBack(&adapter);
    mStream.mOutcomes = {{ezStreamingStatus_NoError, 0}};
    EXPECT_EQ(MediaRead(adapter).mResult, 100);
}

TEST_P(StreamMediaParserStreamReads, NoWakeUpIsLostBetweenTheLookAndTheWait) {
    StreamProbe adapter(&mStream, false);
    mStream.Withhold();
    std::size_t waits = 0;
    mStream.mOnNothing = [&] { // the reader has found nothing, and does not wait yet
        ++waits;
        mStream.Arrive(10);
        mStream.Fire();
    };
    for (std::size_t i = 0; i < 1000; ++i) {
        char buffer[10];
        ASSERT_EQ(adapter.MediaRead(buffer, 10), 10);
        ASSERT_EQ(std::string(buffer, 10), TheMedia().substr(i * 10, 10));
    }
    EXPECT_EQ(waits, 1000U);
}

TEST_P(StreamMediaParserStreamReads, AMediaThatEndsWhileAReaderWaitsGivesWhatThereIs) {
    StreamProbe adapter(&mStream, false);
    mStream.mfSizeKnown = false;
    mStream.Withhold();
    mStream.Arrive(30);
    mStream.mOnNothing = [this] {
        mStream.Finish();
        mStream.Fire();
    };
    EXPECT_TRUE(adapter.Open());
    EXPECT_EQ(ReadUpTo(adapter, kAsked), TheMedia().substr(0, 30));
    EXPECT_EQ(ReadUpTo(adapter, kAsked), "");
}

TEST_P(StreamMediaParserStreamReads, AnErrorWhileAReaderWaitsEndsTheWait) {
    StreamProbe adapter(&mStream, false);
    mStream.Withhold();
    mStream.Arrive(30);
    mStream.mOnNothing = [this] {
        mStream.Fail(ezStreamingStatus_Interrupted);
        mStream.Fire();
    };
    ASSERT_TRUE(adapter.SeekLazily(0));
    EXPECT_EQ(MediaRead(adapter).mResult, GetParam() ? -1 : 0);
}
