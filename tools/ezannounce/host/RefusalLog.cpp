#include "host/RefusalLog.h"

#include "output/Console.h"

#include "ezPlatform/base/Log.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>
#include <utility>

namespace {

constexpr std::array<std::string_view, 4> kCauses = {
    "malformed: ", "unsupported: ", "limit: ", "read error: "};

/// The length of "CLASS: " in front of a cause; 0 for any other line.
std::size_t PrefixLength(std::string_view aText) {
    const std::size_t colon = aText.find(": ");
    if (colon == std::string_view::npos || colon == 0) {
        return 0;
    }
    const std::string_view rest = aText.substr(colon + 2);
    const bool fCause = std::any_of(kCauses.begin(), kCauses.end(), [&](std::string_view aCause) {
        return rest.substr(0, aCause.size()) == aCause;
    });
    return fCause ? colon + 2 : 0;
}

} // namespace

RefusalLog::RefusalLog(Console* aConsole) : mConsole(aConsole), mLevel(_ezLog_Level) {
    _ezLog_Level = std::max(_ezLog_Level, EZLOGLEVEL_DEBUG + 1);
    ezLog_SetSink(sListen, this);
}

RefusalLog::~RefusalLog() {
    if (mConsole != nullptr) {
        mConsole->TakeLog();
    } else {
        ezLog_SetSink(nullptr, nullptr);
    }
    _ezLog_Level = mLevel;
}

std::vector<Refusal> RefusalLog::Take() {
    return std::exchange(mRefusals, {});
}

void RefusalLog::sListen(const ezLogLine& aLine, void* aThis) {
    static_cast<RefusalLog*>(aThis)->Listen(aLine);
}

void RefusalLog::Listen(const ezLogLine& aLine) {
    if (aLine.mLevel < mLevel) {
        if (mConsole != nullptr) {
            mConsole->Log(aLine.mLevel, aLine.mText);
        } else {
            std::fputs(aLine.mText, stderr);
        }
    }
    if (aLine.mLevel != EZLOGLEVEL_DEBUG || std::this_thread::get_id() != mThread) {
        return;
    }
    std::string_view text = aLine.mText;
    text = text.substr(0, text.find_last_not_of('\n') + 1);
    const std::size_t prefix = PrefixLength(text);
    if (prefix != 0) {
        mRefusals.push_back({std::string(text.substr(0, prefix - 2)), std::string(text.substr(prefix))});
    }
}
