#include "ez/ThumbnailProvider.h"

#include "ezPlatform/base/System.h"
#include "ezPlatform/files/FileCacheManager.h"
#include "support/Catchers.h"
#include "support/ScriptedThumbnails.h"
#include "support/Str.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <type_traits>
#include <unistd.h>
#include <vector>

// Requests for thumbnails while the system, the cache's folder, the providers or the callers let them down.

namespace {

using Trace = ThumbnailTrace;

/// System calls that are counted down: the last one is the one that something happens to.
int sCallsLeft = 0;
bool sfKills = false;

bool IsTheOne() {
    if (--sCallsLeft != 0) {
        return false;
    }
    if (sfKills) {
        kill(getpid(), SIGKILL);
    }
    errno = ENOSPC;
    return true;
}

template <auto kCall>
struct CountedDown;
template <typename Result, typename... Arguments, Result (*ezSystemCalls::*kCall)(Arguments...)>
struct CountedDown<kCall> {
    static Result sCall(Arguments... someArguments) {
        if (IsTheOne()) {
            if constexpr (std::is_pointer_v<Result>) {
                return nullptr;
            } else {
                return -1;
            }
        }
        return (ezSystem_Real().*kCall)(someArguments...);
    }
};

template <auto... kCalls>
ezSystemCalls CountDown() {
    ezSystemCalls calls = ezSystem_Real();
    ((calls.*kCalls = CountedDown<kCalls>::sCall), ...);
    return calls;
}

/// All calls that a request makes, but for the closing ones, which free what they close.
ezSystemCalls AllCountedDown() {
    using Calls = ezSystemCalls;
    return CountDown<&Calls::mOpen, &Calls::mOpenAt, &Calls::mStat, &Calls::mFStat, &Calls::mPRead,
                     &Calls::mPWrite, &Calls::mFSync, &Calls::mRenameAt, &Calls::mUnlinkAt, &Calls::mMkdir,
                     &Calls::mFTruncate, &Calls::mFUTimens, &Calls::mFLock, &Calls::mLStatAt,
                     &Calls::mOpenDir, &Calls::mReadDir>();
}

class ThumbnailProviderManagerFailures : public testing::Test {
protected:
    ThumbnailProviderManagerFailures() {
        mInfo.mUniqueID = "id";
        mInfo.mThumbnailID = kJPEGThumbnailID;
        mInfo.mMimeType = "video/mpeg";
        mInfo.mFilePath = ezPathName::MakeFilePath("/films/a film.mpg");
    }

    /// As after a restart: a cache and a manager of their own, asked once.
    std::string Asked(const std::function<bool(ezFile*)>& aBuild = nullptr, bool afDefault = false) {
        ezFileCacheManager cache(mFolder.Path("cache").c_str(), 100000, 100);
        ezThumbnailProviderManager manager(&cache, nullptr);
        manager.Add(new ScriptedProvider(mTrace, "careless", kJPEGThumbnailID, [](ezFile* aFile) {
            WriteText(aFile, "a beginning that is longer than what follows");
            return false;
        }));
        manager.Add(new ScriptedProvider(mTrace, "a", kJPEGThumbnailID, aBuild));
        return Content(manager.GetThumbnail(&mInfo, afDefault));
    }
    static std::string Content(ezFile* aFile) {
        if (aFile == nullptr) {
            return "<null>";
        }
        const std::unique_ptr<ezFile> file(aFile);
        std::string content(static_cast<std::size_t>(std::max<ezFileOffset>(file->LengthAtOpen(), 0)), 'x');
        const int count = file->Read(content.data(), content.size());
        return count == static_cast<int>(content.size()) ? content : "<read " + std::to_string(count) + ">";
    }
    std::size_t CountOfFiles() const {
        std::error_code error;
        const std::filesystem::directory_iterator entries(mFolder.Path("cache/ezcache"), error);
        return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
    }

    TemporaryFolder mFolder;
    Trace mTrace;
    ThumbnailInfo mInfo;
};

// ---- the system ----

TEST_F(ThumbnailProviderManagerFailures, AKillAtAnyCallLeavesAWholeThumbnailOrNone) {
    const ezSystemCalls calls = AllCountedDown();
    int killed = 0;
    int kept = 0;
    for (bool fKilled = true; fKilled; ++killed) {
        std::filesystem::remove_all(mFolder.Path("cache"));
        const pid_t child = fork();
        if (child == 0) {
            sCallsLeft = killed + 1;
            sfKills = true;
            ezSystem_Replace(&calls);
            Asked();
            _exit(0);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        fKilled = WIFSIGNALED(status);
        const std::string after = Asked([](ezFile* aFile) { return WriteText(aFile, "again"); });
        EXPECT_TRUE(after == "by a" || after == "again") << killed << ": " << after;
        kept += after == "by a" ? 1 : 0;
        mInfo.mUniqueID = "another";
        EXPECT_EQ(Asked(), "by a");
        EXPECT_EQ(CountOfFiles(), 2U) << killed; // what the killed one left went with the next new file
        mInfo.mUniqueID = "id";
    }
    EXPECT_GE(killed, 15);
    EXPECT_GE(kept, 1);
}

TEST_F(ThumbnailProviderManagerFailures, AFailureOfAnyCallGivesAWholeThumbnailOrNone) {
    const ezSystemCalls calls = AllCountedDown();
    int failed = 0;
    int refused = 0;
    for (bool fFailed = true; fFailed; ++failed) {
        std::filesystem::remove_all(mFolder.Path("cache"));
        sCallsLeft = failed + 1;
        sfKills = false;
        ezSystem_Replace(&calls);
        const std::string first = Asked();
        ezSystem_Replace(nullptr);
        fFailed = sCallsLeft <= 0;
        EXPECT_TRUE(first == "by a" || first == "<null>" || first == "<read -1>") << failed << ": " << first;
        refused += first == "by a" ? 0 : 1;
        EXPECT_EQ(Asked(), "by a") << failed;
        mInfo.mUniqueID = "another";
        EXPECT_EQ(Asked(), "by a");
        EXPECT_EQ(CountOfFiles(), 2U) << failed;
        mInfo.mUniqueID = "id";
    }
    EXPECT_GE(failed, 15);
    EXPECT_GE(refused, 3);
}

// ---- the folder ----

TEST_F(ThumbnailProviderManagerFailures, WhatStandsWhereAThumbnailBelongsGivesNull) {
    const std::string path = mFolder.Path("cache/ezcache/thumb_id_0_0_0_0_0_0_0.jpg");
    std::filesystem::create_directories(path);
    EXPECT_EQ(Asked(), "<null>");
    EXPECT_TRUE(std::filesystem::is_directory(path));
    std::filesystem::remove(path);
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_EQ(Asked(), "<null>");
    EXPECT_EQ(mTrace, (Trace{"delete careless", "delete a", "delete careless", "delete a"})); // not built
    std::filesystem::remove(path);
    const std::string outside = mFolder.Write("outside", "outside");
    std::filesystem::create_symlink(outside, path);
    EXPECT_EQ(Asked(), "by a");
    EXPECT_FALSE(std::filesystem::is_symlink(path));
}

TEST_F(ThumbnailProviderManagerFailures, ALinkInThePlaceOfTheCacheGivesNullAndLeadsNowhere) {
    std::filesystem::create_directories(mFolder.Path("photos"));
    std::filesystem::create_directory(mFolder.Path("cache"));
    std::filesystem::create_directory_symlink(mFolder.Path("photos"), mFolder.Path("cache/ezcache"));
    EXPECT_EQ(Asked(), "<null>");
    EXPECT_TRUE(std::filesystem::is_empty(mFolder.Path("photos")));
}

TEST_F(ThumbnailProviderManagerFailures, ACacheFolderRemovedInTheMiddleStillGivesTheThumbnail) {
    const auto remove = [this](ezFile* aFile) {
        std::filesystem::remove_all(mFolder.Path("cache"));
        return WriteText(aFile, "picture");
    };
    EXPECT_EQ(Asked(remove), "picture");
    EXPECT_FALSE(std::filesystem::exists(mFolder.Path("cache")));
    EXPECT_EQ(Asked(), "by a");
}

// ---- the providers ----

TEST_F(ThumbnailProviderManagerFailures, WhereverAProviderLeavesTheFileItIsHandedOutAtItsStart) {
    for (const ezFileOffset position : {ezFileOffset{0}, ezFileOffset{3}, ezFileOffset{1} << 40}) {
        mInfo.mUniqueID = std::to_string(position).c_str();
        EXPECT_EQ(Asked([position](ezFile* aFile) {
                      EXPECT_TRUE(WriteText(aFile, "picture"));
                      return aFile->Seek(position, ezFileSeekMode_Begin) == position;
                  }),
                  "picture");
    }
}

TEST_F(ThumbnailProviderManagerFailures, AProviderMayReadBackAndRewriteWhatItWrote) {
    EXPECT_EQ(Asked([](ezFile* aFile) {
                  char first = '\0';
                  EXPECT_TRUE(WriteText(aFile, "xicture"));
                  EXPECT_EQ(aFile->Seek(0, ezFileSeekMode_Begin), 0);
                  EXPECT_EQ(aFile->Read(&first, 1), 1);
                  EXPECT_EQ(aFile->Seek(0, ezFileSeekMode_Begin), 0);
                  return first == 'x' && WriteText(aFile, "p");
              }),
              "picture");
}

TEST_F(ThumbnailProviderManagerFailures, WhoEmptiesTheFileInTheEndIsRememberedAsEmpty) {
    EXPECT_EQ(Asked([](ezFile* aFile) { return WriteText(aFile, "picture") && aFile->Empty(); }), "<null>");
    mTrace.clear();
    EXPECT_EQ(Asked(), "<null>");
    EXPECT_EQ(mTrace, (Trace{"delete careless", "delete a"}));
}

TEST_F(ThumbnailProviderManagerFailures, WhoClosesTheFileAndFailsLeavesWhatAnotherBuiltMeanwhile) {
    const auto build = [this](ezFile* aFile) {
        EXPECT_EQ(Asked(), "by a"); // another process, as it were
        aFile->Close();
        return false;
    };
    EXPECT_EQ(Asked(build), "<null>");
    mTrace.clear();
    EXPECT_EQ(Asked(), "by a");
    EXPECT_EQ(mTrace, (Trace{"delete careless", "delete a"})); // it came from the cache
}

TEST_F(ThumbnailProviderManagerFailures, AFileThatAProviderClosedIsGivenToNoOtherOne) {
    ezFileCacheManager cache(mFolder.Path("cache").c_str(), 100000, 100);
    ezThumbnailProviderManager manager(&cache, nullptr);
    manager.Add(new ScriptedProvider(mTrace, "closes", kJPEGThumbnailID, [](ezFile* aFile) {
        aFile->Close();
        return false;
    }));
    manager.Add(new ScriptedProvider(mTrace, "a", kJPEGThumbnailID));
    EXPECT_EQ(manager.GetThumbnail(&mInfo, false), nullptr);
    EXPECT_EQ(mTrace, (Trace{"possible closes", "build closes", "possible a"}));
    EXPECT_EQ(CountOfFiles(), 0U);
}

TEST_F(ThumbnailProviderManagerFailures, AProviderMayAskForAnotherThumbnailWhileItBuilds) {
    ezFileCacheManager cache(mFolder.Path("cache").c_str(), 100000, 100);
    ezThumbnailProviderManager manager(&cache, nullptr);
    manager.Add(new ScriptedProvider(mTrace, "a", kJPEGThumbnailID, [&](ezFile* aFile) {
        if (mInfo.mUniqueID == "inner") {
            return WriteText(aFile, "inner");
        }
        ThumbnailInfo outer = mInfo;
        mInfo.mUniqueID = "inner";
        const std::string inner = Content(manager.GetThumbnail(&mInfo, false));
        mInfo = outer;
        return WriteText(aFile, "around " + inner);
    }));
    EXPECT_EQ(Content(manager.GetThumbnail(&mInfo, false)), "around inner");
    EXPECT_EQ(CountOfFiles(), 2U);
}

TEST_F(ThumbnailProviderManagerFailures, AThumbnailTooLongForTheCacheIsHandedOutEachTime) {
    const std::string large(100001, 'p');
    int built = 0;
    const auto build = [&](ezFile* aFile) {
        ++built;
        return WriteText(aFile, large);
    };
    EXPECT_EQ(Asked(build), large);
    EXPECT_EQ(Asked(build), large);
    EXPECT_EQ(built, 2);
    EXPECT_EQ(CountOfFiles(), 0U);
}

// ---- the callers ----

TEST_F(ThumbnailProviderManagerFailures, ANullRequestIsAPlainFailure) {
    const AssertCatcher assertions;
    const LogCatcher log;
    ezFileCacheManager cache(mFolder.Path("cache").c_str(), 100000, 100);
    ezThumbnailProviderManager manager(&cache, nullptr);
    manager.SetDefaultProvider(new ScriptedProvider(mTrace, "default", 3));
    EXPECT_EQ(manager.GetPossibleThumbnailFor(nullptr), 0U);
    EXPECT_EQ(manager.GetThumbnail(nullptr, true), nullptr);
    EXPECT_EQ(manager.GetCachedThumbnail(nullptr, true), nullptr);
    EXPECT_EQ(Str(manager.GetThumbnailFileName(nullptr, false)), "");
    ScriptedProvider provider(mTrace, "a", 3);
    EXPECT_FALSE(provider.CanProvideThumbnailFor(nullptr));
    EXPECT_EQ(mTrace, (Trace{}));
    EXPECT_TRUE(log.Lines().empty());
    EXPECT_TRUE(assertions.Failures().empty());
}

TEST_F(ThumbnailProviderManagerFailures, WithoutACacheThereIsNoThumbnail) {
    ezThumbnailProviderManager manager(nullptr, nullptr);
    manager.Add(new ScriptedProvider(mTrace, "a", kJPEGThumbnailID));
    const LogCatcher log(3);
    EXPECT_EQ(manager.GetThumbnail(&mInfo, true), nullptr);
    EXPECT_EQ(log.Texts(), (std::vector<std::string>{"NOT able to retrieve thumbnail for 'a film.mpg'\n"}));
    EXPECT_EQ(mTrace, (Trace{}));
}

TEST_F(ThumbnailProviderManagerFailures, WithoutAGeneratorThePictureProviderProvidesNothing) {
    ezFileCacheManager cache(mFolder.Path("cache").c_str(), 100000, 100);
    ezThumbnailProviderManager manager(&cache, nullptr);
    manager.Add(new ezPictureThumbnailProvider(manager.GetThumbnailGenerator(), "pictures"));
    mInfo.mMimeType = "image/jpeg";
    EXPECT_EQ(manager.GetPossibleThumbnailFor(&mInfo), 0U);
    EXPECT_EQ(manager.GetThumbnail(&mInfo, true), nullptr);
}

} // namespace
