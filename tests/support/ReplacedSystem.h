#pragma once

#include "ezPlatform/base/System.h"

#include <functional>

/// Puts other system calls in force while it lives. One at a time.
class ReplacedSystem {
public:
    /// aReplace changes what is to be another call in a table of the real ones.
    explicit ReplacedSystem(const std::function<void(ezSystemCalls&)>& aReplace) : mCalls(ezSystem_Real()) {
        aReplace(mCalls);
        ezSystem_Replace(&mCalls);
    }
    ~ReplacedSystem() { ezSystem_Replace(nullptr); }
    ReplacedSystem(const ReplacedSystem&) = delete;
    ReplacedSystem& operator=(const ReplacedSystem&) = delete;

private:
    ezSystemCalls mCalls;
};

/// No file is brought to the disk while it lives: what waits for one is left out, and no result depends on
/// it.
inline void WithoutSync(ezSystemCalls& aCalls) {
    aCalls.mFSync = [](int /*aFile*/) { return 0; };
}
