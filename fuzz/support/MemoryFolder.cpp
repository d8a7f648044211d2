#include "fuzz/support/MemoryFolder.h"

#include "fuzz/support/Check.h"

#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace {

constexpr const char* kMemoryFileSystem = "/dev/shm";

} // namespace

MemoryFolder::MemoryFolder() {
    std::error_code ignored;
    const std::filesystem::path memory(kMemoryFileSystem);
    const auto base =
        std::filesystem::is_directory(memory, ignored) ? memory : std::filesystem::temp_directory_path();
    mPath = (base / "ezFuzzXXXXXX").string();
    FuzzCheck(mkdtemp(mPath.data()) != nullptr);
}

MemoryFolder::~MemoryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(mPath, ignored);
}

std::string MemoryFolder::MakeFolder(const std::string& aName) const {
    std::string path = Path(aName);
    FuzzCheck(mkdir(path.c_str(), 0700) == 0);
    return path;
}

void WriteFile(const std::string& aPath, std::string_view aContent) {
    std::FILE* file = std::fopen(aPath.c_str(), "wb");
    FuzzCheck(file != nullptr);
    FuzzCheck(std::fwrite(aContent.data(), 1, aContent.size(), file) == aContent.size());
    FuzzCheck(std::fclose(file) == 0);
}
