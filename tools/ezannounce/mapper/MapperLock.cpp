#include "mapper/MapperLock.h"

#include "mapper/Limits.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr mode_t kModeOfLock = 0666;

std::string PathOfLock(const std::string& aPath) {
    const std::size_t nameStart = aPath.rfind('/') + 1;
    return aPath.substr(0, nameStart) + "." + aPath.substr(nameStart) + ".lock";
}

/// Reading is enough for a lock, and the file may be that of another user.
int OpenLock(const std::string& aPath) {
    constexpr int kFlags = O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    const int file = open(aPath.c_str(), kFlags | O_CREAT, kModeOfLock);
    // In a shared folder some systems refuse to make what another user has made.
    return file < 0 && errno == EACCES ? open(aPath.c_str(), kFlags) : file;
}

} // namespace

MapperLock::MapperLock(const std::string& aPath, std::chrono::milliseconds aPatience)
    : mFile(OpenLock(PathOfLock(aPath))) {
    if (mFile >= 0) {
        Wait(aPatience);
    } else if (errno != EACCES && errno != EPERM && errno != EROFS && errno != ENOENT) {
        mReason = std::string("cannot be locked: ") + std::strerror(errno);
    }
}

MapperLock::~MapperLock() {
    if (mFile >= 0) {
        close(mFile); // the lock goes with it
    }
}

void MapperLock::Wait(std::chrono::milliseconds aPatience) {
    const auto end = std::chrono::steady_clock::now() + aPatience;
    while (flock(mFile, LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR) {
            return; // there are no locks here
        }
        if (std::chrono::steady_clock::now() >= end) {
            mReason = "somebody else edits it";
            return;
        }
        std::this_thread::sleep_for(kMapperLock_Pause);
    }
}
