#include "output/Console.h"

#include "output/Limits.h"
#include "output/SafeText.h"

#include "ezPlatform/base/Log.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace {

/// Brings the cursor to the start of the line and erases the line.
constexpr std::string_view kEraseLine = "\r\033[K";

const char* LevelName(int aLevel) {
    switch (aLevel) {
    case EZLOGLEVEL_ERROR:
        return "error";
    case EZLOGLEVEL_WARNING:
        return "warning";
    case EZLOGLEVEL_INFO:
        return "info";
    default:
        return "debug";
    }
}

void sLogSink(const ezLogLine& aLine, void* aConsole) {
    static_cast<Console*>(aConsole)->Log(aLine.mLevel, aLine.mText);
}

} // namespace

Console::Console() : mfTerminal(isatty(STDERR_FILENO) == 1), mLastProgress(Clock::now()) {
    ezLog_SetSink(sLogSink, this);
}

Console::~Console() {
    ezLog_SetSink(nullptr, nullptr);
    ClearProgress();
}

void Console::Print(std::string_view aText) {
    ClearProgress();
    if (std::fwrite(aText.data(), 1, aText.size(), stdout) < aText.size() && mPrintError == 0) {
        mPrintError = errno;
    }
}

void Console::WriteError(std::string_view aText) {
    ClearProgress();
    std::fwrite(aText.data(), 1, aText.size(), stderr);
}

void Console::Error(std::string_view aName, std::string_view aReason) {
    const std::string name = aName.empty() ? "''" : ForTerminal(aName);
    WriteError("ezannounce: " + name + ": " + ForTerminal(aReason) + "\n");
}

void Console::Error(std::string_view aText) {
    WriteError("ezannounce: " + ForTerminal(aText) + "\n");
}

void Console::Log(int aLevel, std::string_view aText) {
    if (!aText.empty() && aText.back() == '\n') {
        aText.remove_suffix(1);
    }
    WriteError(std::string(LevelName(aLevel)) + ": " + ForTerminal(aText) + "\n");
}

void Console::Progress(std::string_view aFolder) {
    ++mFileCount;
    if (!mfTerminal) {
        return;
    }
    const Clock::time_point now = Clock::now();
    if (mFileCount % kProgress_Files != 0 && now - mLastProgress < kProgress_Time) {
        return;
    }
    mLastProgress = now;
    // Cut before it would fill a line and leave a piece of itself behind.
    const std::string words = std::to_string(mFileCount) + " files, in " + ForTerminal(aFolder);
    const std::string text = std::string(kEraseLine) + CutToTerminalWidth(words, kProgress_MaxWidth);
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fflush(stderr);
    mfProgressShown = true;
}

void Console::ClearProgress() {
    if (mfProgressShown) {
        std::fwrite(kEraseLine.data(), 1, kEraseLine.size(), stderr);
        std::fflush(stderr);
        mfProgressShown = false;
    }
}

bool Console::Finish() {
    ClearProgress();
    if (std::fflush(stdout) != 0 && mPrintError == 0) {
        mPrintError = errno;
    }
    if (mPrintError != 0) {
        Error("standard output", std::strerror(mPrintError));
    }
    return mPrintError == 0;
}
