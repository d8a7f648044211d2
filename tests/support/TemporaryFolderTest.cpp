#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace {

std::string Content(const std::string& aPath) {
    std::ifstream file(aPath, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

} // namespace

TEST(TemporaryFolder, IsAnEmptyFolderOfItsOwn) {
    const TemporaryFolder folder;
    const TemporaryFolder other;
    EXPECT_TRUE(std::filesystem::is_directory(folder.GetPath()));
    EXPECT_TRUE(std::filesystem::is_empty(folder.GetPath()));
    EXPECT_NE(folder.GetPath(), other.GetPath());
    EXPECT_EQ(folder.Path("name"), folder.GetPath() + "/name");
    EXPECT_FALSE(std::filesystem::exists(folder.Path("name"))) << "a path makes nothing";
}

TEST(TemporaryFolder, WritesFilesByteForByte) {
    const TemporaryFolder folder;
    const std::string bytes("a\0\r\n\xFF", 5);
    const std::string path = folder.Write("file.bin", bytes);
    EXPECT_EQ(path, folder.Path("file.bin"));
    EXPECT_EQ(Content(path), bytes);
    EXPECT_EQ(std::filesystem::file_size(path), 5U);
    folder.Write("file.bin", "x");
    EXPECT_EQ(Content(path), "x") << "a second write replaces the first";
    EXPECT_EQ(std::filesystem::file_size(folder.Write("empty", "")), 0U);
}

TEST(TemporaryFolder, MakesTheFoldersInAName) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("a/b/c.txt", "deep");
    EXPECT_EQ(path, folder.GetPath() + "/a/b/c.txt");
    EXPECT_EQ(Content(path), "deep");
}

TEST(TemporaryFolder, AFileThatCannotBeWrittenIsNotPassedOver) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.Path("taken"));
    EXPECT_THROW(folder.Write("taken", "x"), std::runtime_error);
}

TEST(TemporaryFolder, IsGoneWithEverythingInItInTheEnd) {
    std::string path;
    {
        const TemporaryFolder folder;
        path = folder.GetPath();
        folder.Write("a/b/c", "x");
        EXPECT_TRUE(std::filesystem::exists(path));
    }
    EXPECT_FALSE(std::filesystem::exists(path));
}
