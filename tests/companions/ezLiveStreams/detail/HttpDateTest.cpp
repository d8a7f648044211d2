#include "ezLiveStreams/FeedStream.h"

#ifdef EZ_HAS_HTTP_STREAM
#include "ezLiveStreams/detail/HttpDate.h"

#include <gtest/gtest.h>

TEST(HttpDate, IsReadInItsThreeForms) {
    EXPECT_EQ(ezReadHttpDate("Sun, 06 Nov 1994 08:49:37 GMT"), 784111777);
    EXPECT_EQ(ezReadHttpDate("Sunday, 06-Nov-94 08:49:37 GMT"), 784111777);
    EXPECT_EQ(ezReadHttpDate("Sun Nov  6 08:49:37 1994"), 784111777);
}

TEST(HttpDate, ReachesBeyondTheSecondsThatFit32Bits) {
    EXPECT_EQ(ezReadHttpDate("Thu, 01 Jan 1970 00:00:00 GMT"), 0);
    EXPECT_EQ(ezReadHttpDate("Tue, 19 Jan 2038 03:14:08 GMT"), std::int64_t{1} << 31);
    EXPECT_EQ(ezReadHttpDate("Fri, 31 Dec 9999 23:59:59 GMT"), 253402300799);
}

TEST(HttpDate, KnowsLeapYears) {
    EXPECT_EQ(ezReadHttpDate("Tue, 29 Feb 2000 12:34:56 GMT"), 951827696);
    EXPECT_EQ(ezReadHttpDate("Wed, 01 Mar 2000 00:00:00 GMT"), 951868800);
    EXPECT_EQ(ezReadHttpDate("Thu, 29 Feb 2024 00:00:00 GMT"), 1709164800);
    EXPECT_EQ(ezReadHttpDate("Thu, 29 Feb 2023 00:00:00 GMT"), std::nullopt);
    EXPECT_EQ(ezReadHttpDate("Mon, 29 Feb 2100 00:00:00 GMT"), std::nullopt);
    EXPECT_EQ(ezReadHttpDate("Mon, 01 Mar 2100 00:00:00 GMT"), 4107542400);
}

TEST(HttpDate, OfAYearOfTwoDigitsLiesFrom1970To2069) {
    EXPECT_EQ(ezReadHttpDate("Thursday, 01-Jan-70 00:00:00 GMT"), 0);
    EXPECT_EQ(ezReadHttpDate("Tuesday, 31-Dec-69 23:59:59 GMT"), 3155759999);
    EXPECT_EQ(ezReadHttpDate("Saturday, 01-Jan-00 00:00:00 GMT"), 946684800);
}

TEST(HttpDate, ALeapSecondIsTheNextOne) {
    EXPECT_EQ(ezReadHttpDate("Sat, 31 Dec 2016 23:59:60 GMT"), 1483228800);
}

TEST(HttpDate, WhatIsNoneIsNone) {
    for (const char* text : {"",
                             "once",
                             "Sun, 06 Nov 1994 08:49:37",
                             "Sun, 06 Nov 1994 08:49:37 EST",
                             "Sun, 06 Nov 1994 08:49:37 GMT GMT",
                             "Sun, 00 Nov 1994 08:49:37 GMT",
                             "Sun, 31 Nov 1994 08:49:37 GMT",
                             "Sun, 06 nov 1994 08:49:37 GMT",
                             "Sun, 06 Nov 994 08:49:37 GMT",
                             "Sun, 06 Nov 1969 08:49:37 GMT",
                             "Sun, 06 Nov 19940 08:49:37 GMT",
                             "Sun, 06 Nov 1994 24:49:37 GMT",
                             "Sun, 06 Nov 1994 08:60:37 GMT",
                             "Sun, 06 Nov 1994 08:49:61 GMT",
                             "Sun, 06 Nov 1994 0x:49:37 GMT",
                             "Sun, x6-Nov-94 08:49:37 GMT",
                             "Sun, 06-Nov-9x 08:49:37 GMT",
                             "Sun, 06 Nov 1994 00000:49:37 GMT",
                             "a b c d e f g",
                             "a b c d e f g GMT"}) {
        EXPECT_EQ(ezReadHttpDate(text), std::nullopt) << text;
    }
}
#endif
