#include "ezFormats/detail/MediaBytes.h"

#include "support/AwkwardStream.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>

namespace {

constexpr std::uint32_t kReads = 100;
constexpr std::uint64_t kBytes = std::uint64_t{16} * 1024 * 1024;
constexpr std::size_t kStart = 8192; // what a stream keeps

/// Bytes that tell where they stand.
std::string Numbered(std::size_t aSize) {
    std::string content(aSize, '\0');
    for (std::size_t i = 0; i < aSize; ++i) {
        content[i] = static_cast<char>(i * 31 ^ i >> 8);
    }
    return content;
}

/// Asks for one byte: false when it is not to be had, or not the one that stands there.
bool IsAt(MediaBytes& aBytes, const std::string& aContent, std::size_t aPosition) {
    unsigned char byte = 0;
    return aBytes.Get(aPosition, &byte) && static_cast<char>(byte) == aContent[aPosition];
}

Delivery UnknownSize() {
    Delivery delivery;
    delivery.mfSizeKnown = false;
    return delivery;
}

} // namespace

TEST(MediaBytes, FirstReadIsTheStartWhateverIsAskedForFirst) {
    const std::string content = Numbered(100000);
    for (const std::size_t asked :
         {std::size_t{0}, std::size_t{8191}, std::size_t{8192}, std::size_t{99999}}) {
        AwkwardStream stream(content);
        ASSERT_TRUE(stream.Seek(5000, ezMediaParserStream::SeekFromStart, true));
        MediaBytes bytes(stream, kReads, kBytes);
        EXPECT_TRUE(IsAt(bytes, content, asked)) << asked;
        EXPECT_EQ(stream.GetCosts().mReads, asked < kStart ? 1U : 2U) << asked;
        // What the stream keeps is the start of the media.
        char start[16] = {};
        EXPECT_TRUE(stream.ReadFrom(0, sizeof start, start));
        EXPECT_EQ(std::string(start, sizeof start), content.substr(0, sizeof start)) << asked;
        EXPECT_EQ(stream.GetCosts().mReads, asked < kStart ? 1U : 2U) << "of what the stream keeps";
    }
}

TEST(MediaBytes, LoadReadsTheStartFirstToo) {
    const std::string content = Numbered(100000);
    AwkwardStream stream(content);
    ASSERT_TRUE(stream.Seek(5000, ezMediaParserStream::SeekFromStart, true));
    MediaBytes bytes(stream, kReads, kBytes);
    EXPECT_TRUE(bytes.Load(99000, 1000));
    EXPECT_TRUE(IsAt(bytes, content, 99000));
    EXPECT_TRUE(IsAt(bytes, content, 99999));
    EXPECT_TRUE(IsAt(bytes, content, 0));
    EXPECT_EQ(stream.GetCosts().mReads, 2U) << "the start, kept by the stream, and the tail";
}

TEST(MediaBytes, EveryByteIsLentInAnyOrder) {
    const std::string content = Numbered(70001);
    AwkwardStream stream(content);
    MediaBytes bytes(stream, 1000000, UINT64_MAX);
    for (std::size_t i = 0, position = 0; i < 20000; ++i, position = (position + 7919) % content.size()) {
        ASSERT_TRUE(IsAt(bytes, content, position)) << position;
    }
    for (std::size_t position = 0; position < content.size(); ++position) {
        ASSERT_TRUE(IsAt(bytes, content, position)) << position;
    }
    for (std::size_t position = content.size(); position-- > 0;) {
        ASSERT_TRUE(IsAt(bytes, content, position)) << position;
    }
}

TEST(MediaBytes, BorrowedBytesGoOnToTheEndOfTheBuffer) {
    const std::string content = Numbered(10000);
    AwkwardStream stream(content);
    MediaBytes bytes(stream, kReads, kBytes);
    const unsigned char* borrowed = nullptr;
    EXPECT_EQ(bytes.Borrow(0, &borrowed), kStart);
    EXPECT_EQ(bytes.Borrow(8000, &borrowed), kStart - 8000);
    EXPECT_EQ(bytes.Borrow(kStart, &borrowed), content.size() - kStart);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(borrowed), content.size() - kStart),
              content.substr(kStart));
}

TEST(MediaBytes, BlocksGrowWhileTheAskingGoesStraightOn) {
    const std::string content = Numbered(1000000);
    AwkwardStream stream(content);
    MediaBytes bytes(stream, kReads, kBytes);
    std::vector<std::size_t> blocks;
    const unsigned char* borrowed = nullptr;
    for (std::size_t position = 0; position < content.size(); position += blocks.back()) {
        blocks.push_back(bytes.Borrow(position, &borrowed));
        ASSERT_NE(blocks.back(), 0U);
    }
    ASSERT_GT(blocks.size(), 5U);
    EXPECT_EQ(std::vector<std::size_t>(blocks.begin(), blocks.begin() + 5),
              (std::vector<std::size_t>{8192, 16384, 32768, 65536, 65536}));
    EXPECT_EQ(stream.GetCosts().mReads, blocks.size());
    EXPECT_EQ(stream.GetCosts().mBytes, content.size());
}

TEST(MediaBytes, NewPlaceBeginsWithASmallBlock) {
    const std::string content = Numbered(1000000);
    AwkwardStream stream(content);
    MediaBytes bytes(stream, kReads, kBytes);
    const unsigned char* borrowed = nullptr;
    bytes.Borrow(0, &borrowed);
    bytes.Borrow(kStart, &borrowed);
    EXPECT_EQ(bytes.Borrow(500000, &borrowed), 4096U);
    EXPECT_EQ(bytes.Borrow(504096, &borrowed), 8192U);
    EXPECT_EQ(bytes.Borrow(300000, &borrowed), 4096U);
}

TEST(MediaBytes, LoadHoldsATailForAskingInAnyOrder) {
    const std::string content = Numbered(300000);
    AwkwardStream stream(content);
    MediaBytes bytes(stream, kReads, kBytes);
    const std::size_t tail = content.size() - 50000;
    ASSERT_TRUE(bytes.Load(tail, 50000));
    const std::size_t reads = stream.GetCosts().mReads;
    for (std::size_t position = content.size(); position-- > tail;) {
        ASSERT_TRUE(IsAt(bytes, content, position)) << position;
    }
    EXPECT_EQ(stream.GetCosts().mReads, reads);
    const unsigned char* borrowed = nullptr;
    ASSERT_TRUE(bytes.Load(100000, 1000000));
    EXPECT_EQ(bytes.Borrow(100000, &borrowed), 65536U) << "at most 64 KiB";
}

TEST(MediaBytes, WindowIsOneBlockThatGrowsByWhatIsNew) {
    constexpr std::size_t kWindow = std::size_t{256} * 1024;
    const std::string content = Numbered(2000000);
    AwkwardStream stream(content);
    MediaBytes bytes(stream, kReads, 4 * kBytes);
    const unsigned char* borrowed = nullptr;
    ASSERT_TRUE(bytes.LoadWindow(0, kWindow));
    ASSERT_EQ(bytes.Borrow(0, &borrowed), kWindow);
    EXPECT_EQ(stream.GetCosts().mReads, 2U);
    EXPECT_EQ(stream.GetCosts().mBytes, kWindow) << "nothing is read twice";
    ASSERT_TRUE(bytes.LoadWindow(kWindow, 10 * kWindow));
    EXPECT_EQ(bytes.Borrow(kWindow, &borrowed), 2 * kWindow) << "at most 512 KiB";
    EXPECT_TRUE(IsAt(bytes, content, 3 * kWindow - 1));
    EXPECT_EQ(stream.GetCosts().mReads, 3U);
}

TEST(MediaBytes, LoadReachesOverTheStart) {
    const std::string content = Numbered(20000);
    AwkwardStream stream(content);
    MediaBytes bytes(stream, kReads, kBytes);
    ASSERT_TRUE(bytes.Load(5000, 15000));
    const std::size_t reads = stream.GetCosts().mReads;
    for (std::size_t position = content.size(); position-- > 5000;) {
        ASSERT_TRUE(IsAt(bytes, content, position)) << position;
    }
    EXPECT_EQ(stream.GetCosts().mReads, reads);
    EXPECT_EQ(stream.GetCosts().mBytes, content.size()) << "nothing is read twice";
}

TEST(MediaBytes, AfterTheEndThereIsNothingAndNoRead) {
    const std::string content = Numbered(100);
    AwkwardStream stream(content);
    MediaBytes bytes(stream, kReads, kBytes);
    const unsigned char* borrowed = nullptr;
    EXPECT_EQ(bytes.Borrow(100, &borrowed), 0U);
    EXPECT_EQ(bytes.Borrow(UINT64_MAX, &borrowed), 0U);
    EXPECT_FALSE(bytes.Load(100, 1));
    EXPECT_FALSE(bytes.Load(UINT64_MAX, 65536));
    EXPECT_EQ(borrowed, nullptr);
    EXPECT_EQ(stream.GetCosts().mReads, 0U);
    EXPECT_FALSE(bytes.HasReadFailed());
    EXPECT_FALSE(bytes.IsBudgetUsedUp());
    EXPECT_EQ(bytes.GetSize(), 100U);
}

TEST(MediaBytes, BudgetOfReadsHolds) {
    const std::string content = Numbered(1000000);
    AwkwardStream stream(content);
    MediaBytes bytes(stream, 3, kBytes);
    EXPECT_TRUE(IsAt(bytes, content, 0));
    EXPECT_TRUE(IsAt(bytes, content, 100000));
    EXPECT_TRUE(IsAt(bytes, content, 200000));
    EXPECT_FALSE(bytes.IsBudgetUsedUp());
    EXPECT_TRUE(IsAt(bytes, content, 200001)) << "at hand";
    EXPECT_FALSE(IsAt(bytes, content, 300000));
    EXPECT_TRUE(bytes.IsBudgetUsedUp());
    EXPECT_FALSE(bytes.HasReadFailed());
    EXPECT_FALSE(IsAt(bytes, content, 400000));
    EXPECT_EQ(stream.GetCosts().mReads, 3U);
}

TEST(MediaBytes, BudgetOfBytesHolds) {
    const std::string content = Numbered(1000000);
    AwkwardStream stream(content);
    MediaBytes bytes(stream, kReads, 20000);
    EXPECT_TRUE(IsAt(bytes, content, 0));
    EXPECT_TRUE(IsAt(bytes, content, 100000));
    EXPECT_TRUE(IsAt(bytes, content, 200000));
    EXPECT_FALSE(IsAt(bytes, content, 300000)) << "8192 + 4096 + 4096 + 4096 are more than 20000";
    EXPECT_TRUE(bytes.IsBudgetUsedUp());
    EXPECT_LE(stream.GetCosts().mBytes, 20000U);
}

TEST(MediaBytes, WholeMediaIsAllowedOnRequest) {
    const std::string content = Numbered(1000000);
    AwkwardStream stream(content);
    MediaBytes bytes(stream, 1, kStart);
    EXPECT_TRUE(IsAt(bytes, content, 0));
    bytes.AllowWholeMedia();
    for (std::size_t position = 0; position < content.size(); ++position) {
        ASSERT_TRUE(IsAt(bytes, content, position)) << position;
    }
    EXPECT_FALSE(bytes.IsBudgetUsedUp());
}

TEST(MediaBytes, WholeMediaIsAllowedOnceAndNoMore) {
    const std::string content = Numbered(1000000);
    AwkwardStream stream(content);
    MediaBytes bytes(stream, 1, kStart);
    bytes.AllowWholeMedia();
    for (std::size_t i = 0; i < 100000; ++i) { // back and forth, which nobody does who reads it once
        unsigned char byte = 0;
        bytes.Get(i % 2 == 0 ? 100000 : 900000, &byte);
    }
    EXPECT_TRUE(bytes.IsBudgetUsedUp());
    EXPECT_LE(stream.GetCosts().mReads, 2 * (content.size() / 65536 + 1) + 1);
    EXPECT_LE(stream.GetCosts().mBytes, content.size() + kStart);
}

TEST(MediaBytes, WholeMediaOfAnySizeIsAllowed) {
    class LargeStream : public AwkwardStream {
    public:
        explicit LargeStream(std::uint64_t aSize) : AwkwardStream(Numbered(100000)) { mMediaSize = aSize; }
    };
    for (const std::uint64_t size : {UINT64_MAX - 1, std::uint64_t{1} << 60, std::uint64_t{1} << 40}) {
        LargeStream stream(size);
        MediaBytes bytes(stream, 1, kStart);
        bytes.AllowWholeMedia();
        EXPECT_TRUE(IsAt(bytes, Numbered(100000), 99999)) << size;
        EXPECT_FALSE(bytes.IsBudgetUsedUp()) << size;
    }
}

TEST(MediaBytes, NoByteAfterTheSizeThatTheFirstReadToldIsBuffered) {
    /// Opens itself with its first read, and then knows that it is shorter than what it gave.
    class LateStream : public AwkwardStream {
    public:
        LateStream() : AwkwardStream(Numbered(200), UnknownSize()) {}

    protected:
        ezFileOffset MediaRead(void* aBuffer, std::size_t aSize) override {
            const ezFileOffset count = AwkwardStream::MediaRead(aBuffer, aSize);
            mMediaSize = 100;
            return count;
        }
    };
    LateStream stream;
    MediaBytes bytes(stream, kReads, kBytes);
    const unsigned char* borrowed = nullptr;
    EXPECT_EQ(bytes.Borrow(0, &borrowed), 100U);
    EXPECT_EQ(bytes.GetSize(), 100U);
    EXPECT_EQ(bytes.BorrowBuffered(0, &borrowed), 100U);
    EXPECT_EQ(bytes.BorrowBuffered(99, &borrowed), 1U);
    EXPECT_EQ(bytes.BorrowBuffered(100, &borrowed), 0U);
    EXPECT_EQ(bytes.Borrow(150, &borrowed), 0U);

    LateStream other;
    MediaBytes others(other, kReads, kBytes);
    EXPECT_EQ(others.Borrow(150, &borrowed), 0U) << "asked for before the size was known";
    EXPECT_EQ(other.GetCosts().mReads, stream.GetCosts().mReads) << "those of the start";
}

TEST(MediaBytes, FailedReadIsTold) {
    const std::string content = Numbered(100000);
    Delivery delivery;
    delivery.mFailingOffset = 50000;
    AwkwardStream stream(content, delivery);
    MediaBytes bytes(stream, kReads, kBytes);
    EXPECT_TRUE(IsAt(bytes, content, 0));
    EXPECT_FALSE(bytes.HasReadFailed());
    EXPECT_FALSE(IsAt(bytes, content, 50000));
    EXPECT_TRUE(bytes.HasReadFailed());
    EXPECT_FALSE(bytes.IsBudgetUsedUp());
    EXPECT_TRUE(IsAt(bytes, content, 1)) << "the start is still to be had";
}

TEST(MediaBytes, FailureOfTheFirstReadGivesNothing) {
    const std::string content = Numbered(100000);
    Delivery delivery;
    delivery.mFailingOffset = 0;
    AwkwardStream stream(content, delivery);
    MediaBytes bytes(stream, kReads, kBytes);
    EXPECT_FALSE(IsAt(bytes, content, 90000));
    EXPECT_TRUE(bytes.HasReadFailed());
}

TEST(MediaBytes, UnknownSizeIsReadAsFarAsItGoes) {
    const std::string content = Numbered(20000);
    AwkwardStream stream(content, UnknownSize());
    MediaBytes bytes(stream, kReads, kBytes);
    EXPECT_EQ(bytes.GetSize(), std::nullopt);
    EXPECT_EQ(bytes.GetEnd(), UINT64_MAX);
    std::size_t position = 0;
    const unsigned char* borrowed = nullptr;
    for (std::size_t count = bytes.Borrow(0, &borrowed); count != 0;
         count = bytes.Borrow(position, &borrowed)) {
        ASSERT_EQ(std::string(reinterpret_cast<const char*>(borrowed), count),
                  content.substr(position, count));
        position += count;
    }
    EXPECT_EQ(position, content.size());
    EXPECT_FALSE(bytes.HasReadFailed());
}

TEST(MediaBytes, EmptyMediaHasNoBytes) {
    for (const bool fSizeKnown : {true, false}) {
        Delivery delivery;
        delivery.mfSizeKnown = fSizeKnown;
        AwkwardStream stream("", delivery);
        MediaBytes bytes(stream, kReads, kBytes);
        const unsigned char* borrowed = nullptr;
        EXPECT_EQ(bytes.Borrow(0, &borrowed), 0U);
        EXPECT_FALSE(bytes.HasReadFailed());
    }
}

TEST(MediaBytes, MediaThatWasCutSinceItsSizeWasToldEndsThere) {
    const std::string content = Numbered(100000);
    for (const std::size_t left :
         {std::size_t{0}, std::size_t{1}, std::size_t{5000}, std::size_t{8192}, std::size_t{60000}}) {
        AwkwardStream stream(content);
        stream.SetContent(content.substr(0, left));
        MediaBytes bytes(stream, 1000, kBytes);
        EXPECT_EQ(bytes.GetSize(), content.size());
        for (std::size_t position = 0; position < content.size(); position += 997) {
            ASSERT_EQ(IsAt(bytes, content, position), position < left) << position << " of " << left;
        }
        EXPECT_FALSE(bytes.Load(99000, 1000));
    }
}

TEST(MediaBytes, TrickleGivesTheSameBytes) {
    const std::string content = Numbered(30000);
    Delivery delivery;
    delivery.mMaximumRead = 7;
    AwkwardStream stream(content, delivery);
    MediaBytes bytes(stream, 1000000, UINT64_MAX);
    for (std::size_t position = 0; position < content.size(); position += 11) {
        ASSERT_TRUE(IsAt(bytes, content, position)) << position;
    }
}
