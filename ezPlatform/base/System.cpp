#include "ezPlatform/base/System.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace {

const ezSystemCalls kReal = {
    [](const char* aPath, int aFlags, mode_t aMode) { return open(aPath, aFlags, aMode); },
    [](int aFile) { return close(aFile); },
    [](const char* aPath, struct stat* aStatus) { return stat(aPath, aStatus); },
    [](int aFile, struct stat* aStatus) { return fstat(aFile, aStatus); },
    [](int aFile, void* aBuffer, std::size_t aSize, ezFileOffset anOffset) {
        return pread(aFile, aBuffer, aSize, anOffset);
    },
    [](int aFile, const void* aBuffer, std::size_t aSize, ezFileOffset anOffset) {
        return pwrite(aFile, aBuffer, aSize, anOffset);
    },
    [](int aFile) { return fsync(aFile); },
    [](int aFile, mode_t aMode) { return fchmod(aFile, aMode); },
    [](const char* aFrom, const char* aTo) { return rename(aFrom, aTo); },
    [](const char* aPath) { return unlink(aPath); },
    [](const char* aPath, mode_t aMode) { return mkdir(aPath, aMode); },
    [](const char* aPath) { return realpath(aPath, nullptr); },
    [](std::size_t aSize) { return std::malloc(aSize); },
    [](void* aBlock, std::size_t aSize) { return std::realloc(aBlock, aSize); },
    [](int aFile, ezFileOffset aLength) { return ftruncate(aFile, aLength); },
    [](int aFile, const struct timespec* aTimes) { return futimens(aFile, aTimes); },
    [](int aFile, int anOperation) { return flock(aFile, anOperation); },
    [](const char* aPath, struct stat* aStatus) { return lstat(aPath, aStatus); },
    [](const char* aPath) { return opendir(aPath); },
    [](DIR* aFolder) { return readdir(aFolder); },
    [](DIR* aFolder) { return closedir(aFolder); },
    [](const char* aPath, char* aBuffer, std::size_t aSize) { return readlink(aPath, aBuffer, aSize); },
};

const ezSystemCalls* gCalls = &kReal;

} // namespace

const ezSystemCalls& ezSystem() {
    return *gCalls;
}

const ezSystemCalls& ezSystem_Real() {
    return kReal;
}

void ezSystem_Replace(const ezSystemCalls* aCalls) {
    gCalls = aCalls != nullptr ? aCalls : &kReal;
}
