#include "ezPlatform/base/LogDuration.h"

#include "ezPlatform/base/Log.h"

#include <cstdarg>
#include <cstdio>

ezLogDuration::ezLogDuration(int aLevel, int aModule, ezLogDurationKind /*aKind*/, const char* aFormat, ...)
    : mLevel(aLevel), mModule(aModule), mfWanted(_ezLog_Level > aLevel) {
    if (!mfWanted) {
        return;
    }
    std::va_list arguments;
    va_start(arguments, aFormat);
    std::va_list measured;
    va_copy(measured, arguments);
    const int length = std::vsnprintf(nullptr, 0, aFormat, measured);
    va_end(measured);
    if (length > 0) {
        mText.resize(static_cast<std::size_t>(length) + 1); // vsnprintf ends its output with a NUL
        std::vsnprintf(mText.data(), mText.size(), aFormat, arguments);
        mText.pop_back();
    }
    va_end(arguments);
    mBegin = std::chrono::steady_clock::now();
}

ezLogDuration::~ezLogDuration() {
    if (!mfWanted) {
        return;
    }
    const std::chrono::duration<double, std::milli> spent = std::chrono::steady_clock::now() - mBegin;
    const bool fEnded = !mText.empty() && mText.back() == '\n';
    if (fEnded) {
        mText.pop_back();
    }
    ezLog_Line_F(mLevel, mModule, nullptr, 0, "%s (%.3f ms)%s", mText.c_str(), spent.count(),
                 fEnded ? "\n" : "");
}
