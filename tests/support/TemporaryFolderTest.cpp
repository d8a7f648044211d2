#include "support/TemporaryFolder.h"
#include "support/WholeFile.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>

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
    EXPECT_EQ(ReadWholeFile(path), bytes);
    EXPECT_EQ(std::filesystem::file_size(path), 5U);
    folder.Write("file.bin", "x");
    EXPECT_EQ(ReadWholeFile(path), "x") << "a second write replaces the first";
    EXPECT_EQ(std::filesystem::file_size(folder.Write("empty", "")), 0U);
}

TEST(TemporaryFolder, MakesTheFoldersInAName) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("a/b/c.txt", "deep");
    EXPECT_EQ(path, folder.GetPath() + "/a/b/c.txt");
    EXPECT_EQ(ReadWholeFile(path), "deep");
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

TEST(TemporaryFolder, MakesFolders) {
    const TemporaryFolder folder;
    const std::string path = folder.MakeFolder("a/b");
    EXPECT_EQ(path, folder.Path("a/b"));
    EXPECT_TRUE(std::filesystem::is_directory(path));
    EXPECT_TRUE(std::filesystem::is_empty(path));
}

TEST(MemoryFolder, IsAFolderLikeAnyOther) {
    std::string path;
    {
        const MemoryFolder folder;
        path = folder.GetPath();
        EXPECT_EQ(ReadWholeFile(folder.Write("a/b", "x")), "x");
    }
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(MemoryFolder, WithoutTheRoomLiesWhereTemporaryFilesLie) {
    const MemoryFolder folder(UINTMAX_MAX);
    EXPECT_EQ(std::filesystem::path(folder.GetPath()).parent_path(), std::filesystem::temp_directory_path());
}
