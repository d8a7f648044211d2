#include "ezBytes/WaitingRead.h"

#include "support/ScriptedStream.h"

#include <gtest/gtest.h>

#include <functional>
#include <future>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

class WaitingReadOf : public testing::Test {
protected:
    WaitingReadOf() : mStream("abcdefgh", false) {}

    /// What a read of aSize bytes gave.
    std::string Read(std::size_t aSize) {
        std::string buffer(aSize, '?');
        std::size_t count = aSize;
        mStatus = WaitingRead(mStream, mArrived, &buffer[0], &count);
        EXPECT_LE(count, aSize);
        return buffer.substr(0, count);
    }

    /// The first look that finds nothing does aSteps[0], the next aSteps[1]; none may follow the last.
    void WhenNothingIsFound(std::vector<std::function<void()>> aSteps) {
        mStream.Withhold();
        mStream.mOnNothing = [this, steps = std::move(aSteps)] {
            ASSERT_LT(mLooks, steps.size());
            steps[mLooks++]();
        };
    }

    bool CallbackWasTakenAway() {
        const std::vector<std::string> calls = mStream.TakeCalls();
        return !calls.empty() && calls.back() == "unregister";
    }

    ScriptedStream mStream;
    ezCondition mArrived;
    std::size_t mLooks = 0;
    ezStreamingStatus mStatus = ezStreamingStatus_NotSupported;
};

} // namespace

TEST_F(WaitingReadOf, BytesThatAreThereAreReadAtOnceAndNoCallbackIsNeeded) {
    EXPECT_EQ(Read(3), "abc");
    EXPECT_EQ(mStatus, ezStreamingStatus_NoError);
    EXPECT_EQ(mStream.TakeCalls(), std::vector<std::string>{"read 3 flag 0"});
    EXPECT_EQ(Read(5), "defgh");
}

TEST_F(WaitingReadOf, BytesThatComeBeforeTheCallbackStandsAreFound) {
    WhenNothingIsFound({[this] { mStream.Arrive(4); }});
    EXPECT_EQ(Read(4), "abcd");
    EXPECT_EQ(mStatus, ezStreamingStatus_NoError);
    EXPECT_TRUE(CallbackWasTakenAway());
}

TEST_F(WaitingReadOf, BytesThatComeBetweenTheLookAndTheWaitWakeIt) {
    WhenNothingIsFound({[] {},
                        [this] {
                            mStream.Arrive(4);
                            mStream.Fire();
                        }});
    EXPECT_EQ(Read(4), "abcd");
    EXPECT_EQ(mStatus, ezStreamingStatus_NoError);
    EXPECT_TRUE(CallbackWasTakenAway());
}

TEST_F(WaitingReadOf, BytesOfAnotherThreadEndTheWait) {
    std::promise<void> waiting;
    WhenNothingIsFound({[] {}, [&waiting] { waiting.set_value(); }});
    std::thread writer([this, &waiting] {
        waiting.get_future().wait();
        mStream.Arrive(8);
        mStream.Fire();
    });
    EXPECT_EQ(Read(8), "abcdefgh");
    writer.join();
    EXPECT_EQ(mStatus, ezStreamingStatus_NoError);
    EXPECT_TRUE(CallbackWasTakenAway());
}

TEST_F(WaitingReadOf, ACallbackThatBringsNothingLetsItWaitOn) {
    WhenNothingIsFound({[] {}, [this] { mStream.Fire(); },
                        [this] {
                            mStream.Arrive(2);
                            mStream.Fire();
                        }});
    EXPECT_EQ(Read(2), "ab");
    EXPECT_EQ(mLooks, 3U);
}

TEST_F(WaitingReadOf, TheEndOfTheMediaEndsTheWaitWithWhatIsLeft) {
    WhenNothingIsFound({[] {},
                        [this] {
                            mStream.Arrive(3);
                            mStream.Finish();
                            mStream.Fire();
                        }});
    EXPECT_EQ(Read(5), "abc");
    EXPECT_EQ(mStatus, ezStreamingStatus_EOS);
    EXPECT_TRUE(CallbackWasTakenAway());
    EXPECT_EQ(Read(5), "");
    EXPECT_EQ(mStatus, ezStreamingStatus_EOS);
}

TEST_F(WaitingReadOf, AnErrorEndsTheWaitAndIsTold) {
    WhenNothingIsFound({[] {},
                        [this] {
                            mStream.Fail(ezStreamingStatus_Interrupted);
                            mStream.Fire();
                        }});
    EXPECT_EQ(Read(5), "");
    EXPECT_EQ(mStatus, ezStreamingStatus_Interrupted);
    EXPECT_TRUE(CallbackWasTakenAway());
}

// ---- within a limit ----

namespace {

struct LimitCase {
    std::size_t mSize;   ///< asked for
    std::uint64_t mLeft; ///< allowed
    const char* mBytes;
    ReadEnding mEnding;
    const char* mRead;
};

} // namespace

TEST(WaitingReadWithin, OneByteMoreThanMayBeGivenTellsWhetherThereIsOne) {
    constexpr LimitCase kCases[] = {
        {5, 100, "abcde", ReadEnding::None, "read 5 flag 0"},
        {8, 100, "abcdefgh", ReadEnding::None, "read 8 flag 0"}, // the end is not known yet
        {9, 100, "abcdefgh", ReadEnding::End, "read 9 flag 0"},
        {100, 9, "abcdefgh", ReadEnding::End, "read 10 flag 0"},
        {100, 8, "abcdefgh", ReadEnding::End, "read 9 flag 0"}, // which ends there
        {100, 7, "abcdefg", ReadEnding::Limit, "read 8 flag 0"},
        {8, 7, "abcdefg", ReadEnding::Limit, "read 8 flag 0"},
        {7, 7, "abcdefg", ReadEnding::None, "read 7 flag 0"},
        {100, 0, "", ReadEnding::Limit, "read 1 flag 0"},
        {1, 0, "", ReadEnding::Limit, "read 1 flag 0"},
        {5, UINT64_MAX, "abcde", ReadEnding::None, "read 5 flag 0"},
    };
    for (const LimitCase& one : kCases) {
        ScriptedStream stream("abcdefgh", true);
        ezCondition arrived;
        std::string buffer(one.mSize, '?');
        const LimitedRead read = WaitingReadWithin(stream, arrived, &buffer[0], one.mSize, one.mLeft);
        EXPECT_EQ(buffer.substr(0, read.mCount), one.mBytes) << one.mSize << " of " << one.mLeft;
        EXPECT_EQ(read.mEnding, one.mEnding) << one.mSize << " of " << one.mLeft;
        EXPECT_EQ(stream.TakeCalls(), std::vector<std::string>{one.mRead});
    }
}

TEST(WaitingReadWithin, FailureGivesNothing) {
    ScriptedStream stream("abcdefgh", true);
    stream.Withhold();
    stream.Fail(ezStreamingStatus_ReadError);
    ezCondition arrived;
    char buffer[4] = {};
    const LimitedRead read = WaitingReadWithin(stream, arrived, buffer, sizeof buffer, 100);
    EXPECT_EQ(read.mCount, 0U);
    EXPECT_EQ(read.mEnding, ReadEnding::Failed);
}
