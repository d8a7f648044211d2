#pragma once

#include "ezPlatform/base/System.h"

#include <cstddef>
#include <deque>

/// Counts the libraries' system calls while it lives, and makes them fail or come short where it is told to.
/// One at a time.
class ScriptedSystem {
public:
    ScriptedSystem();
    ~ScriptedSystem();
    ScriptedSystem(const ScriptedSystem&) = delete;
    ScriptedSystem& operator=(const ScriptedSystem&) = delete;

    struct Counts {
        std::size_t mLargestPRead = 0; ///< the most bytes that one pread was asked for
        std::size_t mOpen = 0;         ///< in a folder that is open, too
        std::size_t mClose = 0;
        std::size_t mStat = 0;
        std::size_t mFStat = 0;
        std::size_t mPRead = 0;
        std::size_t mAllocate = 0;
        std::size_t All() const {
            return mOpen + mClose + mStat + mFStat + mPRead;
        } ///< the true system calls
    };
    const Counts& GetCounts() const { return mCounts; }
    void ResetCounts() { mCounts = Counts(); }

    /// An outcome for one call to come: an errno to fail with, or (for pread) the most bytes to give.
    struct Outcome {
        int mError = 0;
        std::size_t mMaximum = static_cast<std::size_t>(-1);
    };
    /// The next calls take these outcomes in order, then the real calls go on.
    std::deque<Outcome> mOpenOutcomes;
    std::deque<Outcome> mStatOutcomes;
    std::deque<Outcome> mFStatOutcomes;
    std::deque<Outcome> mPReadOutcomes;
    std::deque<Outcome> mAllocateOutcomes;

private:
    static int sOpen(const char* aPath, int aFlags, mode_t aMode);
    static int sOpenAt(int aFolder, const char* aName, int aFlags, mode_t aMode);
    static int sClose(int aFile);
    static int sStat(const char* aPath, struct stat* aStatus);
    static int sFStat(int aFile, struct stat* aStatus);
    static ssize_t sPRead(int aFile, void* aBuffer, std::size_t aSize, ezFileOffset anOffset);
    static void* sAllocate(std::size_t aSize);
    static void* sReallocate(void* aBlock, std::size_t aSize);

    Counts mCounts;
    ezSystemCalls mCalls;
};
