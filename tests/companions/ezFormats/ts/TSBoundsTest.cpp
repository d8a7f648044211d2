#include "companions/ezFormats/ts/TSFilms.h"

#include <gtest/gtest.h>

using namespace ts;

// What is looked at of a stream, at the edge of each bound and one above.

TEST(TSBounds, PacketsBeginWithinTheFirstBytes) {
    const std::string film = Film().Bytes();
    EXPECT_EQ(Values(std::string(kTS_SearchSize - 1, 'x') + film, {"wi"}), "352");
    EXPECT_NE(Refusal(std::string(kTS_SearchSize, 'x') + film), "");
}

TEST(TSBounds, SoManyPacketsInARowAreAStream) {
    const std::string film = Film().Add(Packets()).Bytes(); // without tables
    const std::string rest(3000, 'x');
    EXPECT_EQ(Values(film.substr(0, kTS_SyncRun * kPacket) + rest, {"wi"}), "352");
    EXPECT_NE(Refusal(film.substr(0, (kTS_SyncRun - 1) * kPacket) + rest), "");
}

TEST(TSBounds, SoManyProgramsAreLookedAt) {
    const auto languageOfLast = [](std::size_t aCount) {
        Programs programs;
        for (unsigned i = 1; i < aCount; ++i) {
            programs.emplace_back(i, 0x1000 + i);
        }
        programs.emplace_back(0x8000, kMap);
        return Values(
            Film().Add(Packets().Table(0, Pat(programs)).Table(kMap, Pmt(kStreams, "", 0x8000))).Bytes(),
            {"np", "la"});
    };
    EXPECT_EQ(languageOfLast(kTS_MaxPrograms), "64 de");
    EXPECT_EQ(languageOfLast(kTS_MaxPrograms + 1), "64 -");
}

TEST(TSBounds, SoManyStreamsOfAProgramAreLookedAt) {
    const auto countOfSound = [](std::size_t aCount) {
        Film film;
        while (film.mStreams.size() < aCount) {
            film.mStreams.push_back({0x81, static_cast<unsigned>(0x200 + film.mStreams.size())});
        }
        return Values(film.Bytes(), {"ta"});
    };
    EXPECT_EQ(countOfSound(kTS_MaxStreams), "79"); // and one of pictures
    EXPECT_EQ(countOfSound(kTS_MaxStreams + 1), "79");
}

TEST(TSBounds, StampsOfSoManyStreamsAreKept) {
    const auto length = [](std::size_t aBefore) {
        Packets packets;
        packets.Table(0, Pat()).Table(kMap, Pmt({{0x02, kVideo}}));
        for (unsigned i = 0; i + 2 < aBefore; ++i) { // those of the tables count too
            packets.Add(0x200 + i, Pes(0xBD, kSecond, "x"));
        }
        for (unsigned i = 0; i < 4; ++i) {
            packets.Add(kVideo, Pes(0xE0, kSecond + i * 3600, Picture()));
        }
        return Length(packets.Bytes());
    };
    EXPECT_EQ(length(kTS_MaxStamped - 1), "160 last frame");
    EXPECT_EQ(length(kTS_MaxStamped), "- -");
}

TEST(TSBounds, EventsOfOtherProgramsTakeNoPlace) {
    Packets packets;
    packets.Table(0, Pat()).Table(kMap, Pmt(kStreams));
    for (unsigned i = 0; i < 30; ++i) {
        packets.Table(0x12, Eit(Event(Time(0xE45D, 0x200000), 0x010000, "Now"), 0, 100 + i));
        packets.Table(0x12, Eit(Event(Time(0xE45D, 0x210000), 0x010000, "Next"), 1, 100 + i));
    }
    packets.Table(0x12, Eit(Event(Time(0xE45D, 0x200000), 0x010000, "The Harbour")));
    EXPECT_EQ(Values(Film().Add(packets).Bytes(), {"title"}), "The Harbour");
}
