#include "support/AwkwardStream.h"

#include "support/Str.h"

#include <gtest/gtest.h>

#include <string>

namespace {

/// Opens the source's own operations to the tests.
class Source : public AwkwardStream {
public:
    using AwkwardStream::AwkwardStream;
    using AwkwardStream::MediaSeek;

    std::string Take(std::size_t aSize) {
        std::string buffer(aSize + 4, '#');
        const ezFileOffset count = MediaRead(&buffer[0], aSize);
        if (count < 0) {
            return "<error>";
        }
        EXPECT_EQ(buffer.substr(static_cast<std::size_t>(count)),
                  std::string(buffer.size() - static_cast<std::size_t>(count), '#'));
        return buffer.substr(0, static_cast<std::size_t>(count));
    }
};

const char* const kDigits = "0123456789";

Delivery Trickle(std::size_t aMaximumRead) {
    Delivery delivery;
    delivery.mMaximumRead = aMaximumRead;
    return delivery;
}

Delivery FailingAt(std::size_t anOffset) {
    Delivery delivery;
    delivery.mFailingOffset = anOffset;
    return delivery;
}

} // namespace

TEST(AwkwardStream, DeliversTheWholeContentUnlessToldOtherwise) {
    Source source(kDigits);
    EXPECT_EQ(source.GetMediaSize().ToUInt64(), 10U);
    EXPECT_EQ(source.Take(4), "0123");
    EXPECT_EQ(source.GetSourcePosition(), 4U);
    EXPECT_EQ(source.Take(100), "456789");
    EXPECT_EQ(source.Take(100), "");
    EXPECT_EQ(source.Take(0), "");
    EXPECT_EQ(source.GetSourcePosition(), 10U);
}

TEST(AwkwardStream, TakesItsExtensionFromItsPath) {
    const Source plain(kDigits);
    EXPECT_EQ(Str(plain.GetFullPath()), "/media/awkward.bin");
    EXPECT_EQ(Str(plain.GetExtension()), "bin");
    const Source named(kDigits, Delivery(), "/media/Film.MPG");
    EXPECT_EQ(Str(named.GetFullPath()), "/media/Film.MPG");
    EXPECT_EQ(Str(named.GetExtension()), "mpg");
}

TEST(AwkwardStream, ATrickleGivesAtMostSoMuchARead) {
    Source source(kDigits, Trickle(3));
    EXPECT_EQ(source.Take(10), "012");
    EXPECT_EQ(source.Take(2), "34");
    EXPECT_EQ(source.Take(10), "567");
    EXPECT_EQ(source.Take(10), "89");
    EXPECT_EQ(source.Take(10), "");
    Source single(kDigits, Trickle(1));
    EXPECT_EQ(single.Take(10), "0");
}

TEST(AwkwardStream, FailsOnceWhereAReadWouldTouchTheOffset) {
    Source source(kDigits, FailingAt(5));
    EXPECT_EQ(source.Take(5), "01234") << "up to the offset";
    EXPECT_EQ(source.Take(1), "<error>");
    EXPECT_EQ(source.GetSourcePosition(), 5U);
    EXPECT_EQ(source.Take(1), "5") << "only once";
    Source across(kDigits, FailingAt(5));
    EXPECT_EQ(across.Take(6), "<error>");
    EXPECT_EQ(across.GetSourcePosition(), 0U);
    EXPECT_EQ(across.Take(6), "012345");
    Source first(kDigits, FailingAt(0));
    EXPECT_EQ(first.Take(1), "<error>");
    Source last(kDigits, FailingAt(9));
    EXPECT_EQ(last.Take(100), "<error>");
}

TEST(AwkwardStream, AReadThatDoesNotTouchTheOffsetDoesNotFail) {
    Source behind(kDigits, FailingAt(2));
    ASSERT_TRUE(behind.MediaSeek(3, false));
    EXPECT_EQ(behind.Take(100), "3456789");
    Source atTheEnd(kDigits, FailingAt(10));
    EXPECT_EQ(atTheEnd.Take(100), kDigits) << "there is no byte at the end";
    Source none(kDigits);
    EXPECT_EQ(none.Take(100), kDigits);
}

TEST(AwkwardStream, AnUnknownSizeIs0) {
    Delivery delivery;
    delivery.mfSizeKnown = false;
    Source source(kDigits, delivery);
    EXPECT_EQ(source.GetMediaSize().ToUInt64(), 0U);
    EXPECT_EQ(source.Take(100), kDigits);
}

TEST(AwkwardStream, MovesUpToItsEnd) {
    Source source(kDigits);
    EXPECT_TRUE(source.MediaSeek(7, false));
    EXPECT_EQ(source.Take(2), "78");
    EXPECT_TRUE(source.MediaSeek(0, true));
    EXPECT_EQ(source.Take(2), "01");
    EXPECT_TRUE(source.MediaSeek(10, false));
    EXPECT_EQ(source.Take(2), "");
    EXPECT_FALSE(source.MediaSeek(11, false));
    EXPECT_FALSE(source.MediaSeek(UINT64_MAX, false));
    EXPECT_EQ(source.GetSourcePosition(), 10U) << "a refused seek moves nothing";
}

TEST(AwkwardStream, ASourceThatCannotMoveSeeksOnlyToWhereItStands) {
    Delivery delivery;
    delivery.mfSeekable = false;
    Source source(kDigits, delivery);
    EXPECT_TRUE(source.MediaSeek(0, false));
    EXPECT_FALSE(source.MediaSeek(1, false));
    EXPECT_EQ(source.Take(3), "012");
    EXPECT_TRUE(source.MediaSeek(3, true));
    EXPECT_FALSE(source.MediaSeek(0, false));
    EXPECT_EQ(source.Take(3), "345");
}

TEST(AwkwardStream, CountsWhatItCosts) {
    Source source(kDigits, FailingAt(4));
    source.Take(3);
    source.Take(3);
    source.Take(3);
    source.Take(100);
    source.Take(100);
    source.MediaSeek(1, false);
    source.MediaSeek(2, true);
    source.MediaSeek(99, true);
    EXPECT_EQ(source.GetCosts().mReads, 5U) << "the failed one and the one at the end included";
    EXPECT_EQ(source.GetCosts().mBytes, 10U);
    EXPECT_EQ(source.GetCosts().mSeeks, 3U);
    EXPECT_EQ(source.GetCosts().mImmediateSeeks, 2U);
    source.ResetCosts();
    EXPECT_EQ(source.GetCosts().mReads, 0U);
    EXPECT_EQ(source.GetCosts().mBytes, 0U);
    EXPECT_EQ(source.GetCosts().mSeeks, 0U);
    EXPECT_EQ(source.GetCosts().mImmediateSeeks, 0U);
}

TEST(AwkwardStream, ItsBytesCanBeExchangedBehindTheStreamsBack) {
    Source source(kDigits);
    EXPECT_EQ(source.Take(2), "01");
    source.SetContent("abcd");
    EXPECT_EQ(source.Take(100), "cd");
    EXPECT_EQ(source.GetMediaSize().ToUInt64(), 10U);
    source.SetContent("");
    EXPECT_EQ(source.Take(100), "") << "shorter than where the source stands";
}

TEST(AwkwardStream, ReadsThroughTheStreamAreReadsOfTheSource) {
    AwkwardStream stream(std::string(9000, 'x'), Delivery());
    char buffer[16];
    EXPECT_TRUE(stream.Read(std::size_t{16}, buffer));
    EXPECT_EQ(stream.GetCosts().mReads, 1U);
    EXPECT_EQ(stream.GetCosts().mBytes, 8192U) << "the first read fills the stream's buffer";
}
