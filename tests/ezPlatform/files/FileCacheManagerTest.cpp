#include "ezPlatform/files/FileCacheManager.h"

#include "ezPlatform/base/System.h"
#include "ezPlatform/files/File.h"
#include "support/ReplacedSystem.h"
#include "support/ScriptedSystem.h"
#include "support/Str.h"
#include "support/TemporaryFolder.h"
#include "support/WholeFile.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <set>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using FileOwner = std::unique_ptr<ezFile>;

constexpr std::uint64_t kManyBytes = 1000000;
constexpr std::size_t kManyFiles = 1000;

std::string Content(ezFile& aFile) {
    std::string content(static_cast<std::size_t>(aFile.Length()), '\0');
    EXPECT_EQ(aFile.Seek(0, ezFileSeekMode_Begin), 0);
    EXPECT_EQ(aFile.Read(content.data(), content.size()), static_cast<int>(content.size()));
    return content;
}

bool Write(ezFile& aFile, const std::string& aText) {
    return aFile.Write(aText.data(), aText.size()) == static_cast<int>(aText.size());
}

/// By the system's call: 32-bit C++ libraries count in times that end in 2038.
void SetTenYearsLater(const std::string& aPath) {
    struct stat status = {};
    ASSERT_EQ(stat(aPath.c_str(), &status), 0);
    struct timespec later = status.st_mtim;
    later.tv_sec += 10 * 365 * 24 * 3600;
    const struct timespec times[2] = {later, later};
    ASSERT_EQ(utimensat(AT_FDCWD, aPath.c_str(), times, 0), 0);
}

class FileCacheManager : public testing::Test {
protected:
    explicit FileCacheManager(std::uint64_t aBytes = kManyBytes, std::size_t aFiles = kManyFiles)
        : mCache(Make(aBytes, aFiles)) {}

    std::unique_ptr<ezFileCacheManager> Make(std::uint64_t aBytes = kManyBytes,
                                             std::size_t aFiles = kManyFiles) const {
        return std::make_unique<ezFileCacheManager>(ezCString(mFolder.Path("cache").c_str()), aBytes, aFiles);
    }

    /// What a request for a name gives: its content, "<new>" or "<null>". A new file is given up.
    static std::string Ask(ezFileCacheManager& aCache, const std::string& aName) {
        bool fNew = false;
        const FileOwner file(aCache.OpenCachedFile(Bytes(aName), &fNew, 0));
        return file == nullptr ? "<null>" : fNew ? "<new>" : Content(*file);
    }
    std::string Ask(const std::string& aName) { return Ask(*mCache, aName); }

    /// Asks for a new file, fills it, and reports it. The file, for what comes after.
    static FileOwner Fill(ezFileCacheManager& aCache, const std::string& aName, const std::string& aContent,
                          bool afGood = true) {
        bool fNew = false;
        FileOwner file(aCache.OpenCachedFile(Bytes(aName), &fNew, 0));
        EXPECT_TRUE(file != nullptr && fNew) << aName;
        EXPECT_EQ(file->Length(), 0);
        EXPECT_TRUE(Write(*file, aContent));
        aCache.SetCachedFileState(Bytes(aName), file.get(), afGood);
        return file;
    }
    FileOwner Fill(const std::string& aName, const std::string& aContent, bool afGood = true) {
        return Fill(*mCache, aName, aContent, afGood);
    }

    std::string FilesFolder() const { return mFolder.Path("cache/ezcache"); }

    /// The names of all that lies in the cache's folder.
    std::set<std::string> Names() const {
        std::set<std::string> names;
        std::error_code error;
        for (const auto& entry : std::filesystem::directory_iterator(FilesFolder(), error)) {
            names.insert(entry.path().filename().string());
        }
        return names;
    }

    TemporaryFolder mFolder;
    std::unique_ptr<ezFileCacheManager> mCache;
};

using Names = std::set<std::string>;

TEST_F(FileCacheManager, WhatIsNotCachedComesNewEmptyAndAtItsStart) {
    bool fNew = false;
    const FileOwner file(mCache->OpenCachedFile("a.jpg", &fNew, 0));
    ASSERT_NE(file, nullptr);
    EXPECT_TRUE(fNew);
    EXPECT_EQ(file->Length(), 0);
    EXPECT_EQ(file->LengthAtOpen(), 0);
    EXPECT_EQ(file->Seek(0, ezFileSeekMode_Current), 0);
}

TEST_F(FileCacheManager, ANewFileIsWrittenAndReadThroughOneObject) {
    const FileOwner file = Fill("a.jpg", "");
    bool fNew = false;
    const FileOwner other(mCache->OpenCachedFile("b.jpg", &fNew, 0));
    EXPECT_TRUE(Write(*other, "0123456789"));
    EXPECT_EQ(other->Seek(2, ezFileSeekMode_Begin), 2);
    EXPECT_TRUE(Write(*other, "xy"));
    EXPECT_EQ(other->LengthAtOpen(), 10);
    EXPECT_EQ(Content(*other), "01xy456789");
    mCache->SetCachedFileState("b.jpg", other.get(), true);
    EXPECT_EQ(Content(*other), "01xy456789");
    EXPECT_EQ(other->Write("z", 1), -1); // what is cached is not changed any more
    EXPECT_EQ(Ask("b.jpg"), "01xy456789");
}

TEST_F(FileCacheManager, WhatWasReportedGoodComesFromTheCacheAtItsStart) {
    Fill("a.jpg", "picture");
    bool fNew = true;
    const FileOwner file(mCache->OpenCachedFile("a.jpg", &fNew, 0));
    ASSERT_NE(file, nullptr);
    EXPECT_FALSE(fNew);
    EXPECT_EQ(file->Seek(0, ezFileSeekMode_Current), 0);
    EXPECT_EQ(Content(*file), "picture");
    EXPECT_EQ(file->Write("x", 1), -1);
    EXPECT_FALSE(file->Empty());
    EXPECT_EQ(Ask(*Make(), "a.jpg"), "picture"); // and from another object
}

TEST_F(FileCacheManager, AnEmptyFileReportedGoodIsCached) {
    Fill("a.jpg", "");
    EXPECT_EQ(Ask("a.jpg"), "");
}

TEST_F(FileCacheManager, WhatWasReportedBadIsNewAtTheNextRequest) {
    const FileOwner file = Fill("a.jpg", "half a pic", false);
    EXPECT_EQ(Names(), (::Names{}));
    EXPECT_EQ(Ask("a.jpg"), "<new>");
    Fill("a.jpg", "picture");
    EXPECT_EQ(Ask("a.jpg"), "picture");
}

TEST_F(FileCacheManager, WhatIsNotReportedIsGivenUp) {
    bool fNew = false;
    {
        const FileOwner file(mCache->OpenCachedFile("a.jpg", &fNew, 0));
        EXPECT_TRUE(Write(*file, "half a pic"));
        EXPECT_EQ(Names().size(), 1U);
        EXPECT_EQ(Names().count("a.jpg"), 0U);
    }
    EXPECT_EQ(Names(), (::Names{}));
    const FileOwner closed(mCache->OpenCachedFile("a.jpg", &fNew, 0));
    EXPECT_TRUE(Write(*closed, "half a pic"));
    closed->Close();
    mCache->SetCachedFileState("a.jpg", closed.get(), true);
    EXPECT_EQ(Names(), (::Names{}));
}

TEST_F(FileCacheManager, AFileBeingFilledIsNotHandedOut) {
    bool fNew = false;
    const FileOwner filling(mCache->OpenCachedFile("a.jpg", &fNew, 0));
    EXPECT_TRUE(Write(*filling, "half a pic"));
    EXPECT_EQ(Ask("a.jpg"), "<new>");
    EXPECT_EQ(Ask(*Make(), "a.jpg"), "<new>");
    mCache->SetCachedFileState("a.jpg", filling.get(), true); // the others did not disturb it
    EXPECT_EQ(Ask("a.jpg"), "half a pic");
}

TEST_F(FileCacheManager, ACachedFileReportedBadLosesItsName) {
    Fill("a.jpg", "picture");
    bool fNew = true;
    const FileOwner file(mCache->OpenCachedFile("a.jpg", &fNew, 0));
    mCache->SetCachedFileState("a.jpg", file.get(), true); // changes nothing
    EXPECT_EQ(Ask("a.jpg"), "picture");
    mCache->SetCachedFileState("a.jpg", file.get(), false);
    EXPECT_EQ(Ask("a.jpg"), "<new>");
    EXPECT_EQ(Content(*file), "picture");
    mCache->SetCachedFileState("a.jpg", nullptr, true);
    EXPECT_EQ(Ask("a.jpg"), "<new>");
}

TEST_F(FileCacheManager, WhatLostItsNameTakesNoRoomAnyMore) {
    const std::string content(30, 'x');
    for (const char* const lost : {"file 5", "file 0"}) { // the oldest is the next that would go
        mCache = Make(300);
        for (int i = 0; i < 10; ++i) {
            Fill("file " + std::to_string(i), content);
        }
        bool fNew = false;
        const FileOwner file(mCache->OpenCachedFile(lost, &fNew, 0));
        ASSERT_TRUE(file != nullptr && !fNew);
        mCache->SetCachedFileState(lost, file.get(), false);
        Fill("file 10", content); // 300 bytes again: nothing has to go
        for (int i = 0; i <= 10; ++i) {
            const std::string name = "file " + std::to_string(i);
            const std::string path = Str(mCache->GetFullPath(name.c_str()));
            EXPECT_EQ(ContentAt(path), name == lost ? "<none>" : content) << name;
        }
        Fill("file 11", "y"); // one byte too many: the oldest has to, whatever was lost
        const char* const oldest = std::string(lost) == "file 0" ? "file 1" : "file 0";
        EXPECT_EQ(ContentAt(Str(mCache->GetFullPath(oldest))), "<none>") << lost;
        EXPECT_EQ(ContentAt(Str(mCache->GetFullPath("file 2"))), content) << lost;
        std::filesystem::remove_all(mFolder.Path("cache"));
    }
}

TEST_F(FileCacheManager, NamesOfAnyBytesHaveFilesOfTheirOwnInsideTheCache) {
    const std::string longName(300, 'n');
    const std::set<std::string> names = {"a",
                                         "A",
                                         "a/b",
                                         "a\\b",
                                         "a:b",
                                         std::string("a\0b", 3),
                                         "a..b",
                                         "../a",
                                         "../../a",
                                         "..",
                                         ".",
                                         "",
                                         "/a",
                                         "/",
                                         "%",
                                         "a%2fb",
                                         longName,
                                         longName + "/",
                                         "a b",
                                         "\xff/.",
                                         longName + "1",
                                         std::string("a\0c", 3),
                                         "/etc/passwd"};
    for (const std::string& name : names) {
        Fill(name, "of " + name);
    }
    for (const std::string& name : names) {
        EXPECT_EQ(Ask(name), "of " + name);
    }
    EXPECT_EQ(Names().size(), names.size());
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(mFolder.GetPath())) {
        count += entry.is_directory() ? 0 : 1;
    }
    EXPECT_EQ(count, names.size()); // nothing went anywhere else
}

TEST_F(FileCacheManager, TheFullPathIsThatOfTheFile) {
    EXPECT_EQ(Str(mCache->GetFullPath("a/b.jpg")), FilesFolder() + "/a%2fb.jpg");
    Fill("a/b.jpg", "picture");
    EXPECT_EQ(ContentAt(Str(mCache->GetFullPath("a/b.jpg"))), "picture");
    EXPECT_EQ(Str(ezFileCacheManager("", 1, 1).GetFullPath("a")), "ezcache/a");
    EXPECT_EQ(Str(ezFileCacheManager("/c/", 1, 1).GetFullPath("a")), "/c/ezcache/a");
}

TEST_F(FileCacheManager, NothingIsMadeBeforeTheFirstNewFileAndAFolderThatWasRemovedIsMadeAgain) {
    EXPECT_FALSE(std::filesystem::exists(mFolder.Path("cache")));
    Fill("a.jpg", "picture");
    std::filesystem::remove_all(mFolder.Path("cache"));
    EXPECT_EQ(Ask("a.jpg"), "<new>");
    Fill("a.jpg", "picture");
    EXPECT_EQ(Ask("a.jpg"), "picture");
}

TEST_F(FileCacheManager, ForeignFilesAndLinksBesideAndWithinAreSafe) {
    mFolder.Write("cache/holiday.jpg", "mine");
    const std::string outside = mFolder.Write("outside.txt", "outside");
    std::filesystem::create_directories(FilesFolder() + "/folder.jpg");
    std::filesystem::create_symlink(outside, FilesFolder() + "/link.jpg");
    const auto before = std::filesystem::last_write_time(outside);
    const std::unique_ptr<ezFileCacheManager> small = Make(kManyBytes, 1);
    EXPECT_EQ(Ask(*small, "link.jpg"), "<new>"); // not followed
    Fill(*small, "link.jpg", "picture");         // replaced
    EXPECT_EQ(Ask(*small, "link.jpg"), "picture");
    EXPECT_EQ(Ask(*small, "folder.jpg"), "<null>");
    Fill(*small, "a.jpg", "picture");
    Fill(*small, "b.jpg", "picture");
    EXPECT_EQ(Names(), (::Names{"b.jpg", "folder.jpg"}));
    EXPECT_EQ(ContentAt(outside), "outside");
    EXPECT_EQ(std::filesystem::last_write_time(outside), before);
    EXPECT_EQ(ContentAt(mFolder.Path("cache/holiday.jpg")), "mine");
}

TEST_F(FileCacheManager, AFolderThatCannotBeMadeGivesNull) {
    mFolder.Write("cache", "a file");
    EXPECT_EQ(Ask("a.jpg"), "<null>");
    bool fNew = true;
    const ezCString zero("/nowhere\0else", 13);
    EXPECT_EQ(ezFileCacheManager(zero, 1, 1).OpenCachedFile("a", &fNew, 0), nullptr);
    EXPECT_FALSE(fNew);
}

// ---- what goes first ----

class BoundedFileCacheManager : public FileCacheManager {
protected:
    BoundedFileCacheManager() : FileCacheManager(100, 3) {}
};

TEST_F(BoundedFileCacheManager, TheNumberOfFilesIsKeptAndTheLeastRecentlyFilledGoesFirst) {
    for (const char* name : {"a", "b", "c"}) {
        Fill(name, "x");
    }
    EXPECT_EQ(Names(), (::Names{"a", "b", "c"}));
    Fill("d", "x");
    EXPECT_EQ(Names(), (::Names{"b", "c", "d"}));
    Fill("e", ""); // an empty one counts
    EXPECT_EQ(Names(), (::Names{"c", "d", "e"}));
}

TEST_F(BoundedFileCacheManager, AHitMakesAFileTheMostRecentlyUsed) {
    for (const char* name : {"a", "b", "c"}) {
        Fill(name, name);
    }
    EXPECT_EQ(Ask("a"), "a");
    Fill("d", "d");
    EXPECT_EQ(Names(), (::Names{"a", "c", "d"}));
    EXPECT_EQ(Ask("c"), "c");
    EXPECT_EQ(Ask("a"), "a");
    Fill("e", "e");
    EXPECT_EQ(Names(), (::Names{"a", "c", "e"}));
}

TEST_F(BoundedFileCacheManager, AHitInAnotherObjectCountsAlike) {
    for (const char* name : {"a", "b", "c"}) {
        Fill(name, name);
    }
    EXPECT_EQ(Ask(*Make(100, 3), "a"), "a");
    Fill("d", "d");
    EXPECT_EQ(Names(), (::Names{"a", "c", "d"}));
}

TEST_F(BoundedFileCacheManager, TheTotalSizeIsKept) {
    Fill("a", std::string(40, 'a'));
    Fill("b", std::string(50, 'b'));
    Fill("c", std::string(10, 'c'));
    EXPECT_EQ(Names(), (::Names{"a", "b", "c"})); // exactly the bound
    Fill("c2", std::string(1, 'c'));
    EXPECT_EQ(Names(), (::Names{"b", "c", "c2"}));
    Fill("d", std::string(95, 'd')); // as many go as it takes
    EXPECT_EQ(Names(), (::Names{"c2", "d"}));
}

TEST_F(BoundedFileCacheManager, AFileLongerThanTheBoundIsHandedOutButNotKept) {
    Fill("a", "a");
    const FileOwner file = Fill("b", std::string(101, 'b'));
    EXPECT_EQ(Content(*file), std::string(101, 'b'));
    EXPECT_EQ(Names(), (::Names{"a"}));
    Fill("c", std::string(100, 'c')); // one of the very size stays
    EXPECT_EQ(Names(), (::Names{"c"}));
}

TEST_F(BoundedFileCacheManager, WithABoundOfNoFilesNothingIsKept) {
    const std::unique_ptr<ezFileCacheManager> none = Make(100, 0);
    const FileOwner file = Fill(*none, "a", "picture");
    EXPECT_EQ(Content(*file), "picture");
    EXPECT_EQ(Names(), (::Names{}));
}

TEST_F(BoundedFileCacheManager, AFileThatIsFilledAgainCountsOnce) {
    Fill("a", "a");
    Fill("b", "b");
    bool fNew = false;
    const FileOwner first(mCache->OpenCachedFile("c", &fNew, 0));
    const FileOwner second(mCache->OpenCachedFile("c", &fNew, 0));
    EXPECT_TRUE(Write(*first, "first") && Write(*second, "second"));
    mCache->SetCachedFileState("c", first.get(), true);
    mCache->SetCachedFileState("c", second.get(), true);
    EXPECT_EQ(Names(), (::Names{"a", "b", "c"}));
    EXPECT_EQ(Ask("c"), "second");
    EXPECT_EQ(Content(*first), "first");
}

TEST_F(BoundedFileCacheManager, AHandedOutFileThatGoesStaysReadable) {
    const FileOwner file = Fill("a", "picture");
    for (const char* name : {"b", "c", "d"}) {
        Fill(name, "x");
    }
    EXPECT_EQ(Names().count("a"), 0U);
    EXPECT_EQ(Content(*file), "picture");
}

TEST_F(BoundedFileCacheManager, WhatAnotherObjectAddedCounts) {
    const std::unique_ptr<ezFileCacheManager> other = Make(100, 3);
    Fill("a", "x");
    Fill(*other, "b", "x");
    Fill("c", "x");
    Fill(*other, "d", "x");
    Fill("e", "x");
    EXPECT_EQ(Names(), (::Names{"c", "d", "e"}));
}

TEST_F(BoundedFileCacheManager, AClockThatWasSetBackDoesNotMakeTheLatestTheOldest) {
    for (const char* name : {"a", "b", "c"}) {
        Fill(name, name);
        SetTenYearsLater(FilesFolder() + "/" + name);
    }
    const std::unique_ptr<ezFileCacheManager> later = Make(100, 3);
    Fill(*later, "d", "d");
    EXPECT_EQ(Names(), (::Names{"b", "c", "d"}));
    EXPECT_EQ(Ask(*Make(100, 3), "b"), "b"); // one that has not looked the folder through
    Fill(*later, "e", "e");
    EXPECT_EQ(Names(), (::Names{"b", "d", "e"}));
}

TEST_F(FileCacheManager, WithManyFilesTheBoundIsKeptToTheFile) {
    // A disk is slow, and this is about which files stay.
    const ReplacedSystem system(WithoutSync);
    const std::unique_ptr<ezFileCacheManager> cache = Make(kManyBytes, 3000);
    for (int i = 0; i < 5000; ++i) {
        Fill(*cache, std::to_string(i), "x");
        if (i % 10 == 0) {
            EXPECT_EQ(Ask(*cache, "0"), "x"); // stays in use
        }
    }
    const ::Names names = Names();
    EXPECT_EQ(names.size(), 3000U);
    EXPECT_EQ(names.count("0"), 1U);
    for (int i = 2001; i < 5000; ++i) {
        EXPECT_EQ(names.count(std::to_string(i)), 1U) << i;
    }
}

// ---- cost ----

TEST_F(FileCacheManager, AHitTakesAnOpenAnFstatAMarkAndACloseHoweverManyThereAre) {
    for (const int count : {1, 400}) {
        for (int i = 0; i < count; ++i) {
            std::ofstream(mFolder.Write("cache/ezcache/f" + std::to_string(i), "x"));
        }
        const std::unique_ptr<ezFileCacheManager> cache = Make();
        ScriptedSystem system;
        bool fNew = false;
        delete cache->OpenCachedFile("f0", &fNew, 0);
        EXPECT_FALSE(fNew);
        EXPECT_EQ(system.GetCounts().mOpen, 1U);
        EXPECT_EQ(system.GetCounts().mFStat, 1U);
        EXPECT_EQ(system.GetCounts().mClose, 1U);
        EXPECT_EQ(system.GetCounts().All(), 3U);
    }
}

// ---- failures ----

template <int kError, typename... Arguments>
int Fails(Arguments...) {
    errno = kError;
    return -1;
}

TEST_F(FileCacheManager, AFullDiskWhereAFileIsMadeGivesNull) {
    Fill("a.jpg", "picture");
    ScriptedSystem system;
    // The request, the folder, a look for what was left, the new file.
    system.mOpenOutcomes = {{ENOENT}, {0}, {0}, {ENOSPC}};
    const std::unique_ptr<ezFileCacheManager> cache = Make();
    mFolder.Write("cache/ezcache/.fill-1-1-1-1", "left");
    EXPECT_EQ(Ask(*cache, "b.jpg"), "<null>");
    EXPECT_TRUE(system.mOpenOutcomes.empty());
    EXPECT_EQ(Names(), (::Names{"a.jpg"}));
}

TEST_F(FileCacheManager, AnErrorOnOpeningIsNoReasonToMakeANewFile) {
    Fill("a.jpg", "picture");
    for (const int error : {EACCES, EMFILE, EIO, ENAMETOOLONG, ENOMEM}) {
        ScriptedSystem system;
        system.mOpenOutcomes = {{error}};
        EXPECT_EQ(Ask("a.jpg"), "<null>") << error;
        EXPECT_EQ(system.GetCounts().mOpen, 1U) << error;
    }
    ScriptedSystem system;
    system.mFStatOutcomes = {{EIO}};
    EXPECT_EQ(Ask("a.jpg"), "<null>");
    system.mOpenOutcomes = {{EINTR}};
    EXPECT_EQ(Ask("a.jpg"), "picture");
}

TEST_F(FileCacheManager, AWriterThatTellsSuccessAfterAFailedWriteHasNothingCached) {
    bool fNew = false;
    const FileOwner file(mCache->OpenCachedFile("a.jpg", &fNew, 0));
    EXPECT_TRUE(Write(*file, "half a "));
    {
        const ReplacedSystem system([](ezSystemCalls& aCalls) {
            aCalls.mPWrite = [](int, const void*, std::size_t, ezFileOffset) -> ssize_t {
                errno = ENOSPC;
                return -1;
            };
        });
        EXPECT_EQ(file->Write("picture", 7), -1);
    }
    mCache->SetCachedFileState("a.jpg", file.get(), true);
    EXPECT_EQ(file->Length(), 0); // and nobody takes what there is for a picture
    EXPECT_EQ(file->LengthAtOpen(), 0);
    EXPECT_EQ(Names(), (::Names{}));
    EXPECT_EQ(Ask("a.jpg"), "<new>");
}

TEST_F(FileCacheManager, EmptyingForgetsAFailedWrite) {
    bool fNew = false;
    const FileOwner file(mCache->OpenCachedFile("a.jpg", &fNew, 0));
    {
        const ReplacedSystem system([](ezSystemCalls& aCalls) {
            aCalls.mPWrite = [](int, const void*, std::size_t, ezFileOffset) -> ssize_t { return 0; };
        });
        EXPECT_EQ(file->Write("x", 1), -1);
    }
    EXPECT_TRUE(file->Empty());
    EXPECT_TRUE(Write(*file, "picture"));
    mCache->SetCachedFileState("a.jpg", file.get(), true);
    EXPECT_EQ(Ask("a.jpg"), "picture");
}

TEST_F(FileCacheManager, WhatDoesNotReachTheDiskIsNotCachedAndNotHandedOut) {
    const ReplacedSystem system([](ezSystemCalls& aCalls) { aCalls.mFSync = Fails<ENOSPC, int>; });
    const FileOwner file = Fill("a.jpg", "picture");
    EXPECT_EQ(file->Length(), 0);
    EXPECT_EQ(Names(), (::Names{}));
}

TEST_F(FileCacheManager, ContentIsOnTheDiskBeforeItHasItsName) {
    static std::string sOrder;
    sOrder.clear();
    const ReplacedSystem system([](ezSystemCalls& aCalls) {
        aCalls.mFSync = [](int aFile) {
            sOrder += "sync ";
            return ezSystem_Real().mFSync(aFile);
        };
        aCalls.mRenameAt = [](int aFolder, const char* aFrom, const char* aTo) {
            sOrder += "rename ";
            return ezSystem_Real().mRenameAt(aFolder, aFrom, aTo);
        };
    });
    Fill("a.jpg", "picture");
    EXPECT_EQ(sOrder, "sync rename ");
}

TEST_F(FileCacheManager, WhatCannotBePutInPlaceIsHandedOutAllTheSame) {
    const ReplacedSystem system(
        [](ezSystemCalls& aCalls) { aCalls.mRenameAt = Fails<EACCES, int, const char*, const char*>; });
    const FileOwner file = Fill("a.jpg", "picture");
    EXPECT_EQ(Content(*file), "picture");
    EXPECT_EQ(Names(), (::Names{}));
}

TEST_F(FileCacheManager, WhereNothingCanBeLockedMarkedOrListedTheCacheStillServes) {
    const ReplacedSystem system([](ezSystemCalls& aCalls) {
        aCalls.mFLock = Fails<ENOLCK, int, int>;
        aCalls.mFUTimens = Fails<EPERM, int, const struct timespec*>;
        aCalls.mOpenDir = [](int) -> DIR* {
            errno = EACCES;
            return nullptr;
        };
    });
    Fill("a.jpg", "picture");
    EXPECT_EQ(Ask("a.jpg"), "picture");
}

TEST_F(BoundedFileCacheManager, FilesThatCannotBeRemovedDoNotHoldTheCacheUp) {
    for (const char* name : {"a", "b", "c"}) {
        Fill(name, "x");
    }
    const ReplacedSystem system(
        [](ezSystemCalls& aCalls) { aCalls.mUnlinkAt = Fails<EACCES, int, const char*>; });
    Fill("d", "x");
    EXPECT_EQ(Ask("d"), "x");
}

TEST_F(BoundedFileCacheManager, AFileThatAnotherProcessRemovedFirstIsNoHarm) {
    const std::unique_ptr<ezFileCacheManager> cache = Make(1000, 100);
    for (int i = 0; i < 100; ++i) {
        Fill(*cache, "f" + std::to_string(i), "x");
    }
    std::filesystem::remove(FilesFolder() + "/f0");
    for (int i = 100; i < 110; ++i) {
        Fill(*cache, "f" + std::to_string(i), "x");
    }
    EXPECT_EQ(Names().size(), 100U);
    EXPECT_EQ(Names().count("f9"), 0U);
    EXPECT_EQ(Names().count("f10"), 1U);
}

TEST_F(FileCacheManager, AFileTakenForALeftOneBeforeItIsLockedIsMadeAgain) {
    static int sLocks = 0;
    static std::string sFolder;
    sLocks = 0;
    sFolder = FilesFolder();
    const ReplacedSystem system([](ezSystemCalls& aCalls) {
        aCalls.mFLock = [](int aFile, int anOperation) {
            if (++sLocks == 1) {
                errno = EWOULDBLOCK; // another one looks at it just now
                return -1;
            }
            if (sLocks == 2) { // or has removed it
                for (const auto& entry : std::filesystem::directory_iterator(sFolder)) {
                    std::filesystem::remove(entry.path());
                }
            }
            return ezSystem_Real().mFLock(aFile, anOperation);
        };
    });
    Fill("a.jpg", "picture");
    EXPECT_EQ(sLocks, 3);
    EXPECT_EQ(Ask("a.jpg"), "picture");
}

// ---- several processes ----

/// Runs a piece of work in a process of its own; its exit status.
int InChild(const std::function<void()>& aWork, bool afKill = false) {
    const pid_t child = fork();
    if (child == 0) {
        aWork();
        if (afKill) {
            kill(getpid(), SIGKILL);
        }
        _exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return status;
}

TEST_F(FileCacheManager, AProcessKilledInTheMiddleLeavesNothingThatIsHandedOut) {
    const int status = InChild(
        [this] {
            bool fNew = false;
            ezFile* file = mCache->OpenCachedFile("a.jpg", &fNew, 0);
            Write(*file, "half a pic");
        },
        true);
    ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
    EXPECT_EQ(Names().size(), 1U); // what it left
    const std::unique_ptr<ezFileCacheManager> restarted = Make();
    EXPECT_EQ(Ask(*restarted, "a.jpg"), "<new>");
    EXPECT_EQ(Names(), (::Names{})); // gone with the first new file
    Fill(*restarted, "a.jpg", "picture");
    EXPECT_EQ(Ask(*restarted, "a.jpg"), "picture");
}

TEST_F(FileCacheManager, WhoIsKilledAgainAndAgainLeavesNoMoreThanOneFile) {
    for (int i = 0; i < 5; ++i) {
        InChild(
            [this] {
                bool fNew = false;
                Write(*Make()->OpenCachedFile("a.jpg", &fNew, 0), "half a pic");
            },
            true);
        EXPECT_EQ(Names().size(), 1U);
    }
}

TEST_F(FileCacheManager, TwoProcessesFillOneNameAtOnce) {
    int toChild[2] = {};
    int fromChild[2] = {};
    ASSERT_EQ(pipe(toChild), 0);
    ASSERT_EQ(pipe(fromChild), 0);
    const pid_t child = fork();
    if (child == 0) {
        char byte = 0;
        bool fNew = false;
        const FileOwner file(Make()->OpenCachedFile("a.jpg", &fNew, 0));
        const bool fWritten = fNew && Write(*file, "of the child");
        const bool fTold = write(fromChild[1], "x", 1) == 1 && read(toChild[0], &byte, 1) == 1;
        Make()->SetCachedFileState("a.jpg", file.get(), true);
        _exit(fWritten && fTold && Content(*file) == "of the child" ? 0 : 1);
    }
    char byte = 0;
    ASSERT_EQ(read(fromChild[0], &byte, 1), 1);
    bool fNew = false;
    const FileOwner file(mCache->OpenCachedFile("a.jpg", &fNew, 0)); // while the child is filling
    EXPECT_TRUE(fNew);
    EXPECT_TRUE(Write(*file, "of the parent"));
    mCache->SetCachedFileState("a.jpg", file.get(), true);
    EXPECT_EQ(Ask("a.jpg"), "of the parent");
    ASSERT_EQ(write(toChild[1], "x", 1), 1);
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(Ask("a.jpg"), "of the child");
    EXPECT_EQ(Content(*file), "of the parent");
    EXPECT_EQ(Names(), (::Names{"a.jpg"}));
    for (const int end : {toChild[0], toChild[1], fromChild[0], fromChild[1]}) {
        close(end);
    }
}

TEST_F(FileCacheManager, ProcessesThatRaceSeeWholeFilesOnly) {
    const auto work = [this] {
        const std::unique_ptr<ezFileCacheManager> cache = Make(100000, 20);
        for (int i = 0; i < 400; ++i) {
            const std::string name = std::to_string(i * 7 % 30);
            bool fNew = false;
            const FileOwner file(cache->OpenCachedFile(Bytes(name), &fNew, 0));
            if (file == nullptr) {
                _exit(2);
            }
            if (fNew) {
                const bool fGood = i % 5 != 0;
                if (!Write(*file, fGood ? std::string(1000, name[0]) : "bad")) {
                    _exit(3);
                }
                cache->SetCachedFileState(Bytes(name), file.get(), fGood);
            } else if (Content(*file) != std::string(1000, name[0])) {
                _exit(4);
            }
        }
        _exit(0);
    };
    pid_t children[3] = {};
    for (pid_t& child : children) {
        child = fork();
        if (child == 0) {
            work();
        }
    }
    for (const pid_t child : children) {
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    Fill("last", "x");
    for (const std::string& name : Names()) {
        EXPECT_NE(name.front(), '.');
    }
    EXPECT_LE(Names().size(), 20U + 3 * 20 / 8 + 1);
}

} // namespace
