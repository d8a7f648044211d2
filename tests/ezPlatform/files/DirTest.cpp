#include "ezPlatform/files/Dir.h"

#include "ezPlatform/base/System.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <ctime>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

bool Create(const std::string& aPath) {
    return ezDir_CreateRecursively(ezCString(aPath.data(), aPath.size()));
}

bool IsFolder(const std::string& aPath) {
    return std::filesystem::is_directory(aPath);
}

/// Another working folder, for as long as it lives.
class WorkingFolder {
public:
    explicit WorkingFolder(const std::string& aPath) : mBefore(std::filesystem::current_path()) {
        std::filesystem::current_path(aPath);
    }
    ~WorkingFolder() { std::filesystem::current_path(mBefore); }
    WorkingFolder(const WorkingFolder&) = delete;
    WorkingFolder& operator=(const WorkingFolder&) = delete;

private:
    std::filesystem::path mBefore;
};

} // namespace

TEST(Dir, MakesAFolderAndThoseAboveIt) {
    const TemporaryFolder folder;
    EXPECT_TRUE(Create(folder.Path("a")));
    EXPECT_TRUE(IsFolder(folder.Path("a")));
    EXPECT_TRUE(Create(folder.Path("b/c/d")));
    EXPECT_TRUE(IsFolder(folder.Path("b/c/d")));
}

TEST(Dir, AFolderThatIsThereStaysAsItIs) {
    const TemporaryFolder folder;
    const std::string file = folder.Write("a/b/file", "content");
    EXPECT_TRUE(Create(folder.Path("a/b")));
    EXPECT_TRUE(Create(folder.Path("a")));
    EXPECT_EQ(std::filesystem::file_size(file), 7U);
    EXPECT_TRUE(Create("/"));
}

TEST(Dir, SlashesAtTheEndAndDoubledOnesDoNotCount) {
    const TemporaryFolder folder;
    EXPECT_TRUE(Create(folder.Path("a/")));
    EXPECT_TRUE(Create(folder.Path("b/c//")));
    EXPECT_TRUE(Create(folder.Path("d//e///f")));
    EXPECT_TRUE(IsFolder(folder.Path("a")));
    EXPECT_TRUE(IsFolder(folder.Path("b/c")));
    EXPECT_TRUE(IsFolder(folder.Path("d/e/f")));
}

TEST(Dir, ARelativePathStartsAtTheWorkingFolder) {
    const TemporaryFolder folder;
    const WorkingFolder working(folder.GetPath());
    EXPECT_TRUE(Create("a/b"));
    EXPECT_TRUE(Create("./c"));
    EXPECT_TRUE(IsFolder(folder.Path("a/b")));
    EXPECT_TRUE(IsFolder(folder.Path("c")));
    EXPECT_TRUE(Create(""));
    EXPECT_TRUE(Create("."));
}

TEST(Dir, AFileInTheWayIsAFailureAndStays) {
    const TemporaryFolder folder;
    const std::string file = folder.Write("file", "content");
    EXPECT_FALSE(Create(file));
    EXPECT_FALSE(Create(file + "/a"));
    EXPECT_FALSE(Create(file + "/"));
    EXPECT_EQ(std::filesystem::file_size(file), 7U);
}

TEST(Dir, ALinkToAFolderIsAFolderAndADanglingOneIsNot) {
    const TemporaryFolder folder;
    ASSERT_TRUE(Create(folder.Path("target")));
    ASSERT_EQ(symlink("target", folder.Path("link").c_str()), 0);
    ASSERT_EQ(symlink("nowhere", folder.Path("dangling").c_str()), 0);
    EXPECT_TRUE(Create(folder.Path("link/a")));
    EXPECT_TRUE(IsFolder(folder.Path("target/a")));
    EXPECT_FALSE(Create(folder.Path("dangling")));
    EXPECT_FALSE(Create(folder.Path("dangling/a")));
}

TEST(Dir, APathWithANULIsRefusedAndMakesNothing) {
    const TemporaryFolder folder;
    EXPECT_FALSE(Create(folder.Path("a") + std::string("\0b", 2)));
    EXPECT_FALSE(Create(folder.Path("a/") + std::string("\0", 1)));
    EXPECT_FALSE(std::filesystem::exists(folder.Path("a")));
}

TEST(Dir, APathLongerThanAnyIsRefusedAtOnce) {
    const std::clock_t start = std::clock();
    EXPECT_FALSE(Create(std::string(2000000, '/')));
    EXPECT_FALSE(Create(std::string(5000, 'a')));
    EXPECT_LT(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC, 2.0);
}

TEST(Dir, WhatTheSystemRefusesIsAFailure) {
    ezSystemCalls calls = ezSystem_Real();
    calls.mMkdir = [](const char*, mode_t) {
        errno = ENOSPC;
        return -1;
    };
    const TemporaryFolder folder;
    ezSystem_Replace(&calls);
    EXPECT_FALSE(Create(folder.Path("a")));
    EXPECT_TRUE(Create(folder.GetPath())) << "nothing had to be made";
    ezSystem_Replace(nullptr);
}

TEST(Dir, NewFoldersAreForEverybodyLessTheMask) {
    const TemporaryFolder folder;
    const mode_t before = umask(027);
    EXPECT_TRUE(Create(folder.Path("a/b")));
    umask(before);
    for (const char* name : {"a", "a/b"}) {
        struct stat status = {};
        ASSERT_EQ(stat(folder.Path(name).c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777U, 0750U) << name;
    }
}
