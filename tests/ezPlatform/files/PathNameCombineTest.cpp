#include "ezPlatform/files/PathName.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::string Full(const ezPathName& aPath) {
    return std::string(aPath.GetFullPath().View());
}

ezPathName Folder(const char* aPath) {
    return ezPathName::MakeDirPath(aPath);
}

bool Exists(const std::string& aPath) {
    return ezPathName::MakeFilePath(ezCString(aPath.data(), aPath.size())).FileExists();
}

} // namespace

TEST(PathNameCombine, AFolderEndsInASlashUnlessItIsEmpty) {
    EXPECT_EQ(Full(Folder("/etc/media")), "/etc/media/");
    EXPECT_EQ(Full(Folder("/etc/media/")), "/etc/media/");
    EXPECT_EQ(Full(Folder("media")), "media/");
    EXPECT_EQ(Full(Folder("/")), "/");
    EXPECT_EQ(Full(Folder("")), "");
    EXPECT_FALSE(Folder("").IsValid());
    EXPECT_EQ(Full(Folder("a\\")), "a\\/") << "nothing is rewritten";
    EXPECT_TRUE(Folder("/etc/media").GetFullName().IsEmpty());
}

TEST(PathNameCombine, AFileIsPutAfterItsFolder) {
    const ezPathName path = ezPathName::MakeCombinedFilePath(Folder("/etc/media"), "_MediaMapper.txt");
    EXPECT_EQ(Full(path), "/etc/media/_MediaMapper.txt");
    EXPECT_EQ(path.GetFullName(), "_MediaMapper.txt");
    EXPECT_EQ(path.GetFileName(), "_MediaMapper");
    EXPECT_EQ(path.GetExtension(), "txt");
    EXPECT_TRUE(path.IsAbsolute());
    EXPECT_EQ(Full(ezPathName::MakeCombinedFilePath(Folder("/"), "a.b")), "/a.b");
}

TEST(PathNameCombine, TheEmptyFolderIsTheWorkingFolder) {
    const ezPathName path = ezPathName::MakeCombinedFilePath(Folder(""), "a.b");
    EXPECT_EQ(Full(path), "a.b");
    EXPECT_FALSE(path.IsAbsolute());
    EXPECT_EQ(Full(ezPathName::MakeCombinedDirPath(Folder(""), "sub")), "sub/");
    EXPECT_EQ(Full(ezPathName::MakeCombinedDirPath(Folder(""), "")), "");
}

TEST(PathNameCombine, AFolderIsPutAfterItsFolderAndCarriesOn) {
    const ezPathName folder = ezPathName::MakeCombinedDirPath(Folder("/etc"), "media/lists");
    EXPECT_EQ(Full(folder), "/etc/media/lists/");
    EXPECT_EQ(Full(ezPathName::MakeCombinedFilePath(folder, "a.b")), "/etc/media/lists/a.b");
    EXPECT_EQ(Full(ezPathName::MakeCombinedDirPath(Folder("/etc"), "media/")), "/etc/media/");
    EXPECT_EQ(Full(ezPathName::MakeCombinedDirPath(Folder("/etc"), "")), "/etc/");
}

TEST(PathNameCombine, BackslashesOfTheRelativeNameAreWrittenAsSlashesAndThoseOfTheFolderStay) {
    EXPECT_EQ(Full(ezPathName::MakeCombinedFilePath(Folder("/a\\b"), "c\\d\\e.mp3")), "/a\\b/c/d/e.mp3");
    EXPECT_EQ(Full(ezPathName::MakeCombinedDirPath(Folder("/a\\b"), "c\\d\\")), "/a\\b/c/d/");
}

TEST(PathNameCombine, TheParentIsTheFolderThatAFileLiesIn) {
    const char* const kParents[][2] = {
        {"/m/lists/a.m3u", "/m/lists/"},
        {"/a.m3u", "/"},
        {"a.m3u", ""},
        {"lists/a.m3u", "lists/"},
        {"C:\\m\\a.m3u", "C:\\m\\"},
        {"/m/lists/", "/m/lists/"},
        {"C:\\a.m3u", "C:\\"},
        {"", ""},
        {"..", ""},
    };
    for (const char* const* parent : kParents) {
        EXPECT_EQ(Full(ezPathName::MakeFilePath(parent[0]).GetParentPath()), parent[1]) << parent[0];
    }
    const ezPathName folder = ezPathName::MakeFilePath("C:\\m\\a.m3u").GetParentPath();
    EXPECT_EQ(Full(ezPathName::MakeCombinedFilePath(folder, "x\\b.mp3")), "C:\\m\\x/b.mp3");
    EXPECT_FALSE(ezPathName::MakeFilePath("a.m3u").GetParentPath().IsValid());
}

TEST(PathNameCombine, ResetMakesItInvalid) {
    ezPathName path = ezPathName::MakeFilePath("/a/b.c");
    path.Reset();
    EXPECT_FALSE(path.IsValid());
    EXPECT_EQ(Full(path), "");
    EXPECT_TRUE(path.GetFullName().IsEmpty());
    EXPECT_TRUE(path.GetExtension().IsEmpty());
    EXPECT_FALSE(path.IsAbsolute());
    EXPECT_FALSE(path.FileExists());
}

TEST(PathNameCombine, WhatIsNoFolderExists) {
    const TemporaryFolder folder;
    EXPECT_TRUE(Exists(folder.Write("a.txt", "")));
    EXPECT_FALSE(Exists(folder.Path("b.txt")));
    EXPECT_FALSE(Exists(folder.GetPath()));
    EXPECT_FALSE(Exists(folder.GetPath() + "/"));
    EXPECT_FALSE(Exists(folder.Path("a.txt/b")));
    EXPECT_FALSE(Exists(folder.Path(std::string(300, 'x')))) << "no file has so long a name";
    EXPECT_FALSE(Exists(""));
    ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
    EXPECT_TRUE(Exists(folder.Path("pipe")));
}

TEST(PathNameCombine, ALinkExistsWhenWhatItLeadsToDoes) {
    const TemporaryFolder folder;
    folder.Write("a.txt", "");
    ASSERT_EQ(symlink("a.txt", folder.Path("good").c_str()), 0);
    ASSERT_EQ(symlink("b.txt", folder.Path("dangling").c_str()), 0);
    ASSERT_EQ(symlink(".", folder.Path("folder").c_str()), 0);
    EXPECT_TRUE(Exists(folder.Path("good")));
    EXPECT_FALSE(Exists(folder.Path("dangling")));
    EXPECT_FALSE(Exists(folder.Path("folder")));
}

TEST(PathNameCombine, APathWithANULDoesNotFindWhatStandsBeforeIt) {
    const TemporaryFolder folder;
    EXPECT_FALSE(Exists(folder.Write("a.txt", "") + std::string("\0b", 2)));
}
