#include "ezPlatform/base/DateTime.h"

#include <gtest/gtest.h>

TEST(DateTime, IsNotSetUntilItIsMadeOfATime) {
    const ezDateTime none;
    EXPECT_FALSE(none.IsSet());
    EXPECT_EQ(none.GetUnixTime(), 0);
    EXPECT_EQ(none.GetNanoseconds(), 0);
    const ezDateTime epoch(0, 0);
    EXPECT_TRUE(epoch.IsSet());
    EXPECT_TRUE(none != epoch) << "1970 is a time, not the absence of one";
    EXPECT_TRUE(none == ezDateTime());
}

TEST(DateTime, HoldsSecondsBefore1970AndAfter2038AndNanoseconds) {
    const ezDateTime early(-2208988800, 1);
    EXPECT_EQ(early.GetUnixTime(), -2208988800);
    EXPECT_EQ(early.GetNanoseconds(), 1);
    const ezDateTime late(253402300799, 999999999);
    EXPECT_EQ(late.GetUnixTime(), 253402300799);
    EXPECT_EQ(late.GetNanoseconds(), 999999999);
    EXPECT_TRUE(late == ezDateTime(253402300799, 999999999));
    EXPECT_FALSE(late != ezDateTime(253402300799, 999999999));
    EXPECT_TRUE(late != ezDateTime(253402300799, 999999998));
    EXPECT_TRUE(late != ezDateTime(253402300798, 999999999));
}
