#include "ez/MediaParserStream.h"

#include "support/AwkwardStream.h"
#include "support/Catchers.h"
#include "support/Record.h"
#include "support/StreamReads.h"

#include "ezPlatform/media/MediaInfo.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <deque>
#include <functional>
#include <iterator>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using Calls = std::vector<std::string>;

/// A file in memory that notes every call of the two primitives.
class RecordingStream : public ezMediaParserStream {
public:
    explicit RecordingStream(std::string aContent) : mContent(std::move(aContent)) {
        mMediaSize = mContent.size();
    }

    /// "seek OFFSET lazy", "seek OFFSET now" and "read SIZE" since the last time.
    Calls TakeCalls() { return std::exchange(mCalls, Calls()); }
    void SetMediaSize(const ezuint64& aSize) { mMediaSize = aSize; }
    void SetLastModificationTime(const ezDateTime& aTime) { mLastModificationTime = aTime; }
    void SetExtensionAsItIs(const char* anExtension) { mMediaExtension = anExtension; }

    bool FieldsAreInOrder() const {
        const void* const fields[] = {&mMediaFullPath, &mMediaSize, &mMediaPos, &mMediaExtension,
                                      &mLastModificationTime};
        return std::is_sorted(std::begin(fields), std::end(fields), std::less<const void*>());
    }

    /// The slots of the virtual operations in the table, by the common C++ ABI of the targets: the first word
    /// of a pointer to a virtual member tells its place in the table.
    static std::vector<std::size_t> Slots() {
        return {SlotOf(&RecordingStream::Open),      SlotOf(&RecordingStream::Close),
                SlotOf(&RecordingStream::CopyInfo),  SlotOf(&RecordingStream::MediaSeek),
                SlotOf(&RecordingStream::MediaRead), SlotOf(&RecordingStream::OpenBeside)};
    }

    std::string mContent;
    std::uint64_t mSource = 0;        ///< where the source stands
    bool mfRefuseSeeks = false;       ///< MediaSeek fails and moves nothing
    bool mfSourceStays = false;       ///< MediaSeek succeeds and moves nothing
    std::deque<ezFileOffset> mClaims; ///< what the reads to come return, whatever they deliver

protected:
    bool MediaSeek(const ezuint64& anOffset, bool afSeekImmediate) override {
        mCalls.push_back("seek " + std::to_string(anOffset.ToUInt64()) +
                         (afSeekImmediate ? " now" : " lazy"));
        if (mfRefuseSeeks) {
            return false;
        }
        if (!mfSourceStays) {
            mSource = anOffset.ToUInt64();
        }
        return true;
    }

    ezFileOffset MediaRead(void* aBuffer, std::size_t aSize) override {
        mCalls.push_back("read " + std::to_string(aSize));
        ezFileOffset claim = 0;
        const bool claims = !mClaims.empty();
        if (claims) {
            claim = mClaims.front();
            mClaims.pop_front();
            if (claim < 0) {
                return claim;
            }
        }
        const std::uint64_t left = mContent.size() - std::min<std::uint64_t>(mSource, mContent.size());
        const std::size_t count = static_cast<std::size_t>(std::min<std::uint64_t>(aSize, left));
        if (count != 0) {
            std::memcpy(aBuffer, mContent.data() + mSource, count);
        }
        mSource += count;
        return claims ? claim : static_cast<ezFileOffset>(count);
    }

private:
    template <typename Operation>
    static std::size_t SlotOf(Operation anOperation) {
        std::uintptr_t word = 0;
        std::memcpy(&word, &anOperation, sizeof(word));
        return word /
               sizeof(void*); // the mark of a virtual member, where it is in this word, is its last bit
    }

    Calls mCalls;
};

ReadOutcome ExactFrom(ezMediaParserStream& aStream, const ezuint64& aPosition, std::size_t aSize) {
    ReadOutcome outcome{false, aSize, std::string(aSize, kUntouched)};
    outcome.mfResult = aStream.ReadFrom(aPosition, aSize, &outcome.mBuffer[0]);
    return outcome;
}

ReadOutcome UpToFrom(ezMediaParserStream& aStream, const ezuint64& aPosition, std::size_t aSize) {
    ReadOutcome outcome{false, aSize, std::string(aSize, kUntouched)};
    outcome.mfResult = aStream.ReadFrom(aPosition, &outcome.mCount, &outcome.mBuffer[0]);
    return outcome;
}

ReadOutcome ExactFromEnd(ezMediaParserStream& aStream, std::size_t aSize) {
    ReadOutcome outcome{false, aSize, std::string(aSize, kUntouched)};
    outcome.mfResult = aStream.ReadFromEnd(aSize, &outcome.mBuffer[0]);
    return outcome;
}

ReadOutcome UpToFromEnd(ezMediaParserStream& aStream, std::size_t aSize) {
    ReadOutcome outcome{false, aSize, std::string(aSize, kUntouched)};
    outcome.mfResult = aStream.ReadFromEnd(&outcome.mCount, &outcome.mBuffer[0]);
    return outcome;
}

bool SeekTo(ezMediaParserStream& aStream, const ezuint64& aPosition) {
    return aStream.Seek(aPosition, ezMediaParserStream::SeekFromStart, false);
}

/// Fills the buffer of a fresh stream by a read at 0, and goes back to position 0.
void Fill(RecordingStream& aStream) {
    ASSERT_TRUE(UpTo(aStream, 1).mfResult);
    ASSERT_TRUE(SeekTo(aStream, 0));
    aStream.TakeCalls();
}

} // namespace

// ---- shape ----

TEST(MediaParserStream, SeekModesAndBufferSizeAreFixed) {
    static_assert(std::is_same<decltype(ezMediaParserStream::SeekFromStart), const int>::value, "");
    static_assert(std::is_same<decltype(ezMediaParserStream::SeekFromCurrent), const int>::value, "");
    EXPECT_EQ(int{ezMediaParserStream::SeekFromStart}, 0);
    EXPECT_EQ(int{ezMediaParserStream::SeekFromCurrent}, 1);
    EXPECT_EQ(std::size_t{kezMediaParserStreamBufferSize}, 8192U);
}

TEST(MediaParserStream, VirtualOperationsStandInTheirOrderAfterTheDestructor) {
    static_assert(std::has_virtual_destructor<ezMediaParserStream>::value, "");
    EXPECT_EQ(RecordingStream::Slots(), (std::vector<std::size_t>{2, 3, 4, 5, 6, 7}));
}

TEST(MediaParserStream, FieldsStandInTheirOrder) {
    EXPECT_TRUE(RecordingStream("").FieldsAreInOrder());
}

TEST(MediaParserStream, StartsWithNothingKnownAtPositionZero) {
    ezMediaParserStream stream;
    EXPECT_TRUE(stream.GetFullPath() == "");
    EXPECT_TRUE(stream.GetExtension() == "");
    EXPECT_EQ(stream.GetMediaSize().ToUInt64(), 0U);
    EXPECT_EQ(At(stream), 0U);
    ezMediaInfo info;
    stream.CopyInfo(&info);
    EXPECT_EQ(DumpRecord(&info), "");
}

TEST(MediaParserStream, BaseOpensAndClosesWithoutEffect) {
    ezMediaParserStream stream;
    EXPECT_TRUE(stream.Open());
    stream.Close();
    EXPECT_TRUE(stream.Open());
    EXPECT_EQ(At(stream), 0U);
    EXPECT_EQ(stream.GetMediaSize().ToUInt64(), 0U);
}

TEST(MediaParserStream, BaseRefusesSeeksAndFailsReads) {
    ezMediaParserStream stream;
    EXPECT_FALSE(SeekTo(stream, 0));
    EXPECT_FALSE(stream.Seek(0, ezMediaParserStream::SeekFromCurrent, true));
    const ReadOutcome filling = UpTo(stream, 10);
    EXPECT_FALSE(filling.mfResult); // -1, not the end: at the end this would be true with count 0
    EXPECT_EQ(filling.mCount, 10U);
    const ReadOutcome direct = UpTo(stream, 10000);
    EXPECT_FALSE(direct.mfResult);
    EXPECT_EQ(direct.mCount, 10000U);
    EXPECT_FALSE(Exact(stream, 10).mfResult);
    EXPECT_EQ(At(stream), 0U);
}

TEST(MediaParserStream, GettersReturnCopies) {
    static_assert(std::is_same<decltype(std::declval<ezMediaParserStream>().GetFullPath()), ezCString>::value,
                  "");
    static_assert(
        std::is_same<decltype(std::declval<ezMediaParserStream>().GetExtension()), ezCString>::value, "");
    static_assert(std::is_same<decltype(std::declval<ezMediaParserStream>().Tell()), ezuint64>::value, "");
    static_assert(std::is_same<decltype(std::declval<ezMediaParserStream>().GetMediaSize()), ezuint64>::value,
                  "");
    ezMediaParserStream stream;
    stream.SetFullPath("/media/One.MP3");
    EXPECT_TRUE(stream.GetFullPath() == "/media/One.MP3");
    EXPECT_TRUE(stream.GetExtension() == ""); // a path alone sets no extension
}

TEST(MediaParserStream, ExtensionIsStoredInLowerCase) {
    ezMediaParserStream stream;
    stream.SetExtension("Mp3");
    EXPECT_TRUE(stream.GetExtension() == "mp3");
    stream.SetExtension("\xC3\x84VI"); // A to Z only, whatever the locale
    EXPECT_TRUE(stream.GetExtension() == "\xC3\x84vi");
    stream.SetExtension("");
    EXPECT_TRUE(stream.GetExtension() == "");
}

TEST(MediaParserStream, FailuresAreNotLogged) {
    LogCatcher log;
    RecordingStream stream(RandomMedia(100));
    stream.mClaims = {-1, -1};
    EXPECT_FALSE(Exact(stream, 10).mfResult);
    EXPECT_FALSE(UpTo(stream, 10000).mfResult);
    EXPECT_FALSE(Exact(stream, 10000).mfResult);
    stream.mfRefuseSeeks = true;
    EXPECT_FALSE(SeekTo(stream, 10));
    EXPECT_FALSE(ExactFrom(stream, 10, 10).mfResult);
    EXPECT_FALSE(ExactFromEnd(stream, 101).mfResult);
    EXPECT_EQ(log.Texts(), Calls());
}

// ---- seek ----

TEST(MediaParserStream, SeekFromStartPassesTargetAndUrgencyOn) {
    RecordingStream stream(RandomMedia(20000));
    EXPECT_TRUE(stream.Seek(300, ezMediaParserStream::SeekFromStart, true));
    EXPECT_EQ(At(stream), 300U);
    EXPECT_TRUE(stream.Seek(20, ezMediaParserStream::SeekFromStart, false));
    EXPECT_EQ(At(stream), 20U);
    EXPECT_EQ(stream.TakeCalls(), (Calls{"seek 300 now", "seek 20 lazy"}));
}

TEST(MediaParserStream, SeekFromCurrentAddsToThePosition) {
    RecordingStream stream(RandomMedia(20000));
    EXPECT_TRUE(stream.Seek(300, ezMediaParserStream::SeekFromCurrent, false));
    EXPECT_TRUE(stream.Seek(40, ezMediaParserStream::SeekFromCurrent, true));
    EXPECT_EQ(At(stream), 340U);
    EXPECT_TRUE(stream.Seek(0, ezMediaParserStream::SeekFromCurrent, false));
    EXPECT_EQ(At(stream), 340U);
    EXPECT_EQ(stream.TakeCalls(), (Calls{"seek 300 lazy", "seek 340 now", "seek 340 lazy"}));
}

TEST(MediaParserStream, RefusedSeekLeavesThePosition) {
    RecordingStream stream(RandomMedia(20000));
    ASSERT_TRUE(SeekTo(stream, 50));
    stream.mfRefuseSeeks = true;
    EXPECT_FALSE(SeekTo(stream, 60));
    EXPECT_FALSE(stream.Seek(60, ezMediaParserStream::SeekFromCurrent, true));
    EXPECT_EQ(At(stream), 50U);
    EXPECT_EQ(stream.TakeCalls(), (Calls{"seek 50 lazy", "seek 60 lazy", "seek 110 now"}));
}

TEST(MediaParserStream, AnyOtherSeekModeIsAnAssertionAndMovesNothing) {
    RecordingStream stream(RandomMedia(20000));
    ASSERT_TRUE(SeekTo(stream, 50));
    stream.TakeCalls();
    for (const int mode : {2, -1, 3, 256}) {
        AssertCatcher assertions;
        EXPECT_FALSE(stream.Seek(60, mode, false));
        EXPECT_EQ(
            assertions.Failures(),
            AssertCatcher::Noted(
                {"(aSeekMode == SeekFromCurrent) || (aSeekMode == SeekFromStart) @ MediaParserStream"}));
    }
    EXPECT_EQ(At(stream), 50U);
    EXPECT_EQ(stream.TakeCalls(), Calls());
}

TEST(MediaParserStream, SeekDoesNotTouchTheBuffer) {
    RecordingStream stream(RandomMedia(20000));
    Fill(stream);
    EXPECT_TRUE(SeekTo(stream, 15000));
    EXPECT_TRUE(stream.Seek(8000, ezMediaParserStream::SeekFromStart, true));
    const ReadOutcome read = Exact(stream, 100);
    EXPECT_TRUE(read.mfResult);
    EXPECT_EQ(read.mBuffer, RandomMedia(20000).substr(8000, 100));
    EXPECT_EQ(stream.TakeCalls(), (Calls{"seek 15000 lazy", "seek 8000 now", "seek 8100 lazy"}));
}

// ---- reads of nothing ----

TEST(MediaParserStream, ExactReadOfNothingSucceedsEvenWhereNothingCanBeRead) {
    ezMediaParserStream base;
    const std::size_t nothing = 0;
    EXPECT_TRUE(base.Read(nothing, nullptr));
    EXPECT_EQ(At(base), 0U);

    RecordingStream stream(RandomMedia(100));
    ASSERT_TRUE(SeekTo(stream, 500));
    stream.TakeCalls();
    EXPECT_TRUE(stream.Read(nothing, nullptr));
    EXPECT_EQ(At(stream), 500U);
    EXPECT_EQ(stream.TakeCalls(), Calls());
}

TEST(MediaParserStream, UpToReadOfNothingSucceedsAndReadsNothing) {
    ezMediaParserStream base;
    std::size_t size = 0;
    EXPECT_TRUE(base.Read(&size, nullptr));
    EXPECT_EQ(size, 0U);

    RecordingStream stream(RandomMedia(100));
    EXPECT_TRUE(stream.Read(&size, nullptr));
    EXPECT_EQ(size, 0U);
    EXPECT_EQ(stream.TakeCalls(), Calls()); // the buffer is not filled either
}

TEST(MediaParserStream, NullCountIsAnAssertionAndReadsNothing) {
    RecordingStream stream(RandomMedia(100));
    std::size_t* const none = nullptr;
    char byte = kUntouched;
    {
        AssertCatcher assertions;
        EXPECT_FALSE(stream.Read(none, &byte));
        EXPECT_EQ(assertions.Failures(), AssertCatcher::Noted({"aSize != NULL @ MediaParserStream"}));
    }
    {
        AssertCatcher assertions;
        EXPECT_FALSE(stream.ReadFromEnd(none, &byte));
        EXPECT_EQ(assertions.Failures(), AssertCatcher::Noted({"aSize != NULL @ MediaParserStream"}));
    }
    EXPECT_EQ(stream.TakeCalls(), Calls());
    {
        AssertCatcher assertions;
        EXPECT_FALSE(stream.ReadFrom(5, none, &byte));
        EXPECT_EQ(assertions.Failures(), AssertCatcher::Noted({"aSize != NULL @ MediaParserStream"}));
    }
    EXPECT_EQ(stream.TakeCalls(), (Calls{"seek 5 lazy"}));
    EXPECT_EQ(byte, kUntouched);
}

TEST(MediaParserStream, NullCountIsAnAssertionBeforeTheSizeIsLookedAt) {
    RecordingStream stream(RandomMedia(100));
    stream.SetMediaSize(0);
    std::size_t* const none = nullptr;
    AssertCatcher assertions;
    EXPECT_FALSE(stream.ReadFromEnd(none, nullptr));
    EXPECT_EQ(assertions.Failures(), AssertCatcher::Noted({"aSize != NULL @ MediaParserStream"}));
}

// ---- filling the buffer ----

TEST(MediaParserStream, FirstSmallReadFillsTheBufferByOneReadOfEightKiB) {
    for (const auto read : {Exact, UpTo}) {
        RecordingStream stream(RandomMedia(20000));
        const ReadOutcome outcome = read(stream, 10);
        EXPECT_TRUE(outcome.mfResult);
        EXPECT_EQ(outcome.mCount, 10U);
        EXPECT_EQ(outcome.mBuffer, RandomMedia(20000).substr(0, 10));
        EXPECT_EQ(At(stream), 10U);
        EXPECT_EQ(stream.TakeCalls(), (Calls{"read 8192", "seek 10 lazy"})); // no seek to 0 before the fill
    }
}

TEST(MediaParserStream, ReadEndingAtEightKiBFills) {
    for (const auto read : {Exact, UpTo}) {
        RecordingStream whole(RandomMedia(20000));
        EXPECT_EQ(read(whole, 8192).mBuffer, RandomMedia(20000).substr(0, 8192));
        EXPECT_EQ(whole.TakeCalls(), (Calls{"read 8192", "seek 8192 lazy"}));

        RecordingStream behind(RandomMedia(20000));
        behind.mfSourceStays = true; // so that the buffer mirrors the start although the position is ahead
        ASSERT_TRUE(SeekTo(behind, 8000));
        EXPECT_EQ(read(behind, 192).mBuffer, RandomMedia(20000).substr(8000, 192));
        EXPECT_EQ(behind.TakeCalls(), (Calls{"seek 8000 lazy", "read 8192", "seek 8192 lazy"}));
    }
}

TEST(MediaParserStream, ReadEndingAfterEightKiBLeavesTheBufferUnfilled) {
    for (const auto read : {Exact, UpTo}) {
        RecordingStream stream(RandomMedia(20000));
        const ReadOutcome large = read(stream, 8193);
        EXPECT_TRUE(large.mfResult);
        EXPECT_EQ(large.mBuffer, RandomMedia(20000).substr(0, 8193));
        EXPECT_EQ(At(stream), 8193U);
        ASSERT_TRUE(SeekTo(stream, 8100));
        EXPECT_EQ(read(stream, 93).mBuffer, RandomMedia(20000).substr(8100, 93));
        EXPECT_EQ(stream.TakeCalls(), (Calls{"read 8193", "seek 8100 lazy", "read 93"}));

        ASSERT_TRUE(SeekTo(stream, 0));
        EXPECT_EQ(read(stream, 20).mBuffer, RandomMedia(20000).substr(0, 20));
        EXPECT_EQ(stream.TakeCalls(), (Calls{"seek 0 lazy", "read 8192", "seek 20 lazy"}));
    }
}

TEST(MediaParserStream, BufferIsFilledFromWhereverTheSourceStandsAndTakenAsTheStart) {
    for (const auto read : {Exact, UpTo}) {
        RecordingStream stream(RandomMedia(20000));
        ASSERT_TRUE(SeekTo(stream, 50));
        const ReadOutcome first = read(stream, 10);
        EXPECT_TRUE(first.mfResult);
        EXPECT_EQ(first.mBuffer,
                  RandomMedia(20000).substr(100, 10)); // byte 50 of the media is filed as offset 0
        EXPECT_EQ(At(stream), 60U);
        EXPECT_EQ(stream.TakeCalls(), (Calls{"seek 50 lazy", "read 8192", "seek 60 lazy"}));
        ASSERT_TRUE(SeekTo(stream, 0));
        EXPECT_EQ(read(stream, 10).mBuffer, RandomMedia(20000).substr(50, 10));
    }
}

TEST(MediaParserStream, ShortFillOfAnExactReadMovesToTheEndOfTheData) {
    RecordingStream stream(RandomMedia(100));
    const ReadOutcome read = Exact(stream, 200);
    EXPECT_FALSE(read.mfResult);
    EXPECT_TRUE(read.IsUntouched());
    EXPECT_EQ(At(stream), 100U);
    EXPECT_EQ(stream.TakeCalls(), (Calls{"read 8192", "seek 100 lazy"}));
}

TEST(MediaParserStream, ShortFillOfAnExactReadMayMoveBackwards) {
    RecordingStream stream(RandomMedia(100));
    ASSERT_TRUE(SeekTo(stream, 80)); // 20 bytes are left, filed as 0 to 19
    EXPECT_FALSE(Exact(stream, 1).mfResult);
    EXPECT_EQ(At(stream), 20U);
    EXPECT_EQ(stream.TakeCalls(), (Calls{"seek 80 lazy", "read 8192", "seek 20 lazy"}));
}

TEST(MediaParserStream, ExactReadOfAllThatTheFillGaveSucceeds) {
    RecordingStream stream(RandomMedia(100));
    const ReadOutcome read = Exact(stream, 100);
    EXPECT_TRUE(read.mfResult);
    EXPECT_EQ(read.mBuffer, RandomMedia(100));
    EXPECT_EQ(At(stream), 100U);
    EXPECT_EQ(stream.TakeCalls(), (Calls{"read 8192", "seek 100 lazy"}));
}

TEST(MediaParserStream, ShortFillOfAnUpToReadGivesWhatThereIs) {
    RecordingStream stream(RandomMedia(100));
    const ReadOutcome read = UpTo(stream, 200);
    EXPECT_TRUE(read.mfResult);
    EXPECT_EQ(read.mCount, 100U);
    EXPECT_EQ(read.mBuffer, RandomMedia(100) + std::string(100, kUntouched));
    EXPECT_EQ(At(stream), 100U);
    EXPECT_EQ(stream.TakeCalls(), (Calls{"read 8192", "seek 100 lazy"}));
}

TEST(MediaParserStream, ShortFillOfAnUpToReadCountsFromThePosition) {
    RecordingStream stream(RandomMedia(100));
    stream.mfSourceStays = true;
    ASSERT_TRUE(SeekTo(stream, 30));
    const ReadOutcome read = UpTo(stream, 200);
    EXPECT_TRUE(read.mfResult);
    EXPECT_EQ(read.mCount, 70U);
    EXPECT_EQ(read.Bytes(), RandomMedia(100).substr(30));
    EXPECT_EQ(At(stream), 100U);
}

TEST(MediaParserStream, UpToReadThatFillsAfterTheDataCopiesNothing) {
    for (const std::uint64_t position : {100U, 101U, 8000U}) {
        RecordingStream behind(RandomMedia(100));
        behind.mfSourceStays = true;
        ASSERT_TRUE(SeekTo(behind, position));
        const ReadOutcome read = UpTo(behind, 50);
        EXPECT_TRUE(read.mfResult);
        EXPECT_EQ(read.mCount, 0U);
        EXPECT_TRUE(read.IsUntouched());
        EXPECT_EQ(At(behind), position);
        const std::string seek = "seek " + std::to_string(position) + " lazy";
        EXPECT_EQ(behind.TakeCalls(), (Calls{seek, "read 8192", seek}));
    }
}

TEST(MediaParserStream, FillOfAnEmptyMediaIsTheEnd) {
    RecordingStream exact("");
    EXPECT_FALSE(Exact(exact, 10).mfResult);
    EXPECT_EQ(At(exact), 0U);
    EXPECT_EQ(exact.TakeCalls(), (Calls{"read 8192", "seek 0 lazy"}));

    RecordingStream upTo("");
    const ReadOutcome read = UpTo(upTo, 10);
    EXPECT_TRUE(read.mfResult);
    EXPECT_EQ(read.mCount, 0U);
    EXPECT_EQ(upTo.TakeCalls(), (Calls{"read 8192", "seek 0 lazy"}));
}

TEST(MediaParserStream, FailedFillOfAnExactReadGoesToZeroAndLeavesTheBufferEmptyForGood) {
    RecordingStream stream(RandomMedia(20000));
    stream.mfSourceStays = true;
    ASSERT_TRUE(SeekTo(stream, 40));
    stream.mClaims = {-1};
    const ReadOutcome read = Exact(stream, 10);
    EXPECT_FALSE(read.mfResult);
    EXPECT_TRUE(read.IsUntouched());
    EXPECT_EQ(At(stream), 0U);
    EXPECT_EQ(stream.TakeCalls(), (Calls{"seek 40 lazy", "read 8192", "seek 0 lazy"}));

    EXPECT_EQ(Exact(stream, 10).mBuffer, RandomMedia(20000).substr(0, 10));
    EXPECT_EQ(UpTo(stream, 10).mBuffer, RandomMedia(20000).substr(10, 10));
    EXPECT_EQ(stream.TakeCalls(), (Calls{"read 10", "read 10"}));
}

TEST(MediaParserStream, FailedFillOfAnUpToReadMovesNothingAndLeavesTheBufferEmptyForGood) {
    RecordingStream stream(RandomMedia(20000));
    stream.mfSourceStays = true;
    ASSERT_TRUE(SeekTo(stream, 40));
    stream.mClaims = {-1};
    const ReadOutcome read = UpTo(stream, 10);
    EXPECT_FALSE(read.mfResult);
    EXPECT_EQ(read.mCount, 10U);
    EXPECT_TRUE(read.IsUntouched());
    EXPECT_EQ(At(stream), 40U);
    EXPECT_EQ(stream.TakeCalls(), (Calls{"seek 40 lazy", "read 8192"}));

    EXPECT_EQ(UpTo(stream, 10).mBuffer, RandomMedia(20000).substr(0, 10)); // the source still stands at 0
    EXPECT_EQ(At(stream), 50U);
    EXPECT_EQ(stream.TakeCalls(), (Calls{"read 10"}));
}

TEST(MediaParserStream, BufferIsNeverRefreshed) {
    for (const auto read : {Exact, UpTo}) {
        RecordingStream stream(RandomMedia(20000));
        Fill(stream);
        stream.mContent = std::string(30000, 'x');
        stream.Close();
        ASSERT_TRUE(stream.Open());
        ASSERT_TRUE(stream.Seek(0, ezMediaParserStream::SeekFromStart, true));
        EXPECT_EQ(read(stream, 8191).mBuffer, RandomMedia(20000).substr(0, 8191));
        ASSERT_TRUE(SeekTo(stream, 8192));
        EXPECT_EQ(read(stream, 10).mBuffer, "xxxxxxxxxx");
        ASSERT_TRUE(SeekTo(stream, 10));
        EXPECT_EQ(read(stream, 10).mBuffer, RandomMedia(20000).substr(10, 10));
    }
}

// ---- reads once the buffer is filled ----

TEST(MediaParserStream, BufferedReadKeepsTheSourceInStepByALazySeek) {
    for (const auto read : {Exact, UpTo}) {
        RecordingStream stream(RandomMedia(20000));
        Fill(stream);
        EXPECT_EQ(read(stream, 100).mBuffer, RandomMedia(20000).substr(0, 100));
        EXPECT_EQ(read(stream, 8).mBuffer, RandomMedia(20000).substr(100, 8));
        EXPECT_EQ(At(stream), 108U);
        EXPECT_EQ(stream.TakeCalls(), (Calls{"seek 100 lazy", "seek 108 lazy"}));
        EXPECT_EQ(read(stream, 9000).mBuffer, RandomMedia(20000).substr(108, 9000));
    }
}

TEST(MediaParserStream, BufferedReadsSucceedWhereTheSeekThatFollowsFails) {
    for (const auto read : {Exact, UpTo}) {
        RecordingStream stream(RandomMedia(20000));
        stream.mfRefuseSeeks = true;
        EXPECT_EQ(read(stream, 10).mBuffer, RandomMedia(20000).substr(0, 10));
        const ReadOutcome second = read(stream, 10);
        EXPECT_TRUE(second.mfResult);
        EXPECT_EQ(second.mBuffer, RandomMedia(20000).substr(10, 10));
        EXPECT_EQ(At(stream), 20U);
        EXPECT_EQ(stream.TakeCalls(), (Calls{"read 8192", "seek 10 lazy", "seek 20 lazy"}));
    }
}

TEST(MediaParserStream, ShortFillOfAnExactReadIgnoresTheResultOfItsSeek) {
    RecordingStream stream(RandomMedia(100));
    stream.mfRefuseSeeks = true;
    EXPECT_FALSE(Exact(stream, 200).mfResult);
    EXPECT_EQ(At(stream), 100U);
}

TEST(MediaParserStream, ExactReadEndingAtBufferEndGoesToTheSource) {
    for (const std::size_t size : {100U, 8192U}) { // the media is shorter than, and longer than, the buffer
        RecordingStream stream(RandomMedia(size == 100 ? 100 : 20000));
        Fill(stream);
        const ReadOutcome within = Exact(stream, size - 1);
        EXPECT_TRUE(within.mfResult);
        EXPECT_EQ(stream.TakeCalls(), (Calls{"seek " + std::to_string(size - 1) + " lazy"}));
        ASSERT_TRUE(SeekTo(stream, 0));
        stream.TakeCalls();
        stream.mContent = std::string(20000, 'x');
        const ReadOutcome whole = Exact(stream, size);
        EXPECT_TRUE(whole.mfResult);
        EXPECT_EQ(whole.mBuffer, std::string(size, 'x'));
        EXPECT_EQ(At(stream), size);
        EXPECT_EQ(stream.TakeCalls(), (Calls{"read " + std::to_string(size)}));
    }
}

TEST(MediaParserStream, UpToReadEndingAtBufferEndIsServedFromTheBuffer) {
    for (const std::size_t size : {100U, 8192U}) {
        RecordingStream stream(RandomMedia(size == 100 ? 100 : 20000));
        Fill(stream);
        stream.mContent = std::string(20000, 'x');
        const ReadOutcome whole = UpTo(stream, size);
        EXPECT_TRUE(whole.mfResult);
        EXPECT_EQ(whole.mCount, size);
        EXPECT_EQ(whole.mBuffer, RandomMedia(20000).substr(0, size));
        EXPECT_EQ(stream.TakeCalls(), (Calls{"seek " + std::to_string(size) + " lazy"}));
    }
}

TEST(MediaParserStream, ReadAcrossTheBufferEndGoesWhollyToTheSource) {
    for (const auto read : {Exact, UpTo}) {
        RecordingStream stream(RandomMedia(20000));
        Fill(stream);
        ASSERT_TRUE(SeekTo(stream, 8000));
        EXPECT_EQ(read(stream, 193).mBuffer, RandomMedia(20000).substr(8000, 193));
        EXPECT_EQ(At(stream), 8193U);
        EXPECT_EQ(stream.TakeCalls(), (Calls{"seek 8000 lazy", "read 193"})); // and no seek follows
    }
}

TEST(MediaParserStream, ShortMediaIsReadAgainAfterItsBuffer) {
    RecordingStream stream(RandomMedia(100));
    Fill(stream);
    const ReadOutcome upTo = UpTo(stream, 101); // the buffer is filled: its 100 bytes do not serve this read
    EXPECT_TRUE(upTo.mfResult);
    EXPECT_EQ(upTo.mCount, 100U);
    EXPECT_EQ(upTo.Bytes(), RandomMedia(100));
    EXPECT_EQ(stream.TakeCalls(), (Calls{"read 101"}));
}

// ---- direct reads ----

TEST(MediaParserStream, DirectReadBeforeTheEnd) {
    for (const auto read : {Exact, UpTo}) {
        RecordingStream stream(RandomMedia(20000));
        ASSERT_TRUE(SeekTo(stream, 10000));
        const ReadOutcome outcome = read(stream, 9000);
        EXPECT_TRUE(outcome.mfResult);
        EXPECT_EQ(outcome.mCount, 9000U);
        EXPECT_EQ(outcome.mBuffer, RandomMedia(20000).substr(10000, 9000));
        EXPECT_EQ(At(stream), 19000U);
        EXPECT_EQ(stream.TakeCalls(), (Calls{"seek 10000 lazy", "read 9000"}));
    }
}

TEST(MediaParserStream, DirectReadAcrossTheEnd) {
    RecordingStream exact(RandomMedia(20000));
    ASSERT_TRUE(SeekTo(exact, 19990));
    EXPECT_FALSE(Exact(exact, 11).mfResult);
    EXPECT_EQ(At(exact), 20000U);
    EXPECT_EQ(exact.TakeCalls(), (Calls{"seek 19990 lazy", "read 11"}));

    RecordingStream upTo(RandomMedia(20000));
    ASSERT_TRUE(SeekTo(upTo, 19990));
    const ReadOutcome read = UpTo(upTo, 11);
    EXPECT_TRUE(read.mfResult);
    EXPECT_EQ(read.mCount, 10U);
    EXPECT_EQ(read.Bytes(), RandomMedia(20000).substr(19990));
    EXPECT_EQ(At(upTo), 20000U);
    EXPECT_EQ(upTo.TakeCalls(), (Calls{"seek 19990 lazy", "read 11"}));
}

TEST(MediaParserStream, DirectReadEndingAtTheEnd) {
    for (const auto read : {Exact, UpTo}) {
        RecordingStream stream(RandomMedia(20000));
        ASSERT_TRUE(SeekTo(stream, 19990));
        const ReadOutcome outcome = read(stream, 10);
        EXPECT_TRUE(outcome.mfResult);
        EXPECT_EQ(outcome.mCount, 10U);
        EXPECT_EQ(At(stream), 20000U);
    }
}

TEST(MediaParserStream, DirectReadAtTheEnd) {
    RecordingStream exact(RandomMedia(20000));
    ASSERT_TRUE(SeekTo(exact, 20000));
    const ReadOutcome failed = Exact(exact, 1);
    EXPECT_FALSE(failed.mfResult);
    EXPECT_TRUE(failed.IsUntouched());
    EXPECT_EQ(At(exact), 20000U);

    RecordingStream upTo(RandomMedia(20000));
    ASSERT_TRUE(SeekTo(upTo, 20000));
    const ReadOutcome read = UpTo(upTo, 10);
    EXPECT_TRUE(read.mfResult);
    EXPECT_EQ(read.mCount, 0U);
    EXPECT_TRUE(read.IsUntouched());
    EXPECT_EQ(At(upTo), 20000U);
}

TEST(MediaParserStream, DirectReadOfAFailingSourceMovesNothing) {
    RecordingStream stream(RandomMedia(20000));
    ASSERT_TRUE(SeekTo(stream, 10000));
    stream.mClaims = {-1, -1};
    EXPECT_FALSE(Exact(stream, 100).mfResult);
    EXPECT_EQ(At(stream), 10000U);
    const ReadOutcome upTo = UpTo(stream, 100);
    EXPECT_FALSE(upTo.mfResult);
    EXPECT_EQ(upTo.mCount, 100U);
    EXPECT_EQ(At(stream), 10000U);
    EXPECT_EQ(stream.TakeCalls(), (Calls{"seek 10000 lazy", "read 100", "read 100"}));
    EXPECT_EQ(Exact(stream, 100).mBuffer, RandomMedia(20000).substr(10000, 100)); // it may be tried again
}

TEST(MediaParserStream, ReadOfABufferedStreamAtItsEnd) {
    RecordingStream stream(RandomMedia(100));
    Fill(stream);
    ASSERT_TRUE(SeekTo(stream, 100));
    EXPECT_FALSE(Exact(stream, 1).mfResult);
    EXPECT_EQ(At(stream), 100U);
    const ReadOutcome upTo = UpTo(stream, 1);
    EXPECT_TRUE(upTo.mfResult);
    EXPECT_EQ(upTo.mCount, 0U);
    EXPECT_EQ(stream.TakeCalls(), (Calls{"seek 100 lazy", "read 1", "read 1"}));
}

// ---- sources that claim nonsense ----

TEST(MediaParserStream, FillThatClaimsMoreThanTheBufferIsTakenAsAFullBuffer) {
    for (const auto read : {Exact, UpTo}) {
        RecordingStream stream(RandomMedia(20000));
        stream.mClaims = {INT64_MAX};
        EXPECT_EQ(read(stream, 10).mBuffer, RandomMedia(20000).substr(0, 10));
        stream.TakeCalls();
        ASSERT_TRUE(SeekTo(stream, 8100));
        EXPECT_EQ(read(stream, 93).mBuffer, RandomMedia(20000).substr(8100, 93));
        EXPECT_EQ(stream.TakeCalls(), (Calls{"seek 8100 lazy", "read 93"})); // byte 8192 is not in the buffer
    }
}

TEST(MediaParserStream, DirectUpToReadThatClaimsMoreThanAskedIsClamped) {
    RecordingStream stream(RandomMedia(20000));
    ASSERT_TRUE(SeekTo(stream, 10000));
    stream.mClaims = {101};
    const ReadOutcome read = UpTo(stream, 100);
    EXPECT_TRUE(read.mfResult);
    EXPECT_EQ(read.mCount, 100U);
    EXPECT_EQ(At(stream), 10100U);
}

TEST(MediaParserStream, DirectExactReadThatClaimsMoreThanAskedFails) {
    RecordingStream stream(RandomMedia(20000));
    ASSERT_TRUE(SeekTo(stream, 10000));
    stream.mClaims = {101};
    EXPECT_FALSE(Exact(stream, 100).mfResult); // not the count that was asked for
}

TEST(MediaParserStream, DirectExactReadThatClaimsMoreThanAskedMovesByNoMoreThanAsked) {
    RecordingStream stream(RandomMedia(20000));
    ASSERT_TRUE(SeekTo(stream, 10000));
    stream.mClaims = {INT64_MAX};
    Exact(stream, 100);
    EXPECT_EQ(At(stream), 10100U);
}

TEST(MediaParserStream, AnyNegativeCountIsAnError) {
    RecordingStream stream(RandomMedia(20000));
    stream.mClaims = {INT64_MIN, -2, -8192};
    const ReadOutcome filling = UpTo(stream, 10);
    EXPECT_FALSE(filling.mfResult);
    EXPECT_EQ(filling.mCount, 10U);
    const ReadOutcome direct = UpTo(stream, 9000);
    EXPECT_FALSE(direct.mfResult);
    EXPECT_EQ(direct.mCount, 9000U);
    EXPECT_FALSE(Exact(stream, 9000).mfResult);
    EXPECT_EQ(At(stream), 0U);
}

// ---- positions near 2^64 ----

TEST(MediaParserStream, SeekReachesTheLastPosition) {
    RecordingStream stream(RandomMedia(100));
    EXPECT_TRUE(SeekTo(stream, UINT64_MAX));
    EXPECT_EQ(At(stream), UINT64_MAX);
    EXPECT_TRUE(stream.Seek(0, ezMediaParserStream::SeekFromCurrent, false));
    ASSERT_TRUE(SeekTo(stream, UINT64_MAX - 5));
    EXPECT_TRUE(stream.Seek(5, ezMediaParserStream::SeekFromCurrent, false));
    EXPECT_EQ(At(stream), UINT64_MAX);
}

TEST(MediaParserStream, RelativeSeekAfterTheLastPositionFails) {
    RecordingStream stream(RandomMedia(100));
    ASSERT_TRUE(SeekTo(stream, 10));
    stream.TakeCalls();
    EXPECT_FALSE(stream.Seek(UINT64_MAX - 9, ezMediaParserStream::SeekFromCurrent, false));
    EXPECT_FALSE(stream.Seek(UINT64_MAX, ezMediaParserStream::SeekFromCurrent, true));
    EXPECT_EQ(At(stream), 10U);
    EXPECT_EQ(stream.TakeCalls(), Calls()); // a wrapped target would have been asked for
    EXPECT_TRUE(stream.Seek(UINT64_MAX - 10, ezMediaParserStream::SeekFromCurrent, false));
}

TEST(MediaParserStream, ReadNearTheLastPositionGoesToTheSource) {
    for (const bool filled : {false, true}) {
        RecordingStream stream(RandomMedia(20000));
        if (filled) {
            Fill(stream);
        }
        ASSERT_TRUE(SeekTo(stream, UINT64_MAX - 1));
        stream.TakeCalls();
        EXPECT_FALSE(Exact(stream, 10).mfResult); // the wrapped end, 8, lies in the buffer
        EXPECT_EQ(At(stream), UINT64_MAX - 1);
        const ReadOutcome upTo = UpTo(stream, 10);
        EXPECT_TRUE(upTo.mfResult);
        EXPECT_EQ(upTo.mCount, 0U);
        EXPECT_EQ(At(stream), UINT64_MAX - 1);
        EXPECT_EQ(stream.TakeCalls(), (Calls{"read 10", "read 10"}));
    }
}

TEST(MediaParserStream, ReadWhoseEndWouldWrapFailsAndMovesNothing) {
    RecordingStream stream(RandomMedia(20000));
    stream.mfSourceStays = true; // gives bytes although the position is out of its range
    ASSERT_TRUE(SeekTo(stream, UINT64_MAX - 5));
    EXPECT_FALSE(Exact(stream, 7).mfResult);
    EXPECT_EQ(At(stream), UINT64_MAX - 5);
    const ReadOutcome upTo = UpTo(stream, 7);
    EXPECT_FALSE(upTo.mfResult);
    EXPECT_EQ(upTo.mCount, 7U);
    EXPECT_EQ(At(stream), UINT64_MAX - 5);
    EXPECT_TRUE(Exact(stream, 5).mfResult);
    EXPECT_EQ(At(stream), UINT64_MAX);
}

// ---- ReadFrom ----

TEST(MediaParserStream, ReadFromSeeksLazilyAndReads) {
    for (const auto readFrom : {ExactFrom, UpToFrom}) {
        RecordingStream stream(RandomMedia(20000));
        Fill(stream);
        const ReadOutcome buffered = readFrom(stream, 300, 20);
        EXPECT_TRUE(buffered.mfResult);
        EXPECT_EQ(buffered.mBuffer, RandomMedia(20000).substr(300, 20));
        const ReadOutcome direct = readFrom(stream, 9000, 20);
        EXPECT_TRUE(direct.mfResult);
        EXPECT_EQ(direct.mBuffer, RandomMedia(20000).substr(9000, 20));
        EXPECT_EQ(At(stream), 9020U);
        EXPECT_EQ(stream.TakeCalls(), (Calls{"seek 300 lazy", "seek 320 lazy", "seek 9000 lazy", "read 20"}));
    }
}

TEST(MediaParserStream, ReadFromDoesNotReadWhenTheSeekFails) {
    for (const auto readFrom : {ExactFrom, UpToFrom}) {
        RecordingStream stream(RandomMedia(20000));
        ASSERT_TRUE(SeekTo(stream, 7));
        stream.TakeCalls();
        stream.mfRefuseSeeks = true;
        const ReadOutcome read = readFrom(stream, 300, 20);
        EXPECT_FALSE(read.mfResult);
        EXPECT_EQ(read.mCount, 20U);
        EXPECT_TRUE(read.IsUntouched());
        EXPECT_EQ(At(stream), 7U);
        EXPECT_EQ(stream.TakeCalls(), (Calls{"seek 300 lazy"}));
        EXPECT_FALSE(readFrom(stream, 300, 0).mfResult); // not even where there is nothing to read
    }
}

TEST(MediaParserStream, ReadFromFailsWhenTheReadFails) {
    RecordingStream stream(RandomMedia(20000));
    EXPECT_FALSE(ExactFrom(stream, 19999, 2).mfResult);
    EXPECT_EQ(At(stream), 20000U);
    const ReadOutcome partial = UpToFrom(stream, 19999, 2);
    EXPECT_TRUE(partial.mfResult);
    EXPECT_EQ(partial.mCount, 1U);
    stream.mClaims = {-1};
    const ReadOutcome failed = UpToFrom(stream, 19999, 2);
    EXPECT_FALSE(failed.mfResult);
    EXPECT_EQ(failed.mCount, 2U);
    EXPECT_EQ(At(stream), 19999U);
}

// ---- ReadFromEnd ----

TEST(MediaParserStream, ReadFromEndGivesTheLastBytes) {
    for (const auto readFromEnd : {ExactFromEnd, UpToFromEnd}) {
        RecordingStream stream(RandomMedia(20000));
        const ReadOutcome read = readFromEnd(stream, 128);
        EXPECT_TRUE(read.mfResult);
        EXPECT_EQ(read.mCount, 128U);
        EXPECT_EQ(read.mBuffer, RandomMedia(20000).substr(19872));
        EXPECT_EQ(At(stream), 20000U);
        EXPECT_EQ(stream.TakeCalls(), (Calls{"seek 19872 lazy", "read 128"}));
    }
}

TEST(MediaParserStream, ReadFromEndOfUnknownSizeFails) {
    for (const auto readFromEnd : {ExactFromEnd, UpToFromEnd}) {
        for (const std::size_t size : {0U, 128U}) {
            RecordingStream stream(RandomMedia(20000));
            stream.SetMediaSize(0);
            const ReadOutcome read = readFromEnd(stream, size);
            EXPECT_FALSE(read.mfResult);
            EXPECT_EQ(read.mCount, size);
            EXPECT_EQ(stream.TakeCalls(), Calls());
        }
    }
}

TEST(MediaParserStream, ExactReadFromEndOfMoreThanTheMediaFails) {
    RecordingStream stream(RandomMedia(100));
    EXPECT_FALSE(ExactFromEnd(stream, 101).mfResult);
    EXPECT_EQ(stream.TakeCalls(), Calls());
    const ReadOutcome whole = ExactFromEnd(stream, 100);
    EXPECT_TRUE(whole.mfResult);
    EXPECT_EQ(whole.mBuffer, RandomMedia(100));
    EXPECT_EQ(stream.TakeCalls(), (Calls{"seek 0 lazy", "read 8192", "seek 100 lazy"}));
}

TEST(MediaParserStream, UpToReadFromEndOfMoreThanTheMediaReadsTheWholeMedia) {
    RecordingStream stream(RandomMedia(100));
    ASSERT_TRUE(SeekTo(stream, 50));
    stream.TakeCalls();
    const ReadOutcome read = UpToFromEnd(stream, 200);
    EXPECT_TRUE(read.mfResult);
    EXPECT_EQ(read.mCount, 100U);
    EXPECT_EQ(read.Bytes(), RandomMedia(100));
    EXPECT_EQ(stream.TakeCalls(), (Calls{"seek 0 lazy", "read 8192", "seek 100 lazy"}));

    std::size_t most = SIZE_MAX;
    std::string bytes(100, kUntouched);
    EXPECT_TRUE(stream.ReadFromEnd(&most, &bytes[0]));
    EXPECT_EQ(most, 100U);
    EXPECT_EQ(bytes, RandomMedia(100));
}

TEST(MediaParserStream, ReadFromEndOfNothingMovesToTheEnd) {
    for (const auto readFromEnd : {ExactFromEnd, UpToFromEnd}) {
        RecordingStream stream(RandomMedia(100));
        EXPECT_TRUE(readFromEnd(stream, 0).mfResult);
        EXPECT_EQ(At(stream), 100U);
        EXPECT_EQ(stream.TakeCalls(), (Calls{"seek 100 lazy"}));
    }
}

TEST(MediaParserStream, UpToReadFromEndTellsTheCountReallyRead) {
    RecordingStream stream(RandomMedia(10000));
    stream.SetMediaSize(10040); // the media became shorter than it said
    const ReadOutcome read = UpToFromEnd(stream, 100);
    EXPECT_TRUE(read.mfResult);
    EXPECT_EQ(read.mCount, 60U);
    EXPECT_EQ(read.Bytes(), RandomMedia(10000).substr(9940));
    EXPECT_FALSE(ExactFromEnd(stream, 100).mfResult);
}

TEST(MediaParserStream, FailingUpToReadFromEndLeavesTheCount) {
    RecordingStream refused(RandomMedia(10000));
    refused.mfRefuseSeeks = true;
    const ReadOutcome noSeek = UpToFromEnd(refused, 20000);
    EXPECT_FALSE(noSeek.mfResult);
    EXPECT_EQ(noSeek.mCount, 20000U);

    RecordingStream failing(RandomMedia(10000));
    failing.mClaims = {-1};
    const ReadOutcome noRead = UpToFromEnd(failing, 20000);
    EXPECT_FALSE(noRead.mfResult);
    EXPECT_EQ(noRead.mCount, 20000U);
}

TEST(MediaParserStream, ReadFromEndAsTheFirstReadOfASmallMediaFillsTheBufferWithTheEnd) {
    RecordingStream exact(RandomMedia(1000));
    EXPECT_FALSE(ExactFromEnd(exact, 128).mfResult); // 128 bytes are filed as 0 to 127, none at 872
    EXPECT_EQ(At(exact), 128U);
    EXPECT_EQ(ExactFrom(exact, 0, 10).mBuffer, RandomMedia(1000).substr(872, 10));

    RecordingStream upTo(RandomMedia(1000));
    const ReadOutcome read = UpToFromEnd(upTo, 128);
    EXPECT_TRUE(read.mfResult);
    EXPECT_EQ(read.mCount, 0U);
    EXPECT_EQ(At(upTo), 872U);
}

TEST(MediaParserStream, ReadFromEndOfTheLargestMediaReachesItsLastBytes) {
    RecordingStream stream(RandomMedia(100));
    stream.SetMediaSize(UINT64_MAX);
    EXPECT_FALSE(ExactFromEnd(stream, 10).mfResult);
    const ReadOutcome upTo = UpToFromEnd(stream, 10);
    EXPECT_TRUE(upTo.mfResult);
    EXPECT_EQ(upTo.mCount, 0U);
    EXPECT_EQ(stream.TakeCalls(), (Calls{"seek 18446744073709551605 lazy", "read 10",
                                         "seek 18446744073709551605 lazy", "read 10"}));
}

// ---- CopyInfo ----

TEST(MediaParserStream, CopyInfoTellsPathTimeSizeAndExtension) {
    RecordingStream stream(RandomMedia(123));
    stream.SetFullPath("/media/Song.MP3");
    stream.SetExtension("MP3");
    stream.SetLastModificationTime(ezDateTime(1000000000, 5));
    ezMediaInfo info;
    stream.CopyInfo(&info);
    EXPECT_EQ(DumpRecord(&info), "fe=\"mp3\"\nfs=123\npath=\"/media/Song.MP3\"\nmodified=1000000000\n");
    EXPECT_TRUE(info.mLastModificationTime == ezDateTime(1000000000, 5));
    EXPECT_EQ(stream.TakeCalls(), Calls());
}

TEST(MediaParserStream, CopyInfoOverwritesPathAndTime) {
    RecordingStream stream("");
    stream.SetFullPath("/media/new");
    stream.SetLastModificationTime(ezDateTime(2000, 0));
    ezMediaInfo info;
    info.mFullPath = "/media/old";
    info.mLastModificationTime = ezDateTime(1000, 0);
    stream.CopyInfo(&info);
    EXPECT_EQ(DumpRecord(&info), "path=\"/media/new\"\nmodified=2000\n");

    ezMediaParserStream nothing;
    nothing.CopyInfo(&info);
    EXPECT_EQ(DumpRecord(&info), ""); // also by nothing
}

TEST(MediaParserStream, CopyInfoKeepsASizeThatTheRecordHolds) {
    RecordingStream stream(RandomMedia(123));
    ezMediaInfo info;
    info.Set(kezInfo_FileSize, ezuint64(7), true);
    stream.CopyInfo(&info);
    EXPECT_EQ(info.GetUInt64("fs", 0).ToUInt64(), 7U);
}

TEST(MediaParserStream, CopyInfoReplacesASizeOfZero) {
    RecordingStream stream(RandomMedia(123));
    ezMediaInfo info;
    info.Set(kezInfo_FileSize, ezuint64(0), true);
    stream.CopyInfo(&info);
    EXPECT_EQ(info.GetUInt64("fs", 0).ToUInt64(), 123U);
}

TEST(MediaParserStream, CopyInfoReplacesASizeThatIsNoNumber) {
    RecordingStream stream(RandomMedia(123));
    ezMediaInfo info;
    info.Set(kezInfo_FileSize, "many", true);
    stream.CopyInfo(&info);
    EXPECT_EQ(info.GetUInt64("fs", 0).ToUInt64(), 123U);
    EXPECT_TRUE(info.IsNumber("fs"));
}

TEST(MediaParserStream, CopyInfoWritesNoUnknownSizeAndNoEmptyExtension) {
    RecordingStream stream("");
    ezMediaInfo info;
    stream.CopyInfo(&info);
    EXPECT_FALSE(info.Has("fs"));
    EXPECT_FALSE(info.Has("fe"));
}

TEST(MediaParserStream, CopyInfoKeepsAnExtensionThatTheRecordHolds) {
    RecordingStream stream(RandomMedia(123));
    stream.SetExtension("mp3");
    ezMediaInfo info;
    info.Set(kezInfo_FileExtension, "MPG", true);
    stream.CopyInfo(&info);
    EXPECT_TRUE(info.GetCString("fe", "") == "MPG");
}

TEST(MediaParserStream, CopyInfoLowersAnExtensionThatADerivedStreamSetAsItWas) {
    RecordingStream stream(RandomMedia(123));
    stream.SetExtensionAsItIs("JPeG");
    ezMediaInfo info;
    stream.CopyInfo(&info);
    EXPECT_TRUE(info.GetCString("fe", "") == "jpeg");
}

TEST(MediaParserStream, CopyInfoTellsASizeAbove32Bits) {
    RecordingStream stream("");
    stream.SetMediaSize(UINT64_C(6442450944));
    ezMediaInfo info;
    stream.CopyInfo(&info);
    EXPECT_EQ(info.GetUInt64("fs", 0).ToUInt64(), UINT64_C(6442450944));
}

TEST(MediaParserStream, CopyInfoIntoNothingIsIgnored) {
    RecordingStream stream(RandomMedia(123));
    stream.CopyInfo(nullptr);
    EXPECT_EQ(stream.TakeCalls(), Calls());
}

// ---- awkward deliveries ----

namespace {

/// Reads the whole media by exact reads of aPiece bytes, each tried again once where it fails.
std::string ReadAllExactly(ezMediaParserStream& aStream, std::size_t aMediaSize, std::size_t aPiece,
                           std::size_t* aFailures) {
    std::string bytes(aMediaSize, kUntouched);
    *aFailures = 0;
    for (std::size_t done = 0; done < aMediaSize;) {
        const std::size_t size = std::min(aPiece, aMediaSize - done);
        if (aStream.ReadFrom(done, size, &bytes[done])) {
            done += size;
        } else if (++*aFailures > 1) {
            break;
        }
    }
    return bytes;
}

/// Reads the whole media by up-to reads of aPiece bytes, up to the end that the stream tells.
std::string ReadAllUpTo(ezMediaParserStream& aStream, std::size_t aPiece) {
    std::string bytes;
    for (;;) {
        const ReadOutcome read = UpTo(aStream, aPiece);
        if (!read.mfResult || read.mCount == 0) {
            return bytes;
        }
        bytes += read.Bytes();
    }
}

} // namespace

TEST(MediaParserStream, OneFailingReadAtAnyOffsetIsMadeUpForByReadingAgain) {
    const std::string media = RandomMedia(20000);
    for (std::size_t offset = 0; offset < media.size(); ++offset) {
        Delivery delivery;
        delivery.mFailingOffset = offset;
        AwkwardStream stream(media, delivery);
        std::size_t failures = 0;
        ASSERT_EQ(ReadAllExactly(stream, media.size(), 1999, &failures), media)
            << "failing offset " << offset;
        ASSERT_EQ(failures, 1U) << "failing offset " << offset;
    }
}

TEST(MediaParserStream, OneByteAtATimeGivesTheSameBytes) {
    const std::string media = RandomMedia(20000);
    Delivery delivery;
    delivery.mMaximumRead = 1;
    AwkwardStream exact(media, delivery);
    std::size_t failures = 0;
    EXPECT_EQ(ReadAllExactly(exact, media.size(), 1, &failures), media);
    EXPECT_EQ(failures, 0U);
    EXPECT_EQ(exact.GetCosts().mReads, 20000U);
    AwkwardStream upTo(media, delivery);
    EXPECT_EQ(ReadAllUpTo(upTo, 5000), media);
}

TEST(MediaParserStream, OneByteAtATimeFailsLargerExactReadsAndMovesByOne) {
    Delivery delivery;
    delivery.mMaximumRead = 1;
    AwkwardStream stream(RandomMedia(20000), delivery);
    EXPECT_FALSE(Exact(stream, 10).mfResult);
    EXPECT_EQ(At(stream), 1U);
    EXPECT_FALSE(Exact(stream, 10).mfResult);
    EXPECT_EQ(At(stream), 2U);
}

TEST(MediaParserStream, ShortReadsGiveTheSameBytes) {
    const std::string media = RandomMedia(20000);
    for (const std::size_t maximum : {2U, 100U, 8191U, 8192U, 8193U}) {
        for (const std::size_t piece : {1U, 100U, 8191U, 8192U, 8193U, 20000U}) {
            Delivery delivery;
            delivery.mMaximumRead = maximum;
            AwkwardStream stream(media, delivery);
            EXPECT_EQ(ReadAllUpTo(stream, piece), media) << maximum << " at most, asked for " << piece;
            if (piece <= maximum) {
                AwkwardStream exact(media, delivery);
                std::size_t failures = 0;
                EXPECT_EQ(ReadAllExactly(exact, media.size(), piece, &failures), media) << piece;
                EXPECT_EQ(failures, 0U);
            }
        }
    }
}

TEST(MediaParserStream, UnknownSizeGivesTheSameBytes) {
    const std::string media = RandomMedia(20000);
    Delivery delivery;
    delivery.mfSizeKnown = false;
    AwkwardStream exact(media, delivery);
    std::size_t failures = 0;
    EXPECT_EQ(ReadAllExactly(exact, media.size(), 999, &failures), media);
    EXPECT_EQ(failures, 0U);
    AwkwardStream upTo(media, delivery);
    EXPECT_EQ(ReadAllUpTo(upTo, 999), media);
    EXPECT_FALSE(ExactFromEnd(upTo, 1).mfResult);
}

TEST(MediaParserStream, SourceThatCannotSeekIsReadInOrderBesideItsBuffer) {
    const std::string media = RandomMedia(20000);
    Delivery delivery;
    delivery.mfSeekable = false;
    AwkwardStream upTo(media, delivery);
    EXPECT_EQ(ReadAllUpTo(upTo, 1024), media); // the last piece of the buffer ends where the buffer ends
    AwkwardStream exact(media, delivery);
    EXPECT_EQ(Exact(exact, 8192).mBuffer, media.substr(0, 8192));
    EXPECT_EQ(Exact(exact, 11808).mBuffer, media.substr(8192));
    AwkwardStream direct(media, delivery);
    EXPECT_EQ(Exact(direct, 20000).mBuffer, media);
}

TEST(MediaParserStream, SourceThatCannotSeekLosesTheExactReadThatEndsAtItsBuffer) {
    const std::string media = RandomMedia(20000);
    Delivery delivery;
    delivery.mfSeekable = false;
    AwkwardStream stream(media, delivery);
    ASSERT_TRUE(Exact(stream, 8000).mfResult);
    EXPECT_EQ(Exact(stream, 192).mBuffer, media.substr(8192, 192)); // the source stands after the buffer
    EXPECT_EQ(At(stream), 8192U);
}

TEST(MediaParserStream, ManySmallReadsCostOneReadOfTheSource) {
    AwkwardStream stream(RandomMedia(20000));
    for (std::size_t i = 0; i < 8191; ++i) {
        ASSERT_TRUE(ExactFrom(stream, i, 1).mfResult);
    }
    EXPECT_EQ(stream.GetCosts().mReads, 1U);
    EXPECT_EQ(stream.GetCosts().mBytes, 8192U);
    EXPECT_EQ(stream.GetCosts().mImmediateSeeks, 0U);
}
