#include "host/Unreadable.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

std::string WhyUnreadable(const std::string& aPath) {
    struct stat status = {};
    if (stat(aPath.c_str(), &status) != 0) {
        return std::strerror(errno);
    }
    if (!S_ISREG(status.st_mode)) {
        return "not a regular file";
    }
    if (faccessat(AT_FDCWD, aPath.c_str(), R_OK, AT_EACCESS) != 0) {
        return std::strerror(errno);
    }
    return "cannot be opened";
}
