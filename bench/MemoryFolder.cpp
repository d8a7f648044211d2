#include "bench/MemoryFolder.h"

#include "bench/Measure.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>

namespace {

constexpr const char* kMemoryFileSystem = "/dev/shm";
constexpr std::uintmax_t kRoom = std::uintmax_t{1} << 30;

bool HasMemory() {
    std::error_code error;
    const std::filesystem::space_info space = std::filesystem::space(kMemoryFileSystem, error);
    return !error && space.available >= kRoom;
}

} // namespace

MemoryFolder::MemoryFolder() {
    const std::filesystem::path base =
        HasMemory() ? std::filesystem::path(kMemoryFileSystem) : std::filesystem::temp_directory_path();
    mPath = (base / "ezBenchXXXXXX").string();
    Require(mkdtemp(mPath.data()) != nullptr, "there is a place for many files");
}

MemoryFolder::~MemoryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(mPath, ignored);
}
