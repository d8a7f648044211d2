#pragma once

#include "ezPlatform/base/System.h"

#include <cstddef>

/// Counts the libraries' system calls while it lives. One at a time.
class CountedSystem {
public:
    CountedSystem();
    ~CountedSystem();
    CountedSystem(const CountedSystem&) = delete;
    CountedSystem& operator=(const CountedSystem&) = delete;

    struct Counts {
        std::size_t mStat = 0;
        std::size_t mOpen = 0;
        std::size_t mFStat = 0;
        std::size_t mRead = 0;
        std::size_t mReadBytes = 0; ///< that came of them
        std::size_t mSeek = 0;      ///< reads that do not begin where the one before ended; the first, at 0
        std::size_t mClose = 0;
        std::size_t mFSync = 0;
        std::size_t mFUTimens = 0;
        std::size_t mOther = 0; ///< of those that reading a file could need: lstat, realpath, opendir
    };
    const Counts& GetCounts() const;

private:
    ezSystemCalls mCalls;
};
