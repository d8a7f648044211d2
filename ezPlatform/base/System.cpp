#include "ezPlatform/base/System.h"

#include "ezPlatform/base/Descriptor.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#if __has_include(<sys/random.h>)
#include <sys/random.h>
#endif

namespace {

ssize_t GetRandom([[maybe_unused]] void* aBuffer, [[maybe_unused]] std::size_t aSize) {
#ifdef GRND_NONBLOCK
    return getrandom(aBuffer, aSize, GRND_NONBLOCK);
#else
    errno = ENOSYS; // no call of POSIX
    return -1;
#endif
}

DIR* OpenDir(int aFolder) {
    const int own = ezDescriptor_AboveStandard(openat(aFolder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    DIR* folder = own >= 0 ? fdopendir(own) : nullptr;
    if (folder == nullptr && own >= 0) {
        const int error = errno;
        close(own);
        errno = error;
    }
    return folder;
}

const ezSystemCalls kReal = {
    [](const char* aPath, int aFlags, mode_t aMode) {
        return ezDescriptor_AboveStandard(open(aPath, aFlags, aMode));
    },
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
    [](const char* aPath, mode_t aMode) { return mkdir(aPath, aMode); },
    [](const char* aPath) { return realpath(aPath, nullptr); },
    [](std::size_t aSize) { return std::malloc(aSize); },
    [](void* aBlock, std::size_t aSize) { return std::realloc(aBlock, aSize); },
    [](int aFile, ezFileOffset aLength) { return ftruncate(aFile, aLength); },
    [](int aFile, const struct timespec* aTimes) { return futimens(aFile, aTimes); },
    [](int aFile, int anOperation) { return flock(aFile, anOperation); },
    OpenDir,
    [](DIR* aFolder) { return readdir(aFolder); },
    [](DIR* aFolder) { return closedir(aFolder); },
    [](const char* aPath, char* aBuffer, std::size_t aSize) { return readlink(aPath, aBuffer, aSize); },
    [](int aFolder, const char* aName, int aFlags, mode_t aMode) {
        return ezDescriptor_AboveStandard(openat(aFolder, aName, aFlags, aMode));
    },
    [](int aFolder, const char* aName, struct stat* aStatus) {
        return fstatat(aFolder, aName, aStatus, AT_SYMLINK_NOFOLLOW);
    },
    [](int aFolder, const char* aFrom, const char* aTo) { return renameat(aFolder, aFrom, aFolder, aTo); },
    [](int aFolder, const char* aName) { return unlinkat(aFolder, aName, 0); },
    GetRandom,
    [](int aFile) { return fcntl(aFile, F_DUPFD_CLOEXEC, STDERR_FILENO + 1); },
    [](struct timespec* aNow) { clock_gettime(CLOCK_REALTIME, aNow); },
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
