#include "ezPlatform/base/Error.h"

#include <gtest/gtest.h>

TEST(Error, IsNoErrorWhenMadeOfNothing) {
    const ezError error;
    EXPECT_FALSE(error.IsError());
    EXPECT_EQ(error.GetCode(), 0);
    ASSERT_NE(error.ToString(), nullptr);
    EXPECT_STREQ(error.ToString(), "");
}

TEST(Error, CarriesItsCodeAndMessage) {
    const ezError error(-3, "Unable to open: 'a'");
    EXPECT_TRUE(error.IsError());
    EXPECT_EQ(error.GetCode(), -3);
    EXPECT_STREQ(error.ToString(), "Unable to open: 'a'");
}

TEST(Error, TheCodeAloneTellsWhetherItIsOne) {
    EXPECT_TRUE(ezError(1, "").IsError());
    EXPECT_TRUE(ezError(-1, "").IsError());
    EXPECT_FALSE(ezError(0, "all is well").IsError());
}

TEST(Error, ACopyKeepsItsOwnMessage) {
    ezError error(-1, "first");
    const ezError copy = error;
    error = ezError();
    EXPECT_FALSE(error.IsError());
    EXPECT_STREQ(error.ToString(), "");
    EXPECT_EQ(copy.GetCode(), -1);
    EXPECT_STREQ(copy.ToString(), "first");
}
