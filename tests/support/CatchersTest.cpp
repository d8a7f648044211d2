#include "support/Catchers.h"

#include "ezPlatform/base/Assert.h"

#include <gtest/gtest.h>

TEST(LogCatcher, CatchesLinesOfItsLifetimeAndPutsTheLevelBack) {
    const int before = _ezLog_Level;
    {
        LogCatcher log;
        ezLog_F(EZLOGLEVEL_DEBUG, "one %d\n", 1);
        ASSERT_EQ(log.Lines().size(), 1U);
        EXPECT_EQ(log.Lines()[0].mLevel, EZLOGLEVEL_DEBUG);
        EXPECT_EQ(log.Lines()[0].mModule, EZLOG_M_PARSERS);
        EXPECT_TRUE(log.Has("one 1\n"));
        EXPECT_FALSE(log.Has("one"));
    }
    EXPECT_EQ(_ezLog_Level, before);
}

TEST(AssertCatcher, LetsAFailedAssertionReturnAndNotesIt) {
    AssertCatcher assertions;
    EXPECT_FALSE(ezAssert(1 + 1 == 3, "1 + 1 == 3", "Arithmetic"));
    ASSERT_EQ(assertions.Failures().size(), 1U);
    EXPECT_EQ(assertions.Failures()[0], "1 + 1 == 3 @ Arithmetic");
}
