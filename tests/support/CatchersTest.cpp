#include "support/Catchers.h"

#include "ezPlatform/base/Assert.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

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

TEST(LogCatcher, KeepsTheOrderAndEverythingThatALineCarries) {
    LogCatcher log(4);
    ezLog_F(EZLOGLEVEL_DEBUG, "dropped\n");
    ezLog_F(EZLOGLEVEL_INFO, "first\n");
    ezLog_BeginAt(EZLOGLEVEL_WARNING, EZLOG_M_THUMBNAIL, "Source", 12);
    ezLog_Append_F("second\n");
    ezLog_End();
    EXPECT_EQ(log.Texts(), (std::vector<std::string>{"first\n", "second\n"}));
    EXPECT_EQ(log.Lines()[0].mSource, "");
    EXPECT_EQ(log.Lines()[1].mLevel, EZLOGLEVEL_WARNING);
    EXPECT_EQ(log.Lines()[1].mModule, EZLOG_M_THUMBNAIL);
    EXPECT_EQ(log.Lines()[1].mSource, "Source");
    EXPECT_EQ(log.Lines()[1].mLine, 12);
    log.Clear();
    EXPECT_TRUE(log.Lines().empty());
    EXPECT_FALSE(log.Has("first\n"));
}

TEST(LogCatcher, BringsStandardErrorBack) {
    { const LogCatcher log; }
    testing::internal::CaptureStderr();
    ezLog_F(EZLOGLEVEL_ERROR, "back\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "back\n");
}

TEST(AssertCatcher, LetsAFailedAssertionReturnAndNotesIt) {
    const LogCatcher log;
    const AssertCatcher assertions;
    EXPECT_FALSE(ezAssert(1 + 1 == 3, "1 + 1 == 3", "Arithmetic"));
    EXPECT_FALSE(ezAssert(1 + 1 == 4, "1 + 1 == 4", "Arithmetic"));
    EXPECT_EQ(assertions.Failures(),
              AssertCatcher::Noted({"1 + 1 == 3 @ Arithmetic", "1 + 1 == 4 @ Arithmetic"}));
}

TEST(AssertCatcher, NotesFailuresInABuildWithAssertionsOnly) {
#ifdef EZ_NO_ASSERTIONS
    EXPECT_EQ(AssertCatcher::Noted({"a @ B"}), std::vector<std::string>());
#else
    EXPECT_EQ(AssertCatcher::Noted({"a @ B"}), std::vector<std::string>{"a @ B"});
#endif
}
