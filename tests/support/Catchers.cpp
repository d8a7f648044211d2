#include "support/Catchers.h"

#include "ezPlatform/base/Assert.h"

LogCatcher::LogCatcher(int aLevel) : mLevelBefore(_ezLog_Level) {
    _ezLog_Level = aLevel;
    ezLog_SetSink(sSink, this);
}

LogCatcher::~LogCatcher() {
    ezLog_SetSink(nullptr, nullptr);
    _ezLog_Level = mLevelBefore;
}

void LogCatcher::sSink(const ezLogLine& aLine, void* aUserData) {
    static_cast<LogCatcher*>(aUserData)->mLines.push_back({aLine.mLevel, aLine.mModule,
                                                           aLine.mSource != nullptr ? aLine.mSource : "",
                                                           aLine.mLine, aLine.mText});
}

std::vector<std::string> LogCatcher::Texts() const {
    std::vector<std::string> texts;
    for (const Line& line : mLines) {
        texts.push_back(line.mText);
    }
    return texts;
}

bool LogCatcher::Has(const std::string& aText) const {
    for (const Line& line : mLines) {
        if (line.mText == aText) {
            return true;
        }
    }
    return false;
}

AssertCatcher::AssertCatcher() {
    ezAssert_SetHandler(sHandler, this);
}

AssertCatcher::~AssertCatcher() {
    ezAssert_SetHandler(nullptr, nullptr);
}

std::vector<std::string> AssertCatcher::Noted(std::vector<std::string> aFailures) {
#ifdef EZ_NO_ASSERTIONS
    aFailures.clear();
#endif
    return aFailures;
}

void AssertCatcher::sHandler(const char* anExpression, const char* aSource, int /*aLine*/, void* aUserData) {
    static_cast<AssertCatcher*>(aUserData)->mFailures.push_back(std::string(anExpression) + " @ " + aSource);
}
