#pragma once

#include "ezPlatform/base/Types.h"

#include <dirent.h>
#include <sys/stat.h>
#include <sys/types.h>

/// The calls by which the libraries reach the operating system. One place, so that a test can make each of
/// them fail, be interrupted or come short, and count them. Not installed.
struct ezSystemCalls {
    int (*mOpen)(const char* aPath, int aFlags, mode_t aMode);
    int (*mClose)(int aFile);
    int (*mStat)(const char* aPath, struct stat* aStatus);
    int (*mFStat)(int aFile, struct stat* aStatus);
    ssize_t (*mPRead)(int aFile, void* aBuffer, std::size_t aSize, ezFileOffset anOffset);
    ssize_t (*mPWrite)(int aFile, const void* aBuffer, std::size_t aSize, ezFileOffset anOffset);
    int (*mFSync)(int aFile);
    int (*mFChmod)(int aFile, mode_t aMode);
    int (*mMkdir)(const char* aPath, mode_t aMode);
    char* (*mRealPath)(const char* aPath);                 ///< a block for std::free, or null
    void* (*mAllocate)(std::size_t aSize);                 ///< for blocks whose size comes from input
    void* (*mReallocate)(void* aBlock, std::size_t aSize); ///< the same, grown
    int (*mFTruncate)(int aFile, ezFileOffset aLength);
    int (*mFUTimens)(int aFile, const struct timespec* aTimes);
    int (*mFLock)(int aFile, int anOperation);
    DIR* (*mOpenDir)(int aFolder); ///< of a folder that is open, by a descriptor of its own
    struct dirent* (*mReadDir)(DIR* aFolder);
    int (*mCloseDir)(DIR* aFolder);
    ssize_t (*mReadLink)(const char* aPath, char* aBuffer, std::size_t aSize);
    // In a folder that is open (or AT_FDCWD), whatever its path leads to by now.
    int (*mOpenAt)(int aFolder, const char* aName, int aFlags, mode_t aMode);
    int (*mLStatAt)(int aFolder, const char* aName, struct stat* aStatus);
    int (*mRenameAt)(int aFolder, const char* aFrom, const char* aTo);
    int (*mUnlinkAt)(int aFolder, const char* aName);
    ssize_t (*mGetRandom)(void* aBuffer,
                          std::size_t aSize); ///< does not wait: fails where there are none yet
    int (*mDuplicate)(int aFile);             ///< of the same open file, 3 or more, closed on exec
    void (*mNow)(struct timespec* aNow);      ///< by the clock that files are stamped with
};

/// The calls in force.
const ezSystemCalls& ezSystem();

/// The real calls, for a replacement to fall back on.
const ezSystemCalls& ezSystem_Real();

/// Puts other calls in force; null brings the real ones back. Borrowed. For tests, which use one thread.
void ezSystem_Replace(const ezSystemCalls* aCalls);
