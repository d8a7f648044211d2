#include "ezPlatform/base/LogDuration.h"

#include "ezPlatform/base/Log.h"
#include "support/Catchers.h"

#include <gtest/gtest.h>

#include <chrono>
#include <regex>
#include <string>
#include <thread>

namespace {

double Milliseconds(const std::string& aText, const std::string& aBefore, const std::string& anAfter) {
    std::smatch match;
    const std::regex form(aBefore + R"( \((\d+\.\d{3}) ms\))" + anAfter);
    return std::regex_match(aText, match, form) ? std::stod(match[1]) : -1;
}

TEST(LogDuration, TheTextComesWithTheTimeSpentWhenTheRecordGoes) {
    const LogCatcher log;
    {
        const ezLogDuration duration(EZLOGLEVEL_DEBUG, EZLOG_M_THUMBNAIL, kezLogDuration_Duration,
                                     "Made '%s' in %d\n", "a", 7);
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        EXPECT_TRUE(log.Lines().empty());
    }
    ASSERT_EQ(log.Lines().size(), 1U);
    EXPECT_EQ(log.Lines()[0].mLevel, EZLOGLEVEL_DEBUG);
    EXPECT_EQ(log.Lines()[0].mModule, EZLOG_M_THUMBNAIL);
    const double spent = Milliseconds(log.Texts()[0], "Made 'a' in 7", "\n");
    EXPECT_GE(spent, 20) << log.Texts()[0];
    EXPECT_LT(spent, 60000) << log.Texts()[0];
}

TEST(LogDuration, TextsWithoutALineEndAndEmptyOnesAreWrittenToo) {
    const LogCatcher log;
    { const ezLogDuration duration(EZLOGLEVEL_INFO, EZLOG_M_PARSERS, kezLogDuration_Duration, "x"); }
    { const ezLogDuration duration(EZLOGLEVEL_INFO, EZLOG_M_PARSERS, kezLogDuration_Duration, "%s", ""); }
    { const ezLogDuration duration(EZLOGLEVEL_INFO, EZLOG_M_PARSERS, kezLogDuration_Duration, "%d%%\n", 5); }
    ASSERT_EQ(log.Lines().size(), 3U);
    EXPECT_GE(Milliseconds(log.Texts()[0], "x", ""), 0) << log.Texts()[0];
    EXPECT_GE(Milliseconds(log.Texts()[1], "", ""), 0) << log.Texts()[1];
    EXPECT_GE(Milliseconds(log.Texts()[2], "5%", "\n"), 0) << log.Texts()[2];
}

TEST(LogDuration, TheLevelAtItsConstructionDecides) {
    const LogCatcher log(EZLOGLEVEL_DEBUG); // which debug is not below
    {
        const ezLogDuration duration(EZLOGLEVEL_DEBUG, EZLOG_M_PARSERS, kezLogDuration_Duration, "dropped\n");
        _ezLog_Level = 5;
    }
    EXPECT_TRUE(log.Lines().empty());
    {
        const ezLogDuration duration(EZLOGLEVEL_DEBUG, EZLOG_M_PARSERS, kezLogDuration_Duration, "kept\n");
        _ezLog_Level = 1;
    }
    EXPECT_EQ(log.Lines().size(), 1U);
}

} // namespace
