#include "ezPlatform/files/FileCacheManager.h"

#include "ezPlatform/files/File.h"
#include "support/FaultySystem.h"
#include "support/Str.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <memory>
#include <set>
#include <string>

// What an interruption or a refusal of the system leaves of a cache.

namespace {

using FileOwner = std::unique_ptr<ezFile>;
using Names = std::set<std::string>;

constexpr std::uint64_t kBytes = 300;
constexpr std::size_t kFiles = 1000;

Fault FaultOf(SystemCall aCall, int anError) {
    Fault fault;
    fault.mCall = aCall;
    fault.mError = anError;
    return fault;
}

class FileCacheManagerFaults : public testing::Test {
protected:
    static FileOwner Open(ezFileCacheManager& aCache, const std::string& aName, bool afNew) {
        bool fNew = !afNew;
        FileOwner file(aCache.OpenCachedFile(Bytes(aName), &fNew, 0));
        EXPECT_TRUE(file != nullptr && fNew == afNew) << aName;
        return file;
    }

    static void Fill(ezFileCacheManager& aCache, const std::string& aName, const std::string& aContent) {
        const FileOwner file = Open(aCache, aName, true);
        ASSERT_NE(file, nullptr);
        EXPECT_EQ(file->Write(aContent.data(), aContent.size()), static_cast<int>(aContent.size()));
        aCache.SetCachedFileState(Bytes(aName), file.get(), true);
    }

    std::string FilesFolder() const { return mFolder.Path("cache/ezcache"); }

    /// The names of all that lies in the cache's folder.
    Names NamesOfFiles() const {
        Names names;
        for (const auto& entry : std::filesystem::directory_iterator(FilesFolder())) {
            names.insert(entry.path().filename().string());
        }
        return names;
    }

    ezCString CacheFolder() const { return mFolder.Path("cache").c_str(); }

    TemporaryFolder mFolder;
    ezFileCacheManager mCache{CacheFolder(), kBytes, kFiles};
};

} // namespace

TEST_F(FileCacheManagerFaults, AFileWhoseLockIsInterruptedIsLockedAndNobodyTakesItForALeftOne) {
    FileOwner file;
    {
        const FaultySystem system({FaultOf(SystemCall::FLock, EINTR)});
        file = Open(mCache, "a", true);
        EXPECT_TRUE(system.HasStruck());
    }
    ASSERT_NE(file, nullptr);
    ezFileCacheManager other(CacheFolder(), kBytes, kFiles); // looks through the folder before its first file
    Fill(other, "b", "b");
    EXPECT_EQ(file->Write("a", 1), 1);
    mCache.SetCachedFileState("a", file.get(), true);
    EXPECT_EQ(NamesOfFiles(), (Names{"a", "b"}));
}

TEST_F(FileCacheManagerFaults, WhatAKilledWriterLeftIsRemovedThoughOpeningItIsInterrupted) {
    const std::string left = mFolder.Write("cache/ezcache/.fill-1-1-1-1", "half");
    {
        // The first file that is opened is the one that is asked for, the second the one that was left.
        Fault fault = FaultOf(SystemCall::Open, EINTR);
        fault.mFrom = 2;
        const FaultySystem system({fault});
        Fill(mCache, "a", "whole");
        EXPECT_TRUE(system.HasStruck());
    }
    EXPECT_FALSE(std::filesystem::exists(left));
    EXPECT_EQ(NamesOfFiles(), Names{"a"});
}

TEST_F(FileCacheManagerFaults, AFileReportedBadThatCannotBeRemovedStillTakesItsRoom) {
    const std::string content(30, 'x');
    for (int i = 0; i < 10; ++i) {
        Fill(mCache, "file " + std::to_string(i), content);
    }
    const FileOwner file = Open(mCache, "file 5", false);
    ASSERT_NE(file, nullptr);
    {
        const FaultySystem system({FaultOf(SystemCall::Unlink, EACCES)});
        mCache.SetCachedFileState("file 5", file.get(), false);
        EXPECT_TRUE(system.HasStruck());
    }
    const FileOwner again = Open(mCache, "file 5", false);
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(again->Length(), 30);
    Fill(mCache, "file 10", content); // 330 bytes, so that the oldest has to go
    EXPECT_EQ(NamesOfFiles().size(), 10U);
    EXPECT_FALSE(std::filesystem::exists(Str(mCache.GetFullPath("file 0"))));
    EXPECT_TRUE(std::filesystem::exists(Str(mCache.GetFullPath("file 5"))));
}
