#include "fuzz/support/Check.h"

#include "ezPlatform/base/Assert.h"
#include "ezPlatform/base/Log.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

const char* gToleratedAssertion = nullptr;

void sHandleAssertion(const char* anExpression, const char* aSource, int aLine, void* /*aUserData*/) {
    if (gToleratedAssertion == nullptr || std::strcmp(anExpression, gToleratedAssertion) != 0) {
        FuzzCheck_Failed(anExpression, aSource, aLine);
    }
}

void sDropLine(const ezLogLine& aLine, void* /*aUserData*/) {
    const std::size_t length = std::strlen(aLine.mText);
    FuzzCheck(length != 0 && aLine.mText[length - 1] == '\n');
}

} // namespace

void FuzzCheck_Failed(const char* aCondition, const char* aFile, int aLine) {
    std::fprintf(stderr, "%s:%d: does not hold: %s\n", aFile, aLine, aCondition);
    std::abort();
}

FuzzHouse::FuzzHouse(const char* aToleratedAssertion) : mLevelBefore(_ezLog_Level) {
    _ezLog_Level = EZLOGLEVEL_DEBUG + 1;
    ezLog_SetSink(sDropLine, nullptr);
    gToleratedAssertion = aToleratedAssertion;
    ezAssert_SetHandler(sHandleAssertion, nullptr);
}

FuzzHouse::~FuzzHouse() {
    ezAssert_SetHandler(nullptr, nullptr);
    ezLog_SetSink(nullptr, nullptr);
    _ezLog_Level = mLevelBefore;
}
