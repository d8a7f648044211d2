#include "ezHosting/detail/InstalledFolder.h"

#include <dlfcn.h>

#include <filesystem>
#include <system_error>

namespace {

namespace fs = std::filesystem;

/// What the loader calls the file that holds this code; absolute where it names a folder. Asked when the file
/// is loaded: a name that is relative leads nowhere once the program has changed its working directory.
std::string FindHome() {
    static const char sHere = 0; // stands wherever this code does
    Dl_info home = {};
    if (dladdr(&sHere, &home) == 0 || home.dli_fname == nullptr) {
        return {};
    }
    const std::string name = home.dli_fname;
    std::error_code error;
    return name.find('/') == std::string::npos ? name : fs::absolute(name, error).string();
}

const std::string kHome = FindHome();

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
    std::error_code error;
    return InstalledFolderOf(kHome, fs::read_symlink("/proc/self/exe", error).string());
}
