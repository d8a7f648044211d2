#include "ezLiveStreams/FeedBuffer.h"

#include "Media.h"

#include <atomic>
#include <gtest/gtest.h>
#include <optional>
#include <thread>

namespace {

using Push = ezFeedBuffer::Push;

/// A buffer with its notices counted.
class CountedBuffer {
public:
    explicit CountedBuffer(std::size_t aWindow, std::size_t aLargest)
        : mBuffer(
              {aWindow, aLargest}, [this] { ++mThresholds; }, [this] { ++mInterrupts; }) {}

    Push Append(const std::string& aBytes) { return mBuffer.Append(aBytes.data(), aBytes.size()); }
    ReadResult Read(std::size_t aSize, int aFlag = ezStreamReadFlag_Whole) {
        return ReadOnce(mBuffer, aSize, aFlag);
    }

    std::atomic<int> mThresholds{0};
    std::atomic<int> mInterrupts{0};
    ezFeedBuffer mBuffer;
};

constexpr std::size_t kWindow = 16;
constexpr std::size_t kLargest = 64;

class FeedBuffer : public testing::Test {
protected:
    CountedBuffer mFeed{kWindow, kLargest};
    ezFeedBuffer& mBuffer = mFeed.mBuffer;
};

} // namespace

TEST_F(FeedBuffer, ReadsAllOrNothingWhileTheEndIsNotThere) {
    EXPECT_EQ(mFeed.Read(4), Nothing());
    mFeed.Append("abc");
    EXPECT_EQ(mFeed.Read(4), Nothing());
    mFeed.Append("d");
    EXPECT_EQ(mFeed.Read(4), Got("abcd"));
    EXPECT_EQ(mFeed.Read(1), Nothing());
}

TEST_F(FeedBuffer, GivesWhatIsLeftAtTheEnd) {
    mFeed.Append("abcdef");
    mBuffer.End();
    EXPECT_EQ(mFeed.Read(4), Got("abcd"));
    EXPECT_EQ(mFeed.Read(4), AtEnd("ef"));
    EXPECT_EQ(mFeed.Read(4), AtEnd(""));
    EXPECT_EQ(mBuffer.Seek(0), ezStreamingStatus_NoError);
    EXPECT_EQ(mFeed.Read(6), Got("abcdef")); // just up to the end is all that was asked for
    EXPECT_EQ(mFeed.Read(0), Nothing());
}

TEST_F(FeedBuffer, AnEmptyMediaIsAtItsEndAndOpen) {
    mBuffer.End();
    EXPECT_EQ(mFeed.Read(4), AtEnd(""));
    EXPECT_TRUE(mBuffer.IsOpened());
    EXPECT_EQ(mBuffer.GetErrorText(), "");
}

TEST_F(FeedBuffer, WithoutTheFlagLessIsGivenButNotNothing) {
    EXPECT_EQ(mFeed.Read(4, 0), Nothing());
    mFeed.Append("abc");
    EXPECT_EQ(mFeed.Read(4, 0), Got("abc"));
    mFeed.Append("de");
    mBuffer.End();
    EXPECT_EQ(mFeed.Read(4, 0), AtEnd("de"));
}

TEST_F(FeedBuffer, AFailureIsTheStatusAfterTheLastByte) {
    mFeed.Append("abcd");
    mBuffer.Fail(ezStreamingStatus_ReadError, "broken");
    mBuffer.Fail(ezStreamingStatus_Interrupted, "later");
    EXPECT_TRUE(mBuffer.IsOpened());
    EXPECT_EQ(mFeed.Read(3), Got("abc"));
    EXPECT_FALSE(mBuffer.HasFailed());
    EXPECT_EQ(mFeed.Read(3), Failed(ezStreamingStatus_ReadError));
    EXPECT_TRUE(mBuffer.HasFailed());
    EXPECT_EQ(mFeed.Read(1), Got("d"));
    EXPECT_EQ(mBuffer.GetErrorText(), "broken");
}

TEST_F(FeedBuffer, AMediaThatFailsBeforeItsFirstByteIsNotOpened) {
    EXPECT_TRUE(mBuffer.IsOpened());
    mBuffer.Fail(ezStreamingStatus_ReadError, "broken");
    EXPECT_FALSE(mBuffer.IsOpened());
    EXPECT_EQ(mFeed.Read(1), Failed(ezStreamingStatus_ReadError));
}

TEST_F(FeedBuffer, EveryChangeIsTold) {
    mFeed.Append("abcd");
    EXPECT_EQ(mFeed.mThresholds, 1);
    mBuffer.SetSize(9);
    EXPECT_EQ(mFeed.mThresholds, 2);
    mFeed.Append("efghi");
    EXPECT_EQ(mFeed.mThresholds, 3);
    mBuffer.End();
    EXPECT_EQ(mFeed.mThresholds, 4);
    CountedBuffer other(kWindow, kLargest);
    other.mBuffer.Fail(ezStreamingStatus_ReadError, "broken");
    EXPECT_EQ(other.mThresholds, 1);
}

TEST_F(FeedBuffer, ASizeKnownBeforehandEndsTheMedia) {
    EXPECT_TRUE(mBuffer.SetSize(4));
    EXPECT_EQ(mBuffer.GetSize(true), 4U);
    EXPECT_EQ(mBuffer.Seek(5), ezStreamingStatus_OutOfRange);
    EXPECT_EQ(mFeed.Append("abcdef"), Push::Full);
    EXPECT_EQ(mFeed.Append("x"), Push::Full);
    EXPECT_EQ(mFeed.Read(9), AtEnd("abcd"));
    EXPECT_EQ(mBuffer.Seek(4), ezStreamingStatus_NoError);
    EXPECT_EQ(mFeed.Read(1), AtEnd(""));
}

TEST_F(FeedBuffer, AMediaThatEndsBeforeItsSizeHasFailed) {
    mBuffer.SetSize(9);
    mFeed.Append("abcd");
    mBuffer.End();
    EXPECT_EQ(mFeed.Read(4), Got("abcd"));
    EXPECT_EQ(mFeed.Read(1), Failed(ezStreamingStatus_ReadError));
    EXPECT_EQ(mBuffer.GetErrorText(), "the media ends after 4 of 9 bytes");
}

TEST_F(FeedBuffer, AnotherSizeThanBeforeIsAnotherMedia) {
    EXPECT_TRUE(mBuffer.SetSize(9));
    EXPECT_TRUE(mBuffer.SetSize(9));
    EXPECT_FALSE(mBuffer.SetSize(8));
    EXPECT_EQ(mFeed.Read(1), Failed(ezStreamingStatus_ReadError));
    EXPECT_EQ(mBuffer.GetErrorText(), "the media changed while it was read");
}

TEST_F(FeedBuffer, TheSizeIsKnownAtTheEnd) {
    mFeed.Append("abcd");
    EXPECT_EQ(mBuffer.GetSize(false), std::nullopt);
    EXPECT_EQ(mBuffer.Seek(9), ezStreamingStatus_NoError);
    EXPECT_EQ(mFeed.Read(1), Nothing());
    mBuffer.End();
    EXPECT_EQ(mBuffer.GetSize(false), 4U);
    EXPECT_EQ(mFeed.Read(1), AtEnd("")); // the place that was sought lies after the end
    EXPECT_EQ(mBuffer.Seek(9), ezStreamingStatus_OutOfRange);
    EXPECT_EQ(mBuffer.Seek(1), ezStreamingStatus_NoError);
    EXPECT_EQ(mFeed.Read(9), AtEnd("bcd"));
}

TEST_F(FeedBuffer, TheWindowMovesOnlyForWhatIsWaitedFor) {
    const std::string media = MediaBytes(40);
    mFeed.Append(media.substr(0, kWindow));
    EXPECT_EQ(mBuffer.Seek(kWindow), ezStreamingStatus_NoError);
    EXPECT_EQ(mFeed.Read(1), Nothing());
    mFeed.Append(media.substr(kWindow, 1));
    EXPECT_EQ(mFeed.Read(1), Got(media.substr(kWindow, 1)));
    // A quarter of the window came free at once.
    EXPECT_EQ(mBuffer.Seek(3), ezStreamingStatus_OutOfRange);
    EXPECT_EQ(mBuffer.Seek(4), ezStreamingStatus_NoError);
    EXPECT_EQ(mFeed.Read(13), Got(media.substr(4, 13)));
}

TEST_F(FeedBuffer, ASeekThatIsRefusedLeavesTheReaderWhereItWas) {
    const std::string media = MediaBytes(40);
    mFeed.Append(media.substr(0, kWindow));
    mBuffer.Seek(kWindow);
    EXPECT_EQ(mFeed.Read(8), Nothing());
    mFeed.Append(media.substr(kWindow, 8));
    EXPECT_EQ(mBuffer.Seek(0), ezStreamingStatus_OutOfRange);
    EXPECT_EQ(mFeed.Read(8), Got(media.substr(kWindow, 8)));
}

TEST_F(FeedBuffer, ARequestLargerThanTheWindowMakesItGrow) {
    const std::string media = MediaBytes(kLargest);
    EXPECT_EQ(mFeed.Read(kLargest), Nothing());
    EXPECT_EQ(mFeed.Append(media), Push::Taken); // else it would wait here for ever
    EXPECT_EQ(mFeed.Read(kLargest), Got(media));
}

TEST_F(FeedBuffer, ARequestAboveTheLimitIsRefusedWhereTheSizeIsKnown) {
    mBuffer.SetSize(kLargest + 2);
    EXPECT_EQ(mFeed.Read(kLargest + 1), Failed(ezStreamingStatus_OutOfInternalBuffer));
    std::size_t huge = SIZE_MAX;
    EXPECT_EQ(mBuffer.Read(nullptr, &huge, ezStreamReadFlag_Whole), ezStreamingStatus_OutOfInternalBuffer);
    EXPECT_EQ(huge, 0U);
    mBuffer.Seek(3);
    EXPECT_EQ(mFeed.Read(kLargest), Nothing()); // what is left fits
}

TEST_F(FeedBuffer, ARefusedRequestIsAFailureThatWasMetAndNotTheEndOfTheMedia) {
    mBuffer.SetSize(kLargest + 2);
    EXPECT_FALSE(mBuffer.HasFailed());
    EXPECT_EQ(mFeed.Read(kLargest + 1), Failed(ezStreamingStatus_OutOfInternalBuffer));
    EXPECT_TRUE(mBuffer.HasFailed());
    EXPECT_EQ(mBuffer.GetErrorText(), "a read of 65 bytes is larger than what is held");
    EXPECT_TRUE(mBuffer.IsOpened());
    mFeed.Append("abcd");
    EXPECT_EQ(mFeed.Read(4), Got("abcd"));
}

TEST_F(FeedBuffer, ASizeThatIsToldWhileAMoveIsAskedForDoesNotCount) {
    mBuffer.SetMovable(true, true);
    EXPECT_EQ(mBuffer.Seek(2 * ezFeedBuffer::kWorthMoving), ezStreamingStatus_NoError);
    EXPECT_TRUE(mBuffer.IsInterrupted());
    EXPECT_TRUE(mBuffer.SetSize(100)); // the place that was sought lies after it
    EXPECT_EQ(mBuffer.GetErrorText(), "");
    EXPECT_EQ(mBuffer.GetSize(false), std::nullopt);
    std::uint64_t position = 0;
    EXPECT_TRUE(mBuffer.WaitForMove(&position));
    mBuffer.StartAt(100);
    EXPECT_TRUE(mBuffer.SetSize(100));
    mBuffer.End();
    EXPECT_EQ(mFeed.Read(1), AtEnd(""));
}

TEST_F(FeedBuffer, AFailedSourceThatCanBeMovedIsTriedAgainAFewTimes) {
    mBuffer.SetMovable(true, true);
    std::uint64_t place = ezFeedBuffer::kWorthMoving;
    for (int i = 0; i < ezFeedBuffer::kRetries; ++i) {
        mBuffer.Fail(ezStreamingStatus_ReadError, "broken");
        EXPECT_EQ(mFeed.Read(1), Failed(ezStreamingStatus_ReadError));
        EXPECT_EQ(mBuffer.Seek(++place), ezStreamingStatus_NoError); // however near it lies
        ASSERT_TRUE(mBuffer.IsInterrupted());
        EXPECT_EQ(mFeed.Read(1), Nothing());
        std::uint64_t position = 0;
        EXPECT_TRUE(mBuffer.WaitForMove(&position));
        EXPECT_EQ(position, place);
        mBuffer.StartAt(position);
    }
    EXPECT_TRUE(mBuffer.HasFailed());
    mBuffer.Fail(ezStreamingStatus_ReadError, "for good");
    EXPECT_EQ(mBuffer.Seek(0), ezStreamingStatus_OutOfRange);
    EXPECT_EQ(mFeed.Read(1), Failed(ezStreamingStatus_ReadError));
    EXPECT_FALSE(mBuffer.IsInterrupted());
}

TEST_F(FeedBuffer, ASeekFarAheadPassesOverWhatComesBefore) {
    const std::string media = MediaBytes(200);
    mBuffer.Seek(190);
    EXPECT_EQ(mFeed.Read(5), Nothing());
    EXPECT_EQ(mFeed.Append(media.substr(0, 195)), Push::Taken);
    EXPECT_EQ(mFeed.Read(5), Got(media.substr(190, 5)));
}

TEST_F(FeedBuffer, APositionNearTheEndOfNumbersIsNoTrouble) {
    EXPECT_EQ(mBuffer.Seek(UINT64_MAX), ezStreamingStatus_NoError);
    EXPECT_EQ(mFeed.Read(8), Nothing());
    mFeed.Append(MediaBytes(100));
    EXPECT_EQ(mFeed.Read(8), Nothing());
    mBuffer.End();
    EXPECT_EQ(mFeed.Read(8), AtEnd(""));
    EXPECT_EQ(mBuffer.GetSize(false), 100U);
}

TEST_F(FeedBuffer, ASeekBeforeTheWindowMovesASourceThatCanBeMoved) {
    const std::string media = MediaBytes(100);
    mBuffer.SetMovable(true, false);
    mBuffer.SetSize(100);
    mBuffer.Seek(50);
    mFeed.Read(10);
    mFeed.Append(media.substr(0, 60));
    EXPECT_EQ(mBuffer.Seek(0), ezStreamingStatus_NoError);
    EXPECT_EQ(mFeed.mInterrupts, 1);
    EXPECT_TRUE(mBuffer.IsInterrupted());
    EXPECT_EQ(mFeed.Append("stale"), Push::Moved);
    mBuffer.End(); // of the transfer that was given up: not of the media
    mBuffer.Fail(ezStreamingStatus_ReadError, "given up");
    std::uint64_t position = 9;
    EXPECT_TRUE(mBuffer.WaitForMove(&position));
    EXPECT_EQ(position, 0U);
    mBuffer.StartAt(position);
    mFeed.Append(media.substr(0, 8));
    EXPECT_EQ(mFeed.Read(8), Got(media.substr(0, 8)));
}

TEST_F(FeedBuffer, ASourceThatStartsBeforeThePlaceAskedForIsReadUpToIt) {
    const std::string media = MediaBytes(100);
    mBuffer.SetMovable(true, false);
    mBuffer.Seek(80);
    mFeed.Read(8);
    mFeed.Append(media.substr(0, 88));
    mBuffer.Seek(20);
    std::uint64_t position = 0;
    EXPECT_TRUE(mBuffer.WaitForMove(&position));
    EXPECT_EQ(position, 20U);
    mBuffer.StartAt(0);
    EXPECT_EQ(mFeed.Read(4), Nothing());
    mFeed.Append(media.substr(0, 24));
    EXPECT_EQ(mFeed.Read(4), Got(media.substr(20, 4)));
}

TEST_F(FeedBuffer, AStartThatALaterSeekOvertookDoesNotCount) {
    const std::string media = MediaBytes(100);
    mBuffer.SetMovable(true, false);
    mBuffer.Seek(80);
    mFeed.Read(8);
    mFeed.Append(media.substr(0, 88));
    mBuffer.Seek(20);
    std::uint64_t position = 0;
    mBuffer.WaitForMove(&position);
    mBuffer.Seek(10);
    mBuffer.StartAt(20);
    EXPECT_EQ(mFeed.Append(media.substr(20)), Push::Moved);
    mBuffer.WaitForMove(&position);
    EXPECT_EQ(position, 10U);
    mBuffer.StartAt(10);
    mFeed.Append(media.substr(10, 5));
    EXPECT_EQ(mFeed.Read(5), Got(media.substr(10, 5)));
}

TEST_F(FeedBuffer, OnlyAFarSeekAheadMovesASource) {
    mBuffer.SetMovable(true, true);
    mBuffer.SetSize(10 * ezFeedBuffer::kWorthMoving);
    EXPECT_EQ(mBuffer.Seek(ezFeedBuffer::kWorthMoving), ezStreamingStatus_NoError);
    EXPECT_FALSE(mBuffer.IsInterrupted());
    EXPECT_EQ(mBuffer.Seek(ezFeedBuffer::kWorthMoving + 1), ezStreamingStatus_NoError);
    EXPECT_TRUE(mBuffer.IsInterrupted());
}

TEST_F(FeedBuffer, TheEndIsReachedWithoutAskingTheSource) {
    mBuffer.SetMovable(true, true);
    mBuffer.SetSize(10 * ezFeedBuffer::kWorthMoving);
    EXPECT_EQ(mBuffer.Seek(10 * ezFeedBuffer::kWorthMoving), ezStreamingStatus_NoError);
    EXPECT_FALSE(mBuffer.IsInterrupted());
    EXPECT_EQ(mFeed.Read(1), AtEnd(""));
    EXPECT_EQ(mBuffer.Seek(0), ezStreamingStatus_NoError);
    EXPECT_FALSE(mBuffer.IsInterrupted());
}

TEST_F(FeedBuffer, AfterCloseNothingGoesOn) {
    mFeed.Append("abcd");
    mBuffer.Close();
    EXPECT_EQ(mFeed.mInterrupts, 1);
    EXPECT_EQ(mFeed.Read(1), Failed(ezStreamingStatus_InvalidState));
    EXPECT_EQ(mBuffer.Seek(0), ezStreamingStatus_InvalidState);
    EXPECT_EQ(mFeed.Append("e"), Push::Closed);
    EXPECT_FALSE(mBuffer.IsOpened());
    std::uint64_t position = 0;
    EXPECT_FALSE(mBuffer.WaitForMove(&position));
    EXPECT_EQ(mBuffer.GetSize(true), std::nullopt);
}

TEST_F(FeedBuffer, AFullWindowHoldsTheWriterBackUntilTheReaderNeedsRoom) {
    const std::string media = MediaBytes(3 * kWindow);
    std::atomic<std::size_t> appended{0};
    std::thread writer([&] {
        for (const char& byte : media) {
            if (mBuffer.Append(&byte, 1) == Push::Taken) {
                ++appended;
            }
        }
        mBuffer.End();
    });
    EXPECT_EQ(mBuffer.GetSize(true), std::nullopt); // returns when the window is full
    EXPECT_EQ(appended, kWindow);
    EXPECT_EQ(mFeed.Read(kWindow), Got(media.substr(0, kWindow))); // held already: nothing is dropped for it
    EXPECT_EQ(mBuffer.GetSize(true), std::nullopt);
    EXPECT_EQ(appended, kWindow);
    ReadResult result;
    while ((result = mFeed.Read(2 * kWindow)) == Nothing()) {
        std::this_thread::yield();
    }
    EXPECT_EQ(result, Got(media.substr(kWindow)));
    writer.join();
    EXPECT_EQ(mBuffer.GetSize(false), 3 * kWindow);
}

TEST_F(FeedBuffer, ARequestAboveTheLimitIsRefusedWhenTheMediaProvesLonger) {
    const std::string media = MediaBytes(3 * kLargest);
    std::thread writer([&] { mFeed.Append(media); });
    ReadResult result;
    while ((result = mFeed.Read(kLargest + 1)) == Nothing()) {
        std::this_thread::yield();
    }
    EXPECT_EQ(result, Failed(ezStreamingStatus_OutOfInternalBuffer));
    EXPECT_EQ(mFeed.Read(kLargest), Got(media.substr(0, kLargest)));
    mBuffer.Close();
    writer.join();
}

TEST_F(FeedBuffer, ARequestAboveTheLimitIsServedWhenTheMediaEndsWithinIt) {
    const std::string media = MediaBytes(kLargest);
    std::thread writer([&] {
        mFeed.Append(media);
        mBuffer.End();
    });
    ReadResult result;
    while ((result = mFeed.Read(10 * kLargest)) == Nothing()) {
        std::this_thread::yield();
    }
    EXPECT_EQ(result, AtEnd(media));
    writer.join();
}

TEST_F(FeedBuffer, WaitingForTheSizeComesUponAFailure) {
    std::thread writer([&] {
        mFeed.Append("abcd");
        mBuffer.Fail(ezStreamingStatus_ReadError, "broken");
    });
    EXPECT_EQ(mBuffer.GetSize(true), std::nullopt);
    EXPECT_TRUE(mBuffer.HasFailed());
    writer.join();
}
