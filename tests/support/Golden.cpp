#include "support/Golden.h"

#include "support/WholeFile.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

void ExpectRecorded(const std::string& aPath, const std::string& aFound) {
    if (std::getenv("EZ_UPDATE_GOLDEN") != nullptr) {
        std::filesystem::create_directories(std::filesystem::path(aPath).parent_path());
        std::ofstream file(aPath, std::ios::binary);
        file << aFound;
        file.close();
        EXPECT_TRUE(file.good()) << aPath;
    }
    EXPECT_EQ(aFound, ContentAt(aPath)) << aPath << ": EZ_UPDATE_GOLDEN=1 records what is found";
}

void ExpectNoOtherRecords(const std::string& aFolder, const std::set<std::string>& aPaths) {
    for (const auto& entry : std::filesystem::directory_iterator(aFolder)) {
        EXPECT_TRUE(entry.path().extension() != ".expected" || aPaths.count(entry.path().string()) != 0)
            << entry.path();
    }
}
