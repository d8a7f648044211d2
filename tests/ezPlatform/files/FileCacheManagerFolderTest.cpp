#include "ezPlatform/files/FileCacheManager.h"

#include "ezPlatform/base/System.h"
#include "ezPlatform/files/File.h"
#include "support/Str.h"
#include "support/TemporaryFolder.h"
#include "support/Unprivileged.h"
#include "support/WholeFile.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

// What may lie in the folder of a cache, or stand in its place.

namespace {

using FileOwner = std::unique_ptr<ezFile>;

std::size_t CountIn(const std::string& aFolder) {
    const std::filesystem::directory_iterator entries(aFolder);
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

std::string Content(ezFile& aFile) {
    std::string content(static_cast<std::size_t>(aFile.Length()), '\0');
    EXPECT_EQ(aFile.Read(content.data(), content.size()), static_cast<int>(content.size()));
    return content;
}

class FileCacheManagerFolder : public testing::Test {
protected:
    /// What a request for a name gives: its content, "<new>" after filling it with aFilled, or "<null>".
    static std::string Ask(ezFileCacheManager& aCache, const std::string& aName,
                           const std::string& aFilled = "filled") {
        bool fNew = false;
        const FileOwner file(aCache.OpenCachedFile(Bytes(aName), &fNew, 0));
        if (file == nullptr) {
            EXPECT_FALSE(fNew);
            return "<null>";
        }
        if (!fNew) {
            return Content(*file);
        }
        EXPECT_EQ(file->Write(aFilled.data(), aFilled.size()), static_cast<int>(aFilled.size()));
        aCache.SetCachedFileState(Bytes(aName), file.get(), true);
        return "<new>";
    }
    std::string Ask(const std::string& aName) { return Ask(mCache, aName); }
    std::string At(const std::string& aName) const { return mFolder.Path("cache/ezcache/" + aName); }

    TemporaryFolder mFolder;
    ezFileCacheManager mCache{mFolder.Path("cache").c_str(), 1000000, 1000};
};

TEST_F(FileCacheManagerFolder, ALinkInThePlaceOfTheCachesOwnFolderIsRefused) {
    const std::string photo = mFolder.Write("photos/a", "mine");
    mFolder.Write("photos/.fill-1-1-1-1", "mine too");
    std::filesystem::create_directory(mFolder.Path("cache"));
    std::filesystem::create_directory_symlink(mFolder.Path("photos"), mFolder.Path("cache/ezcache"));
    const auto before = std::filesystem::last_write_time(photo);
    ezFileCacheManager small(mFolder.Path("cache").c_str(), 1, 1);
    EXPECT_EQ(Ask(small, "a"), "<null>");
    EXPECT_EQ(Ask(small, "b"), "<null>");
    ezFile file;
    EXPECT_TRUE(file.Open(photo.c_str(), ezFileOpenMode_Read, 0));
    small.SetCachedFileState("a", &file, false);
    EXPECT_EQ(ContentAt(photo), "mine");
    EXPECT_EQ(std::filesystem::last_write_time(photo), before);
    EXPECT_EQ(CountIn(mFolder.Path("photos")), 2U);
}

TEST_F(FileCacheManagerFolder, APlaceThatCannotBeLookedAtMayBeALinkAndIsLookedAtAgain) {
    std::filesystem::create_directories(mFolder.Path("photos"));
    std::filesystem::create_directories(mFolder.Path("cache"));
    std::filesystem::create_directory_symlink(mFolder.Path("photos"), mFolder.Path("cache/ezcache"));
    static bool sfFails;
    sfFails = true;
    ezSystemCalls calls = ezSystem_Real();
    calls.mLStatAt = [](int aFolder, const char* aName, struct stat* aStatus) {
        errno = EIO;
        return sfFails ? -1 : ezSystem_Real().mLStatAt(aFolder, aName, aStatus);
    };
    ezSystem_Replace(&calls);
    const std::string first = Ask("a");
    sfFails = false;
    const std::string second = Ask("a");
    std::filesystem::remove(mFolder.Path("cache/ezcache"));
    ezSystem_Replace(nullptr);
    EXPECT_EQ(first, "<null>");
    EXPECT_EQ(second, "<null>");
    EXPECT_TRUE(std::filesystem::is_empty(mFolder.Path("photos")));
}

TEST_F(FileCacheManagerFolder, ALinkToTheFolderThatIsGivenIsFollowed) {
    std::filesystem::create_directory(mFolder.Path("elsewhere"));
    std::filesystem::create_directory_symlink(mFolder.Path("elsewhere"), mFolder.Path("cache"));
    EXPECT_EQ(Ask("a"), "<new>");
    EXPECT_EQ(Ask("a"), "filled");
    EXPECT_EQ(ContentAt(mFolder.Path("elsewhere/ezcache/a")), "filled");
}

TEST_F(FileCacheManagerFolder, NothingThatIsNoFileIsWaitedForOpenedOrRemoved) {
    std::filesystem::create_directories(At("folder/inner"));
    ASSERT_EQ(mkfifo(At("pipe").c_str(), 0600), 0);
    std::filesystem::create_directory(At(".fill-folder"));
    std::filesystem::create_symlink(mFolder.Path("nothing"), At("dangling"));
    const std::string outside = mFolder.Write("outside", "outside");
    std::filesystem::create_symlink(outside, At(".fill-link"));
    ezFileCacheManager small(mFolder.Path("cache").c_str(), 1000, 1);
    EXPECT_EQ(Ask(small, "folder"), "<null>");
    EXPECT_EQ(Ask(small, "pipe"), "<null>");
    EXPECT_EQ(Ask(small, "dangling"), "<new>"); // the link is replaced
    EXPECT_EQ(Ask(small, "dangling"), "filled");
    EXPECT_EQ(Ask(small, "b"), "<new>");
    EXPECT_EQ(Ask(small, "b"), "filled");
    EXPECT_TRUE(std::filesystem::exists(At("folder/inner")));
    EXPECT_TRUE(std::filesystem::exists(At("pipe")));
    EXPECT_EQ(ContentAt(At("dangling")), "<none>"); // went as the oldest
    EXPECT_TRUE(std::filesystem::is_symlink(At(".fill-link")));
    EXPECT_EQ(ContentAt(outside), "outside");
    EXPECT_FALSE(std::filesystem::exists(mFolder.Path("nothing")));
}

TEST_F(FileCacheManagerFolder, AReplacedLinkDoesNotLowerTheCount) {
    ezFileCacheManager small(mFolder.Path("cache").c_str(), 1000, 100);
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(Ask(small, "f" + std::to_string(i)), "<new>");
    }
    std::filesystem::remove(At("f99"));
    std::filesystem::create_symlink("/", At("link0"));
    std::filesystem::create_symlink("/", At("link1"));
    EXPECT_EQ(Ask(small, "link0"), "<new>");
    EXPECT_EQ(Ask(small, "link1"), "<new>");
    EXPECT_LE(CountIn(At("")), 100U);
}

TEST_F(FileCacheManagerFolder, AnUnreadableFileGivesNullAndStays) {
    mFolder.Write("cache/ezcache/a", "secret");
    std::filesystem::permissions(At("a"), std::filesystem::perms::none);
    {
        const Unprivileged unprivileged;
        EXPECT_EQ(Ask("a"), "<null>");
    }
    EXPECT_EQ(std::filesystem::file_size(At("a")), 6U);
}

TEST_F(FileCacheManagerFolder, AFolderWithANULReachesNoPathThatTheNULWouldCutShort) {
    const std::string outside = mFolder.Write("outside", "outside");
    ezFileCacheManager cut(Bytes(outside + std::string("\0/x", 3)), 1000, 10);
    EXPECT_EQ(Ask(cut, "a"), "<null>");
    bool fNew = false;
    const FileOwner file(mCache.OpenCachedFile("a", &fNew, 0));
    EXPECT_EQ(file->Write("a", 1), 1);
    cut.SetCachedFileState("a", file.get(), true); // a file of another cache
    EXPECT_EQ(CountIn(At("")), 0U);
    ezFile same;
    EXPECT_TRUE(same.Open(outside.c_str(), ezFileOpenMode_Read, 0));
    cut.SetCachedFileState("a", &same, false);
    EXPECT_EQ(ContentAt(outside), "outside");
}

TEST_F(FileCacheManagerFolder, WithoutAPlaceForTheAnswerThereIsNoFile) {
    EXPECT_EQ(mCache.OpenCachedFile("a", nullptr, 0), nullptr);
    EXPECT_FALSE(std::filesystem::exists(mFolder.Path("cache")));
}

// ---- what is reported late, twice, or of another file ----

TEST_F(FileCacheManagerFolder, AFileReportedBadDoesNotTakeTheNameOfWhatReplacedIt) {
    EXPECT_EQ(Ask("a"), "<new>");
    bool fNew = true;
    const FileOwner old(mCache.OpenCachedFile("a", &fNew, 0));
    EXPECT_FALSE(fNew);
    std::filesystem::remove(At("a"));
    EXPECT_EQ(Ask(mCache, "a", "better"), "<new>");
    mCache.SetCachedFileState("a", old.get(), false);
    EXPECT_EQ(Ask("a"), "better");
}

TEST_F(FileCacheManagerFolder, AFileThatWasClosedWhileItWasFilledTakesNobodysName) {
    bool fNew = false;
    const FileOwner closed(mCache.OpenCachedFile("a", &fNew, 0));
    EXPECT_TRUE(fNew);
    EXPECT_EQ(Ask("a"), "<new>"); // by somebody else meanwhile
    closed->Close();
    mCache.SetCachedFileState("a", closed.get(), false);
    EXPECT_EQ(Ask("a"), "filled");
    mCache.SetCachedFileState("a", closed.get(), true);
    EXPECT_EQ(Ask("a"), "filled");
}

TEST_F(FileCacheManagerFolder, AFileThatIsNotTheCachesHasNoSayInIt) {
    EXPECT_EQ(Ask("a"), "<new>");
    ezFile foreign;
    EXPECT_TRUE(foreign.Create(mFolder.Path("foreign").c_str(), true, ezFileAccessMode_ReadWrite));
    EXPECT_EQ(foreign.Write("x", 1), 1);
    mCache.SetCachedFileState("a", &foreign, true);
    mCache.SetCachedFileState("a", &foreign, false);
    EXPECT_TRUE(foreign.Close());
    EXPECT_EQ(Ask("a"), "filled");
    EXPECT_EQ(ContentAt(mFolder.Path("foreign")), "x");
}

TEST_F(FileCacheManagerFolder, ReportedGoodAndThenBadAFileIsGone) {
    bool fNew = false;
    const FileOwner file(mCache.OpenCachedFile("a", &fNew, 0));
    mCache.SetCachedFileState("a", file.get(), true);
    mCache.SetCachedFileState("a", file.get(), true);
    EXPECT_EQ(CountIn(At("")), 1U);
    mCache.SetCachedFileState("a", file.get(), false);
    EXPECT_EQ(CountIn(At("")), 0U);
}

TEST_F(FileCacheManagerFolder, WhatTookThePlaceOfAFileBeingFilledIsNeitherCachedNorRemoved) {
    for (const bool fGood : {true, false}) {
        bool fNew = false;
        const FileOwner file(mCache.OpenCachedFile("a", &fNew, 0));
        ASSERT_TRUE(file != nullptr && fNew);
        const std::string filling = std::filesystem::directory_iterator(At(""))->path().string();
        std::filesystem::remove(filling);
        std::ofstream(filling) << "another one's";
        EXPECT_EQ(file->Write("x", 1), 1);
        mCache.SetCachedFileState("a", file.get(), fGood);
        EXPECT_EQ(ContentAt(filling), "another one's");
        EXPECT_FALSE(std::filesystem::exists(At("a")));
        std::filesystem::remove(filling);
    }
}

TEST_F(FileCacheManagerFolder, WhatNeitherReachesTheDiskNorCanBeEmptiedIsHandedOutAsEmpty) {
    ezSystemCalls calls = ezSystem_Real();
    calls.mFSync = [](int) { return -1; };
    calls.mFTruncate = [](int, ezFileOffset) { return -1; };
    bool fNew = false;
    const FileOwner file(mCache.OpenCachedFile("a", &fNew, 0));
    EXPECT_EQ(file->Write("x", 1), 1);
    errno = EIO;
    ezSystem_Replace(&calls);
    mCache.SetCachedFileState("a", file.get(), true);
    ezSystem_Replace(nullptr);
    EXPECT_EQ(file->LengthAtOpen(), 0);
    EXPECT_EQ(CountIn(At("")), 0U);
}

// ---- bounds ----

TEST_F(FileCacheManagerFolder, BoundsThatShrankHoldFromTheFirstNewFileOn) {
    std::filesystem::create_directories(At(""));
    for (int i = 0; i < 3000; ++i) {
        std::ofstream(At(std::to_string(i))) << "x"; // several times what one look keeps in mind
    }
    ezFileCacheManager small(mFolder.Path("cache").c_str(), 1000000, 5);
    EXPECT_EQ(Ask(small, "2999"), "x");
    EXPECT_EQ(Ask(small, "new"), "<new>");
    EXPECT_EQ(CountIn(At("")), 5U);
    EXPECT_EQ(Ask(small, "new"), "filled");
    EXPECT_EQ(Ask(small, "2999"), "x"); // used most recently but for the new one
}

// Between two looks at the folder, when only what was seen then is known.
TEST_F(FileCacheManagerFolder, WhatAnotherObjectUsedSinceTheLastLookStays) {
    ezFileCacheManager cache(mFolder.Path("cache").c_str(), 1000000, 100);
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(Ask(cache, "f" + std::to_string(i)), "<new>");
    }
    EXPECT_EQ(Ask("f0"), "filled");
    EXPECT_EQ(Ask(cache, "new"), "<new>");
    EXPECT_EQ(CountIn(At("")), 100U);
    EXPECT_TRUE(std::filesystem::exists(At("f0")));
    EXPECT_FALSE(std::filesystem::exists(At("f1")));
}

TEST_F(FileCacheManagerFolder, TwoFillingsOfOneNameSinceTheLastLookCountOnce) {
    ezFileCacheManager cache(mFolder.Path("cache").c_str(), 1000000, 100);
    for (int i = 0; i < 99; ++i) {
        EXPECT_EQ(Ask(cache, "f" + std::to_string(i)), "<new>");
    }
    bool fNew = false;
    const FileOwner first(cache.OpenCachedFile("twice", &fNew, 0));
    const FileOwner second(cache.OpenCachedFile("twice", &fNew, 0));
    cache.SetCachedFileState("twice", first.get(), true);
    cache.SetCachedFileState("twice", second.get(), true);
    EXPECT_EQ(CountIn(At("")), 100U);
    EXPECT_TRUE(std::filesystem::exists(At("f0")));
}

TEST_F(FileCacheManagerFolder, TheVeryLastTimeThereIsIsFollowedByNone) {
    mFolder.Write("cache/ezcache/a", "x");
    ezSystemCalls calls = ezSystem_Real();
    calls.mLStatAt = [](int aFolder, const char* aName, struct stat* aStatus) {
        const int result = ezSystem_Real().mLStatAt(aFolder, aName, aStatus);
        aStatus->st_mtim.tv_sec = std::numeric_limits<decltype(aStatus->st_mtim.tv_sec)>::max();
        aStatus->st_mtim.tv_nsec = 999999999;
        return result;
    };
    ezSystem_Replace(&calls);
    const std::string answer = Ask("b");
    ezSystem_Replace(nullptr);
    EXPECT_EQ(answer, "<new>");
    EXPECT_EQ(Ask("b"), "filled");
}

TEST_F(FileCacheManagerFolder, TheTimeAfterTheLastOfASecondIsInTheNextOne) {
    const std::string latest = mFolder.Write("cache/ezcache/a", "x");
    struct stat status = {};
    ASSERT_EQ(stat(latest.c_str(), &status), 0);
    struct timespec time = status.st_mtim;
    time.tv_sec += 1000000;
    time.tv_nsec = 999999999;
    const struct timespec times[2] = {time, time};
    ASSERT_EQ(utimensat(AT_FDCWD, latest.c_str(), times, 0), 0);
    EXPECT_EQ(Ask("b"), "<new>");
    ASSERT_EQ(stat(At("b").c_str(), &status), 0);
    EXPECT_EQ(status.st_mtim.tv_sec, time.tv_sec + 1);
    EXPECT_LT(status.st_mtim.tv_nsec, 1000);
}

// ---- failures of the system ----

TEST_F(FileCacheManagerFolder, WithoutAFolderNothingIsCached) {
    ezSystemCalls calls = ezSystem_Real();
    calls.mMkdir = [](const char*, mode_t) {
        errno = EACCES;
        return -1;
    };
    ezSystem_Replace(&calls);
    const std::string answer = Ask("a");
    ezSystem_Replace(nullptr);
    EXPECT_EQ(answer, "<null>");
    EXPECT_FALSE(std::filesystem::exists(At("")));
}

// A mounted parent may refuse to be made otherwise than by telling that it stands.
TEST_F(FileCacheManagerFolder, AFolderThatIsMadeIsUsedHoweverItsParentsRefused) {
    ezSystemCalls calls = ezSystem_Real();
    calls.mMkdir = [](const char* aPath, mode_t aMode) {
        const int result = ezSystem_Real().mMkdir(aPath, aMode);
        errno = EACCES;
        return result;
    };
    ezSystem_Replace(&calls);
    const std::string answer = Ask("a");
    ezSystem_Replace(nullptr);
    EXPECT_EQ(answer, "<new>");
    EXPECT_EQ(Ask("a"), "filled");
}

TEST_F(FileCacheManagerFolder, AFileReportedBadThatIsGoneTakesNothingAway) {
    EXPECT_EQ(Ask("a"), "<new>");
    bool fNew = true;
    const FileOwner file(mCache.OpenCachedFile("a", &fNew, 0));
    ASSERT_TRUE(file != nullptr && !fNew);
    std::filesystem::remove(At("a"));
    static int sUnlinked;
    sUnlinked = 0;
    ezSystemCalls calls = ezSystem_Real();
    calls.mUnlinkAt = [](int, const char*) {
        ++sUnlinked;
        return 0;
    };
    ezSystem_Replace(&calls);
    mCache.SetCachedFileState("a", file.get(), false);
    ezSystem_Replace(nullptr);
    EXPECT_EQ(sUnlinked, 0);
    EXPECT_EQ(Content(*file), "filled");
}

TEST_F(FileCacheManagerFolder, AFileReportedBadDoesNotTakeTheNameOfOneOnAnotherDevice) {
    EXPECT_EQ(Ask("a"), "<new>");
    bool fNew = true;
    const FileOwner file(mCache.OpenCachedFile("a", &fNew, 0));
    ASSERT_TRUE(file != nullptr && !fNew);
    ezSystemCalls calls = ezSystem_Real();
    calls.mLStatAt = [](int aFolder, const char* aName, struct stat* aStatus) {
        const int result = ezSystem_Real().mLStatAt(aFolder, aName, aStatus);
        ++aStatus->st_dev;
        return result;
    };
    ezSystem_Replace(&calls);
    mCache.SetCachedFileState("a", file.get(), false);
    ezSystem_Replace(nullptr);
    EXPECT_EQ(Ask("a"), "filled");
}

TEST_F(FileCacheManagerFolder, EmptyingIsRepeatedWhenInterrupted) {
    bool fNew = false;
    const FileOwner file(mCache.OpenCachedFile("a", &fNew, 0));
    ASSERT_TRUE(file != nullptr && fNew);
    EXPECT_EQ(file->Write("filled", 6), 6);
    static int sInterruptions;
    sInterruptions = 2;
    ezSystemCalls calls = ezSystem_Real();
    calls.mFTruncate = [](int aFile, ezFileOffset aLength) {
        if (sInterruptions > 0) {
            --sInterruptions;
            errno = EINTR;
            return -1;
        }
        return ezSystem_Real().mFTruncate(aFile, aLength);
    };
    ezSystem_Replace(&calls);
    EXPECT_TRUE(file->Empty());
    ezSystem_Replace(nullptr);
    EXPECT_EQ(sInterruptions, 0);
    EXPECT_EQ(file->Length(), 0);
    EXPECT_EQ(file->LengthAtOpen(), 0);
}

} // namespace
