#include "ezPlatform/files/HeldFiles.h"

#include "ezPlatform/base/System.h"
#include "ezPlatform/files/Limits.h"

#include <cerrno>
#include <cstdint>
#include <ctime>
#include <sys/file.h>
#include <unistd.h>
#include <utility>

namespace {

#if defined(O_PATH)
constexpr int kToWorkIn = O_PATH; // what may be searched and not listed can be worked in
#elif defined(O_SEARCH)
constexpr int kToWorkIn = O_SEARCH;
#else
constexpr int kToWorkIn = O_RDONLY;
#endif

struct timespec Now() {
    struct timespec now = {};
    ezSystem().mNow(&now);
    return now;
}

/// Also by a clock that was put back since: what was written in the time to come is left alone.
bool IsOld(int aFile) {
    struct stat status = {};
    return ezSystem().mFStat(aFile, &status) == 0 &&
           Now().tv_sec - std::int64_t{status.st_mtim.tv_sec} > kHeldFile_StaleSeconds;
}

} // namespace

ezHeldFile& ezHeldFile::operator=(ezHeldFile&& anOther) noexcept {
    if (this != &anOther) {
        Close();
        mFile = anOther.Release();
    }
    return *this;
}

int ezHeldFile::Release() {
    return std::exchange(mFile, -1);
}

void ezHeldFile::Close() {
    if (IsOpened()) {
        const int error = errno;
        ezSystem().mClose(Release());
        errno = error;
    }
}

int ezHeld_Open(const char* aPath, int aFlags, mode_t aMode) {
    int file = -1;
    do {
        file = ezSystem().mOpen(aPath, aFlags, aMode);
    } while (file < 0 && errno == EINTR);
    return file;
}

int ezHeld_OpenAt(int aFolder, const char* aName, int aFlags, mode_t aMode) {
    int file = -1;
    do {
        file = ezSystem().mOpenAt(aFolder, aName, aFlags, aMode);
    } while (file < 0 && errno == EINTR);
    return file;
}

int ezHeld_Read(int aFile, void* aBuffer, std::size_t aSize, ezFileOffset anOffset, ezFileOffset anEnd) {
    std::size_t count = 0;
    while (count < aSize) {
        const auto done = static_cast<ezFileOffset>(count);
        const ssize_t piece =
            ezSystem().mPRead(aFile, static_cast<char*>(aBuffer) + count, aSize - count, anOffset + done);
        if (piece < 0 && errno == EINTR) {
            continue;
        }
        if (piece < 0 && count == 0) {
            return -1;
        }
        count += piece > 0 ? static_cast<std::size_t>(piece) : 0;
        if (piece <= 0 || anOffset + static_cast<ezFileOffset>(count) == anEnd) {
            break;
        }
    }
    return static_cast<int>(count);
}

int ezHeld_Write(int aFile, const void* aBuffer, std::size_t aSize, ezFileOffset anOffset) {
    std::size_t count = 0;
    while (count < aSize) {
        const auto done = static_cast<ezFileOffset>(count);
        const ssize_t piece = ezSystem().mPWrite(aFile, static_cast<const char*>(aBuffer) + count,
                                                 aSize - count, anOffset + done);
        if (piece < 0 && errno == EINTR) {
            continue;
        }
        if (piece <= 0) {
            return count > 0 ? static_cast<int>(count) : -1;
        }
        count += static_cast<std::size_t>(piece);
    }
    return static_cast<int>(count);
}

bool ezHeld_Sync(int aFile) {
    int result = -1;
    do {
        result = ezSystem().mFSync(aFile);
    } while (result != 0 && errno == EINTR);
    return result == 0;
}

bool ezHeld_Truncate(int aFile, ezFileOffset aLength) {
    int result = -1;
    do {
        result = ezSystem().mFTruncate(aFile, aLength);
    } while (result != 0 && errno == EINTR);
    return result == 0;
}

bool ezHeld_Close(int aFile) {
    return ezSystem().mClose(aFile) == 0 || errno == EINTR;
}

int ezHeld_Duplicate(int aFile) {
    int file = -1;
    do {
        file = ezSystem().mDuplicate(aFile);
    } while (file < 0 && errno == EINTR);
    return file;
}

ezHeldFile ezHeld_Folder(const ezCString& aPath, bool afList) {
    return ezHeldFile(ezHeld_OpenAt(
        AT_FDCWD, aPath.c_str(), (afList ? O_RDONLY : kToWorkIn) | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW, 0));
}

bool ezHeld_IsNameOf(int aFolder, const char* aName, int aFile) {
    struct stat file = {};
    struct stat named = {};
    return ezSystem().mFStat(aFile, &file) == 0 && ezSystem().mLStatAt(aFolder, aName, &named) == 0 &&
           file.st_dev == named.st_dev && file.st_ino == named.st_ino;
}

bool ezHeld_Lock(int aFile) {
    int result = -1;
    do {
        result = ezSystem().mFLock(aFile, LOCK_EX | LOCK_NB);
    } while (result != 0 && errno == EINTR);
    return result == 0;
}

void ezHeld_RemoveIfStale(int aFolder, const char* aName) {
    // Non-blocking, since a stranger may have put a pipe there; writing, since some systems lock nothing
    // else.
    const ezHeldFile file(
        ezHeld_OpenAt(aFolder, aName, O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY, 0));
    if (file.IsOpened() && (ezHeld_Lock(file.Get()) || (errno != EWOULDBLOCK && IsOld(file.Get())))) {
        ezSystem().mUnlinkAt(aFolder, aName);
    }
}

ezCString ezHeld_RandomDigits() {
    std::uint64_t digits = 0;
    if (ezSystem().mGetRandom(&digits, sizeof digits) != static_cast<ssize_t>(sizeof digits)) {
        // What is left may be foretold; that nobody takes another's file is seen to when it is made.
        const struct timespec now = Now();
        digits = (static_cast<std::uint64_t>(now.tv_sec) << 30U) ^ static_cast<std::uint64_t>(now.tv_nsec) ^
                 (static_cast<std::uint64_t>(getpid()) << 40U);
    }
    return ezCString::Format("%08lX%08lX", static_cast<unsigned long>(digits >> 32U),
                             static_cast<unsigned long>(digits & 0xFFFFFFFFU));
}
