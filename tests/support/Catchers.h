#pragma once

#include "ezPlatform/base/Log.h"

#include <string>
#include <vector>

/// Catches every log line of its lifetime, at a level of its choice, and puts level and sink back.
class LogCatcher {
public:
    struct Line {
        int mLevel;
        int mModule;
        std::string mSource; ///< empty when the line carries none
        int mLine;
        std::string mText;
    };

    /// 5 lets every level through.
    explicit LogCatcher(int aLevel = 5);
    ~LogCatcher();
    LogCatcher(const LogCatcher&) = delete;
    LogCatcher& operator=(const LogCatcher&) = delete;

    const std::vector<Line>& Lines() const { return mLines; }
    /// The texts alone, in the order logged.
    std::vector<std::string> Texts() const;
    bool Has(const std::string& aText) const;
    void Clear() { mLines.clear(); }

private:
    static void sSink(const ezLogLine& aLine, void* aUserData);

    std::vector<Line> mLines;
    int mLevelBefore;
};

/// Lets failed assertions return, and notes them as "expression @ source".
class AssertCatcher {
public:
    AssertCatcher();
    ~AssertCatcher();
    AssertCatcher(const AssertCatcher&) = delete;
    AssertCatcher& operator=(const AssertCatcher&) = delete;

    const std::vector<std::string>& Failures() const { return mFailures; }

    /// What Failures() holds when these have failed, in this order: nothing in a build without assertions.
    static std::vector<std::string> Noted(std::vector<std::string> aFailures);

private:
    static void sHandler(const char* anExpression, const char* aSource, int aLine, void* aUserData);

    std::vector<std::string> mFailures;
};
