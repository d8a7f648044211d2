#include "output/WholeFile.h"

#include "ezPlatform/files/File.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace {

/// Why no file can be made under a path, or one replaced.
std::string WhyUnwritable(const std::string& aPath) {
    struct stat status = {};
    if (stat(aPath.c_str(), &status) == 0) {
        if (!S_ISREG(status.st_mode)) {
            return S_ISDIR(status.st_mode) ? "is a folder" : "not a regular file";
        }
        if (faccessat(AT_FDCWD, aPath.c_str(), W_OK, AT_EACCESS) != 0) {
            return std::strerror(errno);
        }
    } else if (errno != ENOENT) {
        return std::strerror(errno);
    }
    const std::string folder = std::filesystem::path(aPath).parent_path().string();
    if (faccessat(AT_FDCWD, folder.empty() ? "." : folder.c_str(), W_OK | X_OK, AT_EACCESS) != 0) {
        return std::strerror(errno);
    }
    return "cannot be written";
}

} // namespace

bool WriteWholeFile(const std::string& aPath, const std::string& aBytes, std::string& aReason) {
    ezFile file;
    if (!file.Create(ezCString(aPath), true, ezFileAccessMode_ReadWrite)) {
        aReason = WhyUnwritable(aPath);
        return false;
    }
    errno = 0;
    const int written = file.Write(aBytes.data(), aBytes.size());
    if (written < 0 || static_cast<std::size_t>(written) != aBytes.size() || !file.Close()) {
        aReason = errno != 0 ? std::strerror(errno) : "cannot be written";
        return false;
    }
    return true;
}
