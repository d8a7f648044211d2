#include "ezBytes/DateText.h"

#include "support/Str.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

using namespace std::string_literals;

TEST(DateText, IsAsPreciseAsItIsStated) {
    const std::pair<std::string, const char*> table[] = {
        {"1999", "1999"},
        {"0001", "0001"},
        {"9999", "9999"},
        {"1999-12", "1999-12"},
        {"1999-12-31", "1999-12-31"},
        {"19991231", "1999-12-31"},
        {"1999/12/31", "1999-12-31"},
        {"1999.12.31", "1999-12-31"},
        {"1999:12:31 23:59:58", "1999-12-31T23:59:58"},
        {"1999-12-31T23:59:58", "1999-12-31T23:59:58"},
        {"1999-12-31T23:59:58Z", "1999-12-31T23:59:58Z"},
        {"1999-12-31t23:59:58.123456z", "1999-12-31T23:59:58Z"},
        {"1999-12-31T23:59:58+02:00", "1999-12-31T23:59:58+02:00"},
        {"1999-12-31T23:59:58,5-0930", "1999-12-31T23:59:58-09:30"},
        {"1999-12-31T23:59", "1999-12-31T23:59:00"},
        {"1999-12-31T23:59Z", "1999-12-31T23:59:00Z"},
        {"1999-12-31T23", "1999-12-31"},
        {" 1999 ", "1999"},
        {"1999\0"s, "1999"},
        {"2000-02-29", "2000-02-29"},
        {"2024-02-29", "2024-02-29"},
        {"1999-00-00", "1999"},
        {"1999-12-00", "1999-12"},
        {"19990000", "1999"},
    };
    for (const auto& [text, date] : table) {
        EXPECT_EQ(Str(CleanDate(text)), date) << text;
    }
}

TEST(DateText, WhatIsNoDateIsNone) {
    for (const char* text : {"",
                             " ",
                             "/",
                             "-",
                             "199",
                             "99",
                             "0000",
                             "0000:00:00 00:00:00",
                             "    :  :     :  :  ",
                             "2024-13-45",
                             "2024-13",
                             "2024-00-01",
                             "2024-04-31",
                             "2023-02-29",
                             "1900-02-29",
                             "2024-1-1",
                             "20241",
                             "2024010",
                             "202401011",
                             "2024-01:01",
                             "2024-",
                             "2024-01-",
                             "-2024",
                             "+2024",
                             "199x",
                             "1999x",
                             "1999-12-31x",
                             "99999999999",
                             "19 99",
                             "\xFF\xFE",
                             "Summer of 1999"}) {
        EXPECT_EQ(Str(CleanDate(text)), "") << text;
    }
}

TEST(DateText, OfATimeThatIsNoneTheDayIsLeft) {
    for (const char* time :
         {"T24:00:00", "T23:60:00", "T23:59:60", "T23:59:5", "T2359", "T", " ", " evening", "T23:59:58+15:00",
          "T23:59:58+02:60", "T23:59:58+2", "T23:59:58X", "T23:59:58Z0", "T-1:00:00",
          " 23:59:58 "
          "pm"}) {
        EXPECT_EQ(Str(CleanDate(std::string("1999-12-31") + time)), "1999-12-31") << time;
    }
    EXPECT_EQ(Str(CleanDate("1999 remastered")), "1999");
    EXPECT_EQ(Str(CleanDate("1999-12 01:02:03")), "1999-12") << "no time of a month";
}

TEST(DateText, OfAnyLengthIsReadInOnePass) {
    EXPECT_EQ(Str(CleanDate(std::string(1 << 20, '1'))), "");
    EXPECT_EQ(Str(CleanDate("1999-12-31T23:59:58." + std::string(1 << 20, '1'))), "1999-12-31T23:59:58");
}

TEST(DateText, OfASecondIsTheDayOfTheCalendar) {
    const std::pair<std::int64_t, const char*> table[] = {
        {0, "1970-01-01T00:00:00Z"},
        {-1, "1969-12-31T23:59:59Z"},
        {951782399, "2000-02-28T23:59:59Z"},
        {951782400, "2000-02-29T00:00:00Z"},
        {951868800, "2000-03-01T00:00:00Z"},
        {978307200, "2001-01-01T00:00:00Z"},
        {4107542400, "2100-03-01T00:00:00Z"}, // of a year without a leap day
        {4107542399, "2100-02-28T23:59:59Z"},
        {-62135596800, "0001-01-01T00:00:00Z"},
        {-62135596801, ""},
        {253402300799, "9999-12-31T23:59:59Z"},
        {253402300800, ""},
        {INT64_MIN, ""},
        {INT64_MAX, ""},
    };
    for (const auto& [seconds, date] : table) {
        EXPECT_EQ(Str(UTCDateText(seconds)), date) << seconds;
    }
}
