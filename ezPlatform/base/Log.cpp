#include "ezPlatform/base/Log.h"

#include <cstdarg>
#include <cstdio>
#include <string>

int _ezLog_Level = EZLOGLEVEL_WARNING;

namespace {

void sWriteToStandardError(const ezLogLine& aLine, void* /*aUserData*/) {
    std::fputs(aLine.mText, stderr);
}

ezLogSink gSink = sWriteToStandardError;
void* gSinkUserData = nullptr;

/// The line under way on one thread. Begin and End are separate calls, so the text has to wait somewhere.
struct PendingLine {
    std::string mText;
    int mLevel = 0;
    int mModule = 0;
    const char* mSource = nullptr;
    int mLine = 0;
};

PendingLine& Pending() {
    thread_local PendingLine line;
    return line;
}

void Append(std::string& aText, const char* aFormat, std::va_list anArguments) {
    std::va_list measured;
    va_copy(measured, anArguments);
    const int length = std::vsnprintf(nullptr, 0, aFormat, measured);
    va_end(measured);
    if (length <= 0) {
        return;
    }
    const std::size_t before = aText.size();
    const std::size_t added = static_cast<std::size_t>(length);
    aText.resize(before + added + 1); // vsnprintf ends its output with a NUL
    std::vsnprintf(&aText[before], added + 1, aFormat, anArguments);
    aText.resize(before + added);
}

} // namespace

void ezLog_SetSink(ezLogSink aSink, void* aUserData) {
    gSink = aSink != nullptr ? aSink : sWriteToStandardError;
    gSinkUserData = aUserData;
}

void ezLog_Begin(int aLevel, int aModule) {
    ezLog_BeginAt(aLevel, aModule, nullptr, 0);
}

void ezLog_BeginAt(int aLevel, int aModule, const char* aSource, int aLine) {
    PendingLine& pending = Pending();
    pending.mText.clear();
    pending.mLevel = aLevel;
    pending.mModule = aModule;
    pending.mSource = aSource;
    pending.mLine = aLine;
}

void ezLog_Append_F(const char* aFormat, ...) {
    std::va_list arguments;
    va_start(arguments, aFormat);
    Append(Pending().mText, aFormat, arguments);
    va_end(arguments);
}

void ezLog_Line_F(int aLevel, int aModule, const char* aSource, int aLine, const char* aFormat, ...) {
    ezLog_BeginAt(aLevel, aModule, aSource, aLine);
    std::va_list arguments;
    va_start(arguments, aFormat);
    Append(Pending().mText, aFormat, arguments);
    va_end(arguments);
    ezLog_End();
}

void ezLog_End() {
    // Taken out first: a sink that logs begins a line of its own on this thread.
    const PendingLine line = std::move(Pending());
    Pending() = PendingLine();
    gSink({line.mLevel, line.mModule, line.mSource, line.mLine, line.mText.c_str()}, gSinkUserData);
}
