#include "ezPlatform/files/File.h"

#include "ezPlatform/base/System.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <fcntl.h>

namespace {

ezDateTime FromTimespec(const struct timespec& aTime) {
    return ezDateTime(static_cast<std::int64_t>(aTime.tv_sec), static_cast<std::int32_t>(aTime.tv_nsec));
}

bool HasNUL(const ezCString& aPath) {
    return aPath.View().find('\0') != std::string_view::npos;
}

} // namespace

ezFile::ezFile(const ezCString& aPath, int anOpenMode) : mPath(aPath), mOpenMode(anOpenMode) {}

ezFile::~ezFile() {
    Close();
}

bool ezFile::Open() {
    // A NUL would cut the path short and open another file than the one that was named.
    if (IsOpened() || mOpenMode != ezFileOpenMode_Read || HasNUL(mPath)) {
        return false;
    }
    // Non-blocking, or opening a pipe would wait for its writer; regular files do not care.
    int file = -1;
    do {
        file = ezSystem().mOpen(mPath.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0);
    } while (file < 0 && errno == EINTR);
    if (file < 0) {
        return false;
    }
    struct stat status = {};
    if (ezSystem().mFStat(file, &status) != 0 || !S_ISREG(status.st_mode)) {
        ezSystem().mClose(file);
        return false;
    }
    mFile = file;
    mPosition = 0;
    mLengthAtOpen = status.st_size;
    return true;
}

bool ezFile::Open(const ezCString& aPath, int anOpenMode, int /*anAccessMode*/) {
    if (IsOpened()) {
        return false;
    }
    mPath = aPath;
    mOpenMode = anOpenMode;
    return Open();
}

void ezFile::Close() {
    if (IsOpened()) {
        ezSystem().mClose(mFile);
        mFile = -1;
    }
}

ezFileOffset ezFile::Length() const {
    struct stat status = {};
    if (!IsOpened() || ezSystem().mFStat(mFile, &status) != 0) {
        return -1;
    }
    return status.st_size;
}

ezFileOffset ezFile::Seek(ezFileOffset anOffset, int aSeekMode) {
    if (!IsOpened()) {
        return -1;
    }
    ezFileOffset base = 0;
    switch (aSeekMode) {
    case ezFileSeekMode_Begin:
        break;
    case ezFileSeekMode_Current:
        base = mPosition;
        break;
    case ezFileSeekMode_End:
        base = Length();
        break;
    default:
        return -1;
    }
    ezFileOffset target = 0;
    if (base < 0 || __builtin_add_overflow(base, anOffset, &target) || target < 0) {
        return -1;
    }
    mPosition = target;
    return target;
}

int ezFile::Read(void* aBuffer, std::size_t aSize) {
    if (!IsOpened()) {
        return -1;
    }
    const std::size_t size = std::min<std::size_t>(aSize, INT_MAX);
    std::size_t count = 0;
    while (count < size) {
        const ssize_t piece =
            ezSystem().mPRead(mFile, static_cast<char*>(aBuffer) + count, size - count, mPosition);
        if (piece < 0) {
            if (errno == EINTR) {
                continue;
            }
            return count > 0 ? static_cast<int>(count) : -1;
        }
        count += static_cast<std::size_t>(piece);
        mPosition += piece;
        if (piece == 0 || mPosition == mLengthAtOpen) {
            break;
        }
    }
    return static_cast<int>(count);
}

bool ezFile::GetTimes(const ezCString& aPath, ezDateTime* aCreation, ezDateTime* aModification,
                      ezDateTime* anAccess) {
    struct stat status = {};
    if (HasNUL(aPath) || ezSystem().mStat(aPath.c_str(), &status) != 0) {
        return false;
    }
    if (aCreation != nullptr) {
        *aCreation = FromTimespec(status.st_ctim);
    }
    if (aModification != nullptr) {
        *aModification = FromTimespec(status.st_mtim);
    }
    if (anAccess != nullptr) {
        *anAccess = FromTimespec(status.st_atim);
    }
    return true;
}
