#include "fuzz/support/WriteFile.h"

#include "fuzz/support/Check.h"

#include <cstdio>

void WriteFile(const std::string& aPath, std::string_view aContent) {
    std::FILE* file = std::fopen(aPath.c_str(), "wb");
    FuzzCheck(file != nullptr);
    FuzzCheck(std::fwrite(aContent.data(), 1, aContent.size(), file) == aContent.size());
    FuzzCheck(std::fclose(file) == 0);
}
