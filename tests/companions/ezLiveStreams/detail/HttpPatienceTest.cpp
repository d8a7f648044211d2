#include "ezLiveStreams/FeedStream.h"

#ifdef EZ_HAS_HTTP_STREAM
#include "ezLiveStreams/detail/HttpPatience.h"
#include "ezLiveStreams/detail/Limits.h"

#include <gtest/gtest.h>

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kStall{1'000};

/// A patience with a clock that stands still.
class HttpPatience : public testing::Test {
protected:
    HttpPatience() { mPatience.Ask(At(0)); }

    static ezHttpPatience::Clock::time_point At(int aMilliseconds) {
        return ezHttpPatience::Clock::time_point(std::chrono::hours(1)) + milliseconds(aMilliseconds);
    }
    int LeftAt(int aMilliseconds) { return static_cast<int>(mPatience.TimeLeft(At(aMilliseconds)).count()); }

    ezHttpPatience mPatience{kStall};
};

} // namespace

TEST_F(HttpPatience, SilenceEndsAtTheTimeThatTheHostChose) {
    EXPECT_EQ(LeftAt(0), 1'000);
    EXPECT_EQ(LeftAt(999), 1);
    EXPECT_EQ(mPatience.GetReason(), "");
    EXPECT_EQ(LeftAt(1'000), 0);
    EXPECT_EQ(mPatience.GetReason(), "the server sent nothing for 1 seconds");
}

TEST_F(HttpPatience, TheSmallerOfBothTimesIsLeft) {
    for (int at = 500; at <= 3'500; at += 500) {
        EXPECT_TRUE(mPatience.TakeLine(10, At(at)));
    }
    EXPECT_EQ(LeftAt(3'500), 500); // until the head has to be there
    EXPECT_EQ(LeftAt(3'300), 700); // the same, as the last line came then at the latest
    EXPECT_TRUE(mPatience.TakeLine(10, At(3'600)));
    EXPECT_EQ(LeftAt(3'600), 400);
    EXPECT_EQ(LeftAt(3'999), 4); // in whole quarters
    EXPECT_EQ(LeftAt(4'000), 0);
    EXPECT_EQ(mPatience.GetReason(), "the server did not answer within 4 seconds");
}

TEST_F(HttpPatience, LinesAreProgressOfAHeadAndOfNothingElse) {
    EXPECT_TRUE(mPatience.TakeLine(10, At(900)));
    EXPECT_EQ(LeftAt(900), 1'000);
    mPatience.Accept(At(900));
    mPatience.TakeBody(At(1'000));
    EXPECT_EQ(LeftAt(1'100), 900);
    EXPECT_TRUE(mPatience.TakeLine(10, At(1'500))); // of a trailer
    EXPECT_EQ(LeftAt(1'500), 500);
    EXPECT_EQ(LeftAt(2'000), 0);
    EXPECT_EQ(mPatience.GetReason(), "the server sent nothing for 1 seconds");
}

TEST_F(HttpPatience, HeadAndTrailerHaveOneTime) {
    for (int at = 0; at <= 3'600; at += 900) {
        EXPECT_TRUE(mPatience.TakeLine(10, At(at)));
    }
    mPatience.Accept(At(3'600));
    mPatience.TakeBody(At(20'000)); // the time of a body does not count
    EXPECT_EQ(LeftAt(20'000), 1'000);
    EXPECT_TRUE(mPatience.TakeLine(10, At(20'100)));
    EXPECT_EQ(LeftAt(20'100), 400);
    EXPECT_EQ(LeftAt(20'499), 4);
    EXPECT_EQ(mPatience.GetReason(), "");
    EXPECT_EQ(LeftAt(20'500), 0);
    EXPECT_EQ(mPatience.GetReason(), "the server did not answer within 4 seconds");
}

TEST_F(HttpPatience, ARequestBeginsAnew) {
    EXPECT_EQ(LeftAt(1'000), 0);
    mPatience.Ask(At(5'000));
    EXPECT_EQ(mPatience.GetReason(), "");
    EXPECT_EQ(LeftAt(5'000), 1'000);
}

TEST_F(HttpPatience, TheLargestTimeThereIsHasNoEnd) {
    ezHttpPatience patience{milliseconds::max()};
    patience.Ask(At(0));
    EXPECT_GT(patience.TimeLeft(At(1'000'000)).count(), 0);
    EXPECT_EQ(patience.GetReason(), "");
}

TEST_F(HttpPatience, HeadsAndTrailersHaveOneNumberOfLines) {
    for (std::size_t i = 1; i < kHttp_MaxHeadLines; ++i) {
        ASSERT_TRUE(mPatience.TakeLine(1, At(0)));
    }
    mPatience.Accept(At(0));
    mPatience.TakeBody(At(0));
    EXPECT_TRUE(mPatience.TakeLine(1, At(0)));
    EXPECT_EQ(mPatience.GetReason(), "");
    EXPECT_FALSE(mPatience.TakeLine(1, At(0)));
    EXPECT_EQ(mPatience.GetReason(), "the server sent more than 2000 lines of fields");
    mPatience.Ask(At(0));
    EXPECT_TRUE(mPatience.TakeLine(1, At(0)));
}

TEST_F(HttpPatience, HeadsAndTrailersHaveOneNumberOfBytes) {
    EXPECT_TRUE(mPatience.TakeLine(kHttp_MaxHeadBytes - 10, At(0)));
    mPatience.Accept(At(0));
    EXPECT_TRUE(mPatience.TakeLine(10, At(0)));
    EXPECT_FALSE(mPatience.TakeLine(1, At(0)));
    EXPECT_EQ(mPatience.GetReason(), "the server sent more than 262144 bytes of fields");
    mPatience.Ask(At(0));
    EXPECT_TRUE(mPatience.TakeLine(kHttp_MaxHeadBytes, At(0)));
    EXPECT_FALSE(mPatience.TakeLine(SIZE_MAX, At(0)));
}

TEST_F(HttpPatience, OneLineMayBeTooMuchByItself) {
    EXPECT_TRUE(mPatience.TakeLine(kHttp_MaxHeadBytes, At(0)));
    for (const std::size_t size : {kHttp_MaxHeadBytes + 1, SIZE_MAX}) {
        mPatience.Ask(At(0));
        EXPECT_FALSE(mPatience.TakeLine(size, At(0))) << size;
    }
}

TEST_F(HttpPatience, ABoundedNumberOfSmallPartsIsContinued) {
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(mPatience.MayContinue(kHttp_SmallPart)); // a larger one forgets those before it
        for (int i = 0; i < kHttp_MaxSmallParts; ++i) {
            mPatience.Ask(At(0)); // which a new request does not
            EXPECT_TRUE(mPatience.MayContinue(i % 2 == 0 ? 1 : kHttp_SmallPart - 1));
        }
    }
    EXPECT_EQ(mPatience.GetReason(), "");
    EXPECT_FALSE(mPatience.MayContinue(kHttp_SmallPart - 1));
    EXPECT_EQ(mPatience.GetReason(), "the server sends too little at a time");
}
#endif
