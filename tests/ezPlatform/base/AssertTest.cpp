#include "ezPlatform/base/Assert.h"

#include "ezPlatform/base/Log.h"
#include "support/Catchers.h"

#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <vector>

namespace {

struct Seen {
    std::string mExpression;
    std::string mSource;
    int mLine = 0;
    int mTimes = 0;

    static void sHandler(const char* anExpression, const char* aSource, int aLine, void* aUserData) {
        Seen& seen = *static_cast<Seen*>(aUserData);
        seen.mExpression = anExpression;
        seen.mSource = aSource;
        seen.mLine = aLine;
        ++seen.mTimes;
    }
};

} // namespace

TEST(Assert, AHandlerGetsExpressionSourceLineAndItsUserData) {
    const LogCatcher log;
    Seen seen;
    ezAssert_SetHandler(Seen::sHandler, &seen);
    _ezAssert("logged != NULL", "MediaParser", 321, "shown != NULL");
    ezAssert_SetHandler(nullptr, nullptr);
    EXPECT_EQ(seen.mExpression, "shown != NULL");
    EXPECT_EQ(seen.mSource, "MediaParser");
    EXPECT_EQ(seen.mLine, 321);
    EXPECT_EQ(seen.mTimes, 1);
}

TEST(Assert, IsLoggedAtErrorLevelWithExpressionSourceAndLine) {
    const LogCatcher log(2);
    const AssertCatcher assertions;
    _ezAssert("aSize != NULL", "MediaParserStream", 42, "shown");
    ASSERT_EQ(log.Lines().size(), 1U);
    EXPECT_EQ(log.Lines()[0].mLevel, EZLOGLEVEL_ERROR);
    EXPECT_EQ(log.Lines()[0].mModule, EZLOG_M_PARSERS);
    EXPECT_EQ(log.Lines()[0].mSource, "MediaParserStream");
    EXPECT_EQ(log.Lines()[0].mLine, 42);
    EXPECT_EQ(log.Lines()[0].mText, "Assertion failed: aSize != NULL, MediaParserStream, line 42\n");
}

TEST(Assert, IsNotLoggedBelowErrorLevelButStillHandled) {
    const LogCatcher log(EZLOGLEVEL_ERROR);
    const AssertCatcher assertions;
    _ezAssert("a", "Source", 1, "a");
    EXPECT_TRUE(log.Lines().empty());
    EXPECT_EQ(assertions.Failures(), std::vector<std::string>{"a @ Source"});
}

TEST(Assert, LogsBeforeTheHandlerRuns) {
    const LogCatcher log(2);
    static bool sfLogged = false;
    ezAssert_SetHandler(
        [](const char*, const char*, int, void* aUserData) {
            sfLogged = !static_cast<const LogCatcher*>(aUserData)->Lines().empty();
        },
        const_cast<LogCatcher*>(&log));
    _ezAssert("a", "Source", 1, "a");
    ezAssert_SetHandler(nullptr, nullptr);
    EXPECT_TRUE(sfLogged);
}

TEST(Assert, YieldsWhetherTheConditionHoldsAndEvaluatesItOnce) {
    const AssertCatcher assertions;
    int evaluated = 0;
    EXPECT_TRUE(ezAssert(++evaluated == 1, "++evaluated == 1", "AssertTest"));
    EXPECT_EQ(evaluated, 1);
    EXPECT_TRUE(assertions.Failures().empty());
    EXPECT_FALSE(ezAssert(++evaluated == 1, "++evaluated == 1", "AssertTest"));
    EXPECT_EQ(evaluated, 2);
    EXPECT_EQ(assertions.Failures(), AssertCatcher::Noted({"++evaluated == 1 @ AssertTest"}));
    const int* pointer = &evaluated;
    EXPECT_TRUE(ezAssert(pointer, "pointer", "AssertTest"));
    EXPECT_TRUE(ezAssert(4, "4", "AssertTest")) << "any condition, not only a bool";
}

TEST(Assert, ReportsItsTextAsItStandsAndTheLineOfTheCall) {
    const LogCatcher log;
    Seen seen;
    ezAssert_SetHandler(Seen::sHandler, &seen);
    const int* pointer = nullptr;
    const int line = __LINE__ + 1;
    const bool held = ezAssert(pointer != nullptr, "aPointer != NULL", "Elsewhere");
    ezAssert_SetHandler(nullptr, nullptr);
    EXPECT_FALSE(held);
#ifdef EZ_NO_ASSERTIONS
    EXPECT_EQ(seen.mTimes, 0);
    EXPECT_GT(line, 0);
    EXPECT_TRUE(log.Lines().empty());
#else
    EXPECT_EQ(seen.mTimes, 1);
    EXPECT_EQ(seen.mExpression, "aPointer != NULL");
    EXPECT_EQ(seen.mSource, "Elsewhere");
    EXPECT_EQ(seen.mLine, line);
    EXPECT_TRUE(
        log.Has("Assertion failed: aPointer != NULL, Elsewhere, line " + std::to_string(line) + "\n"));
#endif
}

TEST(AssertDeathTest, WithoutAHandlerTheProcessEndsNamingTheExpression) {
    EXPECT_EXIT(_ezAssert("aSize != NULL", "MediaParserStream", 42, "aSize != NULL"),
                testing::KilledBySignal(SIGABRT),
                "Assertion failed: aSize != NULL, MediaParserStream, line 42");
}

TEST(AssertDeathTest, NullBringsTheDefaultBack) {
    EXPECT_DEATH(
        {
            Seen seen;
            ezAssert_SetHandler(Seen::sHandler, &seen);
            ezAssert_SetHandler(nullptr, nullptr);
            _ezAssert("a == b", "Source", 1, "a == b");
        },
        "Assertion failed: a == b, Source, line 1");
}

TEST(AssertDeathTest, EndsTheProcessWhateverTheLogLevel) {
    EXPECT_EXIT(
        {
            _ezLog_Level = 0;
            _ezAssert("a == b", "Source", 1, "a == b");
        },
        testing::KilledBySignal(SIGABRT), "");
}

TEST(AssertDeathTest, TheMacroEndsTheProcessOnlyInABuildWithAssertions) {
#ifdef EZ_NO_ASSERTIONS
    EXPECT_FALSE(ezAssert(false, "never", "Source"));
#else
    EXPECT_DEATH(static_cast<void>(ezAssert(false, "never", "Source")),
                 "Assertion failed: never, Source, line");
#endif
}
