#include "support/TemporaryFolder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <unistd.h>

namespace {

std::string PlaceInMemory(std::uintmax_t aRoom) {
    constexpr const char* kMemoryFileSystem = "/dev/shm";
    std::error_code error;
    const std::filesystem::space_info space = std::filesystem::space(kMemoryFileSystem, error);
    const bool fRoom = !error && space.available >= aRoom;
    return fRoom && access(kMemoryFileSystem, W_OK | X_OK) == 0
               ? kMemoryFileSystem
               : std::filesystem::temp_directory_path().string();
}

} // namespace

TemporaryFolder::TemporaryFolder() : TemporaryFolder(std::filesystem::temp_directory_path().string()) {}

TemporaryFolder::TemporaryFolder(const std::string& aBase) {
    std::string pattern = (std::filesystem::path(aBase) / "ezTestXXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("no temporary folder");
    }
    mPath = pattern;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(mPath, ignored);
}

std::string TemporaryFolder::Write(const std::string& aName, const std::string& aContent) const {
    const std::string path = Path(aName);
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream file(path, std::ios::binary);
    file << aContent;
    file.close();
    if (!file) {
        throw std::runtime_error("cannot write " + path);
    }
    return path;
}

std::string TemporaryFolder::MakeFolder(const std::string& aName) const {
    std::string path = Path(aName);
    std::filesystem::create_directories(path);
    return path;
}

MemoryFolder::MemoryFolder(std::uintmax_t aRoom) : TemporaryFolder(PlaceInMemory(aRoom)) {}
