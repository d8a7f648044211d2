#include "companions/ezFormats/ts/TSFilms.h"

#include <gtest/gtest.h>

using namespace ts;

namespace {

constexpr std::uint64_t kHour = 3600 * kSecond;

/// A second of pictures without sound, from a stamp on, in so many packets of nothing after each.
std::string Part(std::uint64_t aStart, std::size_t aNulls = 0, unsigned aPictures = 25) {
    Packets packets;
    packets.Table(0, Pat()).Table(kMap,
                                  Pmt({{0x02, kVideo}, {0x06, kOther, Descriptor(0x59, "deu\x10\1\1\1\1")}}));
    for (unsigned i = 0; i < aPictures; ++i) {
        const std::uint64_t stamp = aStart + i * kSecond / 25;
        packets.Add(kVideo, Pes(0xE0, stamp, Picture()), stamp + kClockEnd - 9000);
        packets.Null(aNulls);
    }
    return packets.Bytes();
}

} // namespace

TEST(TSLength, GoesFromTheFirstStampToTheEndOfTheLastPicture) {
    EXPECT_EQ(Length(Part(kSecond)), "1000 last frame");
    EXPECT_EQ(Length(Part(kSecond, 100)), "1000 last frame"); // of two windows
}

TEST(TSLength, ClockMayBeginAnew) {
    EXPECT_EQ(Length(Part(kClockEnd - kSecond / 2)), "1000 last frame");
    EXPECT_EQ(Length(Part(kClockEnd - kSecond / 2, 200)), "1000 last frame");
}

TEST(TSLength, StampsOfPicturesMayBeOutOfOrder) {
    Packets packets;
    packets.Table(0, Pat()).Table(kMap, Pmt(kStreams));
    for (const unsigned shown : {2U, 0U, 1U, 5U, 3U, 4U, 8U, 6U, 7U}) {
        packets.Add(kVideo, Pes(0xE0, kSecond + shown * 3600, Picture()), kSecond / 2 + shown);
    }
    EXPECT_EQ(Length(packets.Bytes()), "360 last frame");
}

TEST(TSLength, StampsOfSubtitlesDoNotCount) {
    Packets stray;
    stray.Add(kOther, Pes(0xBD, 9 * kHour, "a line"));
    EXPECT_EQ(Length(Part(kSecond) + stray.Bytes()), "1000 last frame");
}

TEST(TSLength, LongestTrackCountsAndTheLastPacketOfSoundWhole) {
    Film film;
    film.mPictures = 10;
    Packets more;
    more.Add(kSound, Pes(0xBD, film.mStart + kSecond, Frame() + Frame() + Frame()));
    EXPECT_EQ(Length(film.Bytes() + more.Bytes()), "1104 last frame"); // three frames of 34.8 ms
}

TEST(TSLength, WithoutStampsTheClockTellsAndASecondIsAdded) {
    Packets packets;
    packets.Table(0, Pat()).Table(kMap, Pmt(kStreams));
    for (unsigned i = 0; i < 10; ++i) {
        packets.Add(kVideo, Pes(0xE0, kNoStamp, Picture()), i * kSecond / 10);
    }
    EXPECT_EQ(Length(packets.Bytes()), "1900 estimate: by the program clock");
}

TEST(TSLength, ClockThatJumpedIsToldByHowFastItGoes) {
    // Two parts, of which the second was recorded hours later.
    const std::string jumped = Part(kSecond, 200) + Part(5 * kHour, 200);
    EXPECT_EQ(Values(jumped, {"md"}), "estimate: by the rate of the program clock");
    const std::string length = Values(jumped, {"dm"});
    EXPECT_GE(std::stoul(length), 2000U);
    EXPECT_LE(std::stoul(length), 2500U);
    // And one of which the second was recorded before.
    const std::string back = Values(Part(5 * kHour, 200) + Part(kSecond, 200), {"dm"});
    EXPECT_GE(std::stoul(back), 2000U);
    EXPECT_LE(std::stoul(back), 2500U);
}

TEST(TSLength, RoundsOfTheClockAreToldByTheSize) {
    // 30 hours at 25 packets a second, of which the ends are there.
    const std::string start = Part(kSecond, 20, 250);
    const std::uint64_t rate = start.size() / 10;
    const std::uint64_t size = rate * 30 * 3600 / kPacket * kPacket;
    const std::string end = Part((30 * kHour + kSecond - 10 * kSecond) % kClockEnd, 20, 250);
    SparseStream stream(size, {{0, start}, {size - end.size(), end}});
    TSParser parser;
    const Record record(parser.Parse(stream));
    ASSERT_NE(record, nullptr);
    const std::uint64_t milliseconds = record->GetUInt64("dm", 0).ToUInt64();
    EXPECT_EQ(milliseconds, 30U * 3600 * 1000);
    EXPECT_EQ(record->GetCString("md", ""), "last frame");
}

TEST(TSLength, SizeThatIsNotKnownTellsNone) {
    Delivery unknown;
    unknown.mfSizeKnown = false;
    EXPECT_EQ(Values(Part(kSecond), {"dm", "md", "wi"}, unknown), "- none: the end was not read 352");
}

TEST(TSLength, UsualFileTakesThreeReadsAndALateStampMore) {
    AwkwardStream::Costs costs;
    pictures::Parsed<TSParser>(Part(kSecond, 300), {}, &costs);
    EXPECT_EQ(costs.mReads, 3U);
    EXPECT_LE(costs.mBytes, 512U << 10);
    const std::string late = Part(kSecond, 2500, 4); // 470 KB from one stamp to the next
    EXPECT_EQ(Length(late), "160 last frame");
    pictures::Parsed<TSParser>(late, {}, &costs);
    EXPECT_LE(costs.mReads, 6U);
}
