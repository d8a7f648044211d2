#include "bench/CountedSystem.h"

#include <algorithm>

namespace {

CountedSystem::Counts gCounts;
ezFileOffset gPosition = 0; ///< where the file that was opened last has been read to

} // namespace

CountedSystem::CountedSystem() : mCalls(ezSystem_Real()) {
    gCounts = Counts();
    mCalls.mStat = [](const char* aPath, struct stat* aStatus) {
        ++gCounts.mStat;
        return ezSystem_Real().mStat(aPath, aStatus);
    };
    mCalls.mOpen = [](const char* aPath, int aFlags, mode_t aMode) {
        ++gCounts.mOpen;
        gPosition = 0;
        return ezSystem_Real().mOpen(aPath, aFlags, aMode);
    };
    mCalls.mFStat = [](int aFile, struct stat* aStatus) {
        ++gCounts.mFStat;
        return ezSystem_Real().mFStat(aFile, aStatus);
    };
    mCalls.mPRead = [](int aFile, void* aBuffer, std::size_t aSize, ezFileOffset anOffset) {
        ++gCounts.mRead;
        gCounts.mSeek += anOffset != gPosition ? 1 : 0;
        const ssize_t size = ezSystem_Real().mPRead(aFile, aBuffer, aSize, anOffset);
        gCounts.mReadBytes += static_cast<std::size_t>(std::max<ssize_t>(size, 0));
        gPosition = anOffset + std::max<ssize_t>(size, 0);
        return size;
    };
    mCalls.mClose = [](int aFile) {
        ++gCounts.mClose;
        return ezSystem_Real().mClose(aFile);
    };
    mCalls.mFSync = [](int aFile) {
        ++gCounts.mFSync;
        return ezSystem_Real().mFSync(aFile);
    };
    mCalls.mFUTimens = [](int aFile, const struct timespec* aTimes) {
        ++gCounts.mFUTimens;
        return ezSystem_Real().mFUTimens(aFile, aTimes);
    };
    mCalls.mOpenAt = [](int aFolder, const char* aName, int aFlags, mode_t aMode) {
        ++gCounts.mOpen;
        return ezSystem_Real().mOpenAt(aFolder, aName, aFlags, aMode);
    };
    mCalls.mLStatAt = [](int aFolder, const char* aName, struct stat* aStatus) {
        ++gCounts.mOther;
        return ezSystem_Real().mLStatAt(aFolder, aName, aStatus);
    };
    mCalls.mRealPath = [](const char* aPath) {
        ++gCounts.mOther;
        return ezSystem_Real().mRealPath(aPath);
    };
    mCalls.mOpenDir = [](int aFolder) {
        ++gCounts.mOther;
        return ezSystem_Real().mOpenDir(aFolder);
    };
    ezSystem_Replace(&mCalls);
}

CountedSystem::~CountedSystem() {
    ezSystem_Replace(nullptr);
}

const CountedSystem::Counts& CountedSystem::GetCounts() const {
    return gCounts;
}
