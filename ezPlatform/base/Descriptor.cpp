#include "ezPlatform/base/Descriptor.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

int ezDescriptor_AboveStandard(int aFile) {
    if (aFile < 0 || aFile > STDERR_FILENO) {
        return aFile;
    }
    const int above = fcntl(aFile, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    const int error = errno;
    close(aFile);
    errno = error;
    return above;
}

DIR* ezDescriptor_AboveStandard(DIR* aFolder) {
    if (aFolder == nullptr || dirfd(aFolder) > STDERR_FILENO) {
        return aFolder;
    }
    const int above = fcntl(dirfd(aFolder), F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    DIR* const folder = above >= 0 ? fdopendir(above) : nullptr;
    const int error = errno;
    if (folder == nullptr && above >= 0) {
        close(above);
    }
    closedir(aFolder);
    errno = error;
    return folder;
}
