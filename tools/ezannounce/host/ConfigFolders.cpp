#include "host/ConfigFolders.h"

#include "ez/Environment.h"
#include "ezPlatform/config/Config.h"

#include <filesystem>
#include <system_error>

namespace {

bool HasMediaTypesFile(const std::filesystem::path& aFolder) {
    std::error_code ignored;
    return std::filesystem::exists(aFolder / kezMediaTypesFileName, ignored);
}

/// The data folder that belongs to the folder of this program; "" where it holds no media types file.
std::string InstalledFolder() {
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    const std::filesystem::path folder =
        (program.parent_path() / EZANNOUNCE_DATA_FROM_BIN).lexically_normal();
    return !error && HasMediaTypesFile(folder) ? folder.string() : std::string();
}

} // namespace

ConfigFolders FindConfigFolders(const Arguments& anArguments) {
    ezCString readOnly;
    ezCString readWrite;
    if (anArguments.mConfigFolder) {
        readOnly = ezCString(*anArguments.mConfigFolder);
        readWrite = readOnly;
    } else {
        ezConfigConfig::GetConfigPaths(readOnly, readWrite, kezConfigPathFileName);
        if (readOnly.IsEmpty()) {
            const std::string installed = HasMediaTypesFile(".") ? std::string() : InstalledFolder();
            readOnly = installed.empty() ? ezCString(".") : ezCString(installed);
        }
    }
    if (anArguments.mStateFolder) {
        readWrite = ezCString(*anArguments.mStateFolder);
    }
    if (readWrite.IsEmpty()) {
        readWrite = ".";
    }
    return {readOnly.c_str(), readWrite.c_str()};
}
