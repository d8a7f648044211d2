#pragma once

#include "ezPlatform/base/System.h"

#include <functional>

/// Other system calls in place of some of the real ones, for as long as it lives. One at a time.
class ReplacedSystem {
public:
    /// @param aReplace  writes the other ones over the real ones that it is given
    explicit ReplacedSystem(const std::function<void(ezSystemCalls&)>& aReplace = nullptr)
        : mCalls(ezSystem_Real()) {
        if (aReplace) {
            aReplace(mCalls);
        }
        ezSystem_Replace(&mCalls);
    }
    ~ReplacedSystem() { ezSystem_Replace(nullptr); }
    ReplacedSystem(const ReplacedSystem&) = delete;
    ReplacedSystem& operator=(const ReplacedSystem&) = delete;

    ezSystemCalls mCalls; ///< in force: may be changed meanwhile
};

/// No file is brought to the disk while it lives: what waits for one is left out, and no result depends on
/// it.
inline void WithoutSync(ezSystemCalls& aCalls) {
    aCalls.mFSync = [](int /*aFile*/) { return 0; };
}
