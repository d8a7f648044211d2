#include "support/ScriptedSystem.h"

#include <algorithm>
#include <cerrno>

namespace {

ScriptedSystem* gScript = nullptr;

ScriptedSystem::Outcome Take(std::deque<ScriptedSystem::Outcome>& anOutcomes) {
    ScriptedSystem::Outcome outcome;
    if (!anOutcomes.empty()) {
        outcome = anOutcomes.front();
        anOutcomes.pop_front();
    }
    errno = outcome.mError;
    return outcome;
}

} // namespace

ScriptedSystem::ScriptedSystem() : mCalls(ezSystem_Real()) {
    mCalls.mOpen = sOpen;
    mCalls.mOpenAt = sOpenAt;
    mCalls.mClose = sClose;
    mCalls.mStat = sStat;
    mCalls.mFStat = sFStat;
    mCalls.mPRead = sPRead;
    mCalls.mAllocate = sAllocate;
    mCalls.mReallocate = sReallocate;
    gScript = this;
    ezSystem_Replace(&mCalls);
}

ScriptedSystem::~ScriptedSystem() {
    ezSystem_Replace(nullptr);
    gScript = nullptr;
}

int ScriptedSystem::sOpen(const char* aPath, int aFlags, mode_t aMode) {
    ++gScript->mCounts.mOpen;
    return Take(gScript->mOpenOutcomes).mError != 0 ? -1 : ezSystem_Real().mOpen(aPath, aFlags, aMode);
}

int ScriptedSystem::sOpenAt(int aFolder, const char* aName, int aFlags, mode_t aMode) {
    ++gScript->mCounts.mOpen;
    return Take(gScript->mOpenOutcomes).mError != 0 ? -1
                                                    : ezSystem_Real().mOpenAt(aFolder, aName, aFlags, aMode);
}

int ScriptedSystem::sClose(int aFile) {
    ++gScript->mCounts.mClose;
    return ezSystem_Real().mClose(aFile);
}

int ScriptedSystem::sStat(const char* aPath, struct stat* aStatus) {
    ++gScript->mCounts.mStat;
    return Take(gScript->mStatOutcomes).mError != 0 ? -1 : ezSystem_Real().mStat(aPath, aStatus);
}

int ScriptedSystem::sFStat(int aFile, struct stat* aStatus) {
    ++gScript->mCounts.mFStat;
    return Take(gScript->mFStatOutcomes).mError != 0 ? -1 : ezSystem_Real().mFStat(aFile, aStatus);
}

ssize_t ScriptedSystem::sPRead(int aFile, void* aBuffer, std::size_t aSize, ezFileOffset anOffset) {
    ++gScript->mCounts.mPRead;
    gScript->mCounts.mLargestPRead = std::max(gScript->mCounts.mLargestPRead, aSize);
    const Outcome outcome = Take(gScript->mPReadOutcomes);
    if (outcome.mError != 0) {
        return -1;
    }
    return ezSystem_Real().mPRead(aFile, aBuffer, std::min(aSize, outcome.mMaximum), anOffset);
}

void* ScriptedSystem::sReallocate(void* aBlock, std::size_t aSize) {
    ++gScript->mCounts.mAllocate;
    return Take(gScript->mAllocateOutcomes).mError != 0 ? nullptr
                                                        : ezSystem_Real().mReallocate(aBlock, aSize);
}

void* ScriptedSystem::sAllocate(std::size_t aSize) {
    ++gScript->mCounts.mAllocate;
    return Take(gScript->mAllocateOutcomes).mError != 0 ? nullptr : ezSystem_Real().mAllocate(aSize);
}
