#include "output/SameFile.h"

#include <filesystem>
#include <system_error>

bool IsSameFile(const std::string& aLeft, const std::string& aRight) {
    std::error_code ignored; // of two that are not there, or one
    return std::filesystem::equivalent(aLeft, aRight, ignored) && !ignored;
}
