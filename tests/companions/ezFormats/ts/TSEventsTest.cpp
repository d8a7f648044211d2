#include "ezFormats/ts/TSEvents.h"

#include "companions/ezFormats/ts/TSFilms.h"

#include <gtest/gtest.h>

using namespace ts;
using namespace std::string_literals;

namespace {

constexpr unsigned kEvents = 0x12;
constexpr unsigned kTime = 0x14;
constexpr unsigned kDay = 58849; ///< 2020-01-01

/// A recording whose tables hold these, each with its PID.
std::string With(const std::vector<std::pair<unsigned, std::string>>& aTables, unsigned aPictures = 8) {
    Packets packets;
    packets.Table(0, Pat()).Table(kMap, Pmt(kStreams));
    for (const auto& table : aTables) {
        packets.Table(table.first, table.second);
    }
    Film film;
    film.mPictures = aPictures;
    return film.Add(packets).Bytes();
}
std::string Told(const std::vector<std::pair<unsigned, std::string>>& aTables) {
    return Values(With(aTables), {"title", "da"});
}
std::string TimeTable(const std::string& aTime) {
    const std::string rest = aTime + Big(0xF000, 2);
    const std::string section = Big(0x73, 1) + Big(0x7000U | (rest.size() + 4), 2) + rest;
    return section + Big(CheckSum(section), 4);
}

} // namespace

TEST(TSEvents, TitleAndDateAreThoseOfTheEvent) {
    EXPECT_EQ(Told({{kEvents, Eit(Event(Time(kDay, 0x201500), 0x013000, "A Film"))}}),
              "A Film 2020-01-01T20:15:00Z");
    EXPECT_EQ(Told({{kTime, TimeTable(Time(kDay, 0x201412))}}), "- 2020-01-01T20:14:12Z");
    EXPECT_EQ(Told({{kEvents, Eit(Event(Time(0xFFFF, 0xFFFFFF), 0, "A Film"))}}), "A Film -");
    EXPECT_EQ(Told({{kEvents, Eit(Event(Time(kDay, 0x206100), 0, "A Film"))}}), "A Film -"); // 61 minutes
    EXPECT_EQ(Told({{kEvents, Eit(Event(Time(kDay, 0x201500), 0, "A Film"), 0, 2)}}),
              "- -"); // another program
    EXPECT_EQ(Told({}), "- -");
}

TEST(TSEvents, EventThatMostOfTheRecordingIsOfCounts) {
    const std::string before = Eit(Event(Time(kDay, 0x190000), 0x011500, "Before"), 0);
    const std::string after = Eit(Event(Time(kDay, 0x201500), 0x013000, "The Film"), 1);
    EXPECT_EQ(Told({{kEvents, before}, {kEvents, after}, {kTime, TimeTable(Time(kDay, 0x201500))}}),
              "The Film 2020-01-01T20:15:00Z");
    EXPECT_EQ(Told({{kEvents, before}, {kEvents, after}}),
              "Before 2020-01-01T19:00:00Z"); // when it began is not known
}

TEST(TSEvents, BroadcastsOfJapanAreNotRead) {
    EXPECT_EQ(Told({{kEvents, Eit(Event(Time(kDay, 0x201500), 0, "\x45\x37"), 0, 1, 0x7FE0)}}), "- -");
}

TEST(TSEvents, TextIsCodedAsItsFirstBytesSay) {
    const auto text = [](const std::string& aBytes) { return std::string(ReadTSText(aBytes).c_str()); };
    EXPECT_EQ(text("Plain"), "Plain");
    EXPECT_EQ(text("K\xC8oln \xA4"s), "K\xC3\xB6ln \xE2\x82\xAC"); // ISO 6937
    EXPECT_EQ(text("\x05K\xF6ln"s), "K\xC3\xB6ln");                // ISO 8859-9
    EXPECT_EQ(text("\x01\xC4\xD0"s), "\xD0\xA4\xD0\xB0");          // ISO 8859-5
    EXPECT_EQ(text("\x10\0\x02\xB1"s), "\xC4\x85");                // ISO 8859-2
    EXPECT_EQ(text("\x10\0\x0C x"s), "");                          // no such part
    EXPECT_EQ(text("\x11\x04\x10"s), "\xD0\x90");                  // UCS-2
    EXPECT_EQ(text("\x15K\xC3\xB6ln\xC2\x8A."s), "K\xC3\xB6ln ."); // UTF-8, a line end
    EXPECT_EQ(text("\x05\x86Loud\x87\x8A!"s), "Loud !");           // emphasis, a line end
    EXPECT_EQ(text("\x1F\x01zzz"s), "");                           // compressed
    EXPECT_EQ(text(""), "");
    EXPECT_EQ(text("\x15"), "");
}

TEST(TSEvents, TimeIsThatOfTheCalendar) {
    EXPECT_EQ(TSTimeText(1), "1970-01-01T00:00:01Z");
    EXPECT_EQ(TSTimeText(951825599), "2000-02-29T11:59:59Z");
    EXPECT_EQ(TSTimeText(1577909700), "2020-01-01T20:15:00Z");
    EXPECT_EQ(TSTimeText(1609459199), "2020-12-31T23:59:59Z");
    EXPECT_EQ(TSTimeText(0), "");
}
