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
