#include "ezHosting/detail/InstalledFolder.h"

#include <dlfcn.h>

#include <filesystem>
#include <system_error>

namespace {

namespace fs = std::filesystem;

/// Stands wherever this code does.
const char kHere = 0;

/// A data folder beside a file. The file's folder is taken as it really is: ".." after a link, such as /lib,
/// would lead somewhere else.
std::string Beside(const std::string& aFile, const char* aRelative) {
    std::error_code error;
    const fs::path file = fs::canonical(aFile, error);
    return error ? std::string() : (file.parent_path() / aRelative).lexically_normal().string();
}

} // namespace

std::string InstalledFolderOf(const std::string& aHome, const std::string& aProgram) {
    std::error_code error;
    // What is called without a folder is the program, by the name that it was started with.
    const bool fProgram = aHome.find('/') == std::string::npos || fs::equivalent(aHome, aProgram, error);
    return fProgram ? Beside(aProgram, EZHOSTING_DATA_FROM_BIN) : Beside(aHome, EZHOSTING_DATA_FROM_LIB);
}

std::string InstalledFolder() {
    Dl_info home = {};
    if (dladdr(&kHere, &home) == 0 || home.dli_fname == nullptr) {
        return {};
    }
    std::error_code error;
    return InstalledFolderOf(home.dli_fname, fs::read_symlink("/proc/self/exe", error).string());
}
