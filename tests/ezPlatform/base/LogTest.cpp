#include "ezPlatform/base/Log.h"

#include "support/Catchers.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace {

/// Puts the level back that a test changes.
class KeptLevel {
public:
    explicit KeptLevel(int aLevel) : mBefore(_ezLog_Level) { _ezLog_Level = aLevel; }
    ~KeptLevel() { _ezLog_Level = mBefore; }
    KeptLevel(const KeptLevel&) = delete;
    KeptLevel& operator=(const KeptLevel&) = delete;

private:
    int mBefore;
};

void LogAtEveryLevel() {
    ezLog_F(EZLOGLEVEL_ERROR, "error\n");
    ezLog_F(EZLOGLEVEL_WARNING, "warning\n");
    ezLog_F(EZLOGLEVEL_INFO, "info\n");
    ezLog_F(EZLOGLEVEL_DEBUG, "debug\n");
}

} // namespace

TEST(Log, LevelsAndModulesHaveTheirNumbers) {
    EXPECT_EQ(EZLOGLEVEL_ERROR, 1);
    EXPECT_EQ(EZLOGLEVEL_WARNING, 2);
    EXPECT_EQ(EZLOGLEVEL_INFO, 3);
    EXPECT_EQ(EZLOGLEVEL_DEBUG, 4);
    EXPECT_EQ(EZLOG_M_PARSERS, 10);
    EXPECT_EQ(EZLOG_M_THUMBNAIL, 37);
}

TEST(Log, TheLevelIs2UntilAHostSetsAnother) {
    EXPECT_EQ(_ezLog_Level, 2);
}

TEST(Log, ALineIsWrittenWhenTheLevelIsAboveItsOwn) {
    const std::vector<std::string> all = {"error\n", "warning\n", "info\n", "debug\n"};
    for (int level = 0; level <= 6; ++level) {
        const LogCatcher log(level);
        LogAtEveryLevel();
        const std::size_t expected =
            level == 0 ? 0 : std::min<std::size_t>(static_cast<std::size_t>(level) - 1, 4);
        EXPECT_EQ(log.Texts(),
                  std::vector<std::string>(all.begin(), all.begin() + static_cast<long>(expected)))
            << "level " << level;
    }
}

TEST(Log, TheDefaultLevelLetsErrorsThroughOnly) {
    const LogCatcher log(2);
    LogAtEveryLevel();
    EXPECT_EQ(log.Texts(), std::vector<std::string>{"error\n"});
}

TEST(Log, ArgumentsOfADroppedLineAreNotEvaluated) {
    const LogCatcher log(EZLOGLEVEL_DEBUG);
    int evaluated = 0;
    const auto argument = [&evaluated] { return ++evaluated; };
    ezLog_F(EZLOGLEVEL_DEBUG, "%d\n", argument());
    EXPECT_EQ(evaluated, 0);
    EXPECT_TRUE(log.Lines().empty());
    ezLog_F(EZLOGLEVEL_INFO, "%d\n", argument());
    EXPECT_EQ(evaluated, 1);
    EXPECT_TRUE(log.Has("1\n"));
}

TEST(Log, TheMacroIsOneStatement) {
    const LogCatcher log;
    if (log.Lines().empty())
        ezLog_F(EZLOGLEVEL_INFO, "then\n");
    else
        ezLog_F(EZLOGLEVEL_INFO, "else\n");
    EXPECT_EQ(log.Texts(), std::vector<std::string>{"then\n"});
}

TEST(Log, ALineCarriesItsLevelAndModuleAndTheWholeText) {
    const LogCatcher log;
    ezLog_F(EZLOGLEVEL_WARNING, "%s has %lu of %08lX%c\n", "file", 3UL, 0xABCUL, '!');
    ezLog_Begin(EZLOGLEVEL_INFO, EZLOG_M_THUMBNAIL);
    ezLog_Append_F("a%d", 1);
    ezLog_Append_F(" %s", "");
    ezLog_Append_F("b\n");
    ezLog_End();
    ASSERT_EQ(log.Lines().size(), 2U);
    EXPECT_EQ(log.Lines()[0].mLevel, EZLOGLEVEL_WARNING);
    EXPECT_EQ(log.Lines()[0].mModule, EZLOG_M_PARSERS);
    EXPECT_EQ(log.Lines()[0].mSource, "");
    EXPECT_EQ(log.Lines()[0].mLine, 0);
    EXPECT_EQ(log.Lines()[0].mText, "file has 3 of 00000ABC!\n");
    EXPECT_EQ(log.Lines()[1].mLevel, EZLOGLEVEL_INFO);
    EXPECT_EQ(log.Lines()[1].mModule, EZLOG_M_THUMBNAIL);
    EXPECT_EQ(log.Lines()[1].mText, "a1 b\n");
}

TEST(Log, ALineCarriesSourceAndLineWhereTheyAreGivenAndNullWhereNot) {
    std::vector<ezLogLine> lines;
    ezLog_SetSink([](const ezLogLine& aLine,
                     void* aUserData) { static_cast<std::vector<ezLogLine>*>(aUserData)->push_back(aLine); },
                  &lines);
    static const char* const kSource = "MediaParser";
    ezLog_BeginAt(EZLOGLEVEL_ERROR, EZLOG_M_PARSERS, kSource, 123);
    ezLog_End();
    ezLog_Begin(EZLOGLEVEL_ERROR, EZLOG_M_PARSERS);
    ezLog_End();
    ezLog_SetSink(nullptr, nullptr);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].mSource, kSource);
    EXPECT_EQ(lines[0].mLine, 123);
    EXPECT_EQ(lines[1].mSource, nullptr) << "the source of the line before does not stick";
    EXPECT_EQ(lines[1].mLine, 0);
}

TEST(Log, ALineBegunAndNotEndedIsDropped) {
    const LogCatcher log;
    ezLog_BeginAt(EZLOGLEVEL_ERROR, EZLOG_M_THUMBNAIL, "Gone", 9);
    ezLog_Append_F("gone");
    ezLog_Begin(EZLOGLEVEL_INFO, EZLOG_M_PARSERS);
    ezLog_Append_F("kept\n");
    ezLog_End();
    ASSERT_EQ(log.Lines().size(), 1U);
    EXPECT_EQ(log.Lines()[0].mLevel, EZLOGLEVEL_INFO);
    EXPECT_EQ(log.Lines()[0].mModule, EZLOG_M_PARSERS);
    EXPECT_EQ(log.Lines()[0].mSource, "");
    EXPECT_EQ(log.Lines()[0].mText, "kept\n");
}

TEST(Log, LongLinesAreWhole) {
    const LogCatcher log;
    for (const std::size_t length : {127U, 128U, 255U, 256U, 1023U, 1024U, 4096U, 1000000U}) {
        const std::string text(length, 'x');
        ezLog_F(EZLOGLEVEL_DEBUG, "<%s>\n", text.c_str());
        EXPECT_TRUE(log.Has("<" + text + ">\n")) << length;
    }
}

TEST(Log, ALineOfManyPiecesIsWhole) {
    const LogCatcher log;
    std::string expected;
    ezLog_Begin(EZLOGLEVEL_DEBUG, EZLOG_M_PARSERS);
    for (int i = 0; i < 1000; ++i) {
        ezLog_Append_F("%d,", i);
        expected += std::to_string(i) + ",";
    }
    ezLog_End();
    EXPECT_EQ(log.Texts(), std::vector<std::string>{expected});
}

namespace {

struct NestingSink {
    std::vector<std::string> mTexts;
    bool mfNested = false;

    static void sSink(const ezLogLine& aLine, void* aUserData) {
        NestingSink& sink = *static_cast<NestingSink*>(aUserData);
        const std::string before = aLine.mText;
        if (!sink.mfNested) {
            sink.mfNested = true;
            ezLog_F(EZLOGLEVEL_ERROR, "inner %s", "line\n");
        }
        EXPECT_EQ(aLine.mText, before) << "the line stays as it is while its sink logs";
        sink.mTexts.push_back(aLine.mText);
    }
};

} // namespace

TEST(Log, ASinkMayLog) {
    NestingSink sink;
    ezLog_SetSink(NestingSink::sSink, &sink);
    ezLog_F(EZLOGLEVEL_ERROR, "outer line that is longer than what is kept in place\n");
    ezLog_F(EZLOGLEVEL_ERROR, "next\n");
    ezLog_SetSink(nullptr, nullptr);
    EXPECT_EQ(sink.mTexts,
              (std::vector<std::string>{"inner line\n",
                                        "outer line that is longer than what is kept in place\n", "next\n"}));
}

TEST(Log, ALineWhoseArgumentLogsIsStillALineOfItsOwnLevelAndModule) {
    const LogCatcher log;
    const auto argument = [] {
        ezLog_F(EZLOGLEVEL_WARNING, "from the argument\n");
        return 7;
    };
    ezLog_F(EZLOGLEVEL_INFO, "value %d\n", argument());
    ASSERT_EQ(log.Texts(), (std::vector<std::string>{"from the argument\n", "value 7\n"}));
    EXPECT_EQ(log.Lines()[0].mLevel, EZLOGLEVEL_WARNING);
    EXPECT_EQ(log.Lines()[1].mLevel, EZLOGLEVEL_INFO);
    EXPECT_EQ(log.Lines()[1].mModule, EZLOG_M_PARSERS);
}

TEST(Log, WritesToStandardErrorUntilASinkIsSetAndAfterNullBringsItBack) {
    testing::internal::CaptureStderr();
    ezLog_F(EZLOGLEVEL_ERROR, "first %d\n", 1);
    {
        const LogCatcher log;
        ezLog_F(EZLOGLEVEL_ERROR, "caught\n");
    }
    int unused = 0;
    ezLog_SetSink(nullptr, &unused);
    ezLog_F(EZLOGLEVEL_ERROR, "last 100%%\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "first 1\nlast 100%\n");
}

TEST(Log, NothingReachesStandardOutput) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    ezLog_F(EZLOGLEVEL_ERROR, "text\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "text\n");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(Log, DroppedLinesDoNotReachStandardError) {
    const KeptLevel level(EZLOGLEVEL_ERROR);
    testing::internal::CaptureStderr();
    LogAtEveryLevel();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

namespace {

struct ThreadNotingSink {
    std::vector<std::string> mTexts;
    std::vector<std::thread::id> mThreads;

    static void sSink(const ezLogLine& aLine, void* aUserData) {
        ThreadNotingSink& sink = *static_cast<ThreadNotingSink*>(aUserData);
        sink.mTexts.emplace_back(aLine.mText);
        sink.mThreads.push_back(std::this_thread::get_id());
    }
};

} // namespace

TEST(Log, EachThreadHasALineOfItsOwnAndItsSinkRunsOnIt) {
    ThreadNotingSink sink;
    ezLog_SetSink(ThreadNotingSink::sSink, &sink);
    ezLog_Begin(EZLOGLEVEL_ERROR, EZLOG_M_PARSERS);
    ezLog_Append_F("begun ");
    std::thread other([] { ezLog_F(EZLOGLEVEL_ERROR, "other\n"); });
    const std::thread::id otherId = other.get_id();
    other.join();
    ezLog_Append_F("ended\n");
    ezLog_End();
    ezLog_SetSink(nullptr, nullptr);
    EXPECT_EQ(sink.mTexts, (std::vector<std::string>{"other\n", "begun ended\n"}));
    EXPECT_EQ(sink.mThreads, (std::vector<std::thread::id>{otherId, std::this_thread::get_id()}));
}

TEST(Log, NothingAppendedChangesNothing) {
    const LogCatcher log;
    ezLog_Begin(EZLOGLEVEL_ERROR, EZLOG_M_PARSERS);
    ezLog_Append_F("%s", "");
    ezLog_Append_F("text\n");
    ezLog_Append_F("%s", "");
    ezLog_End();
    EXPECT_EQ(log.Texts(), std::vector<std::string>{"text\n"});
}
