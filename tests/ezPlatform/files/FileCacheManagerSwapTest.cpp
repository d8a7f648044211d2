#include "ezPlatform/files/FileCacheManager.h"

#include "ezPlatform/files/File.h"
#include "support/FaultySystem.h"
#include "support/Str.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <set>
#include <string>

// A cache whose folder becomes another one between two requests, or cannot be looked through.

namespace {

using FileOwner = std::unique_ptr<ezFile>;
using Names = std::set<std::string>;

class FileCacheManagerSwap : public testing::Test {
protected:
    FileCacheManagerSwap() {
        for (const char* name : {"p1.jpg", "p2.jpg", "p3.jpg", ".fill-1-1-1-1"}) {
            mFolder.Write(std::string("photos/") + name, "mine");
        }
    }

    static FileOwner Begin(ezFileCacheManager& aCache, const std::string& aName) {
        bool fNew = false;
        FileOwner file(aCache.OpenCachedFile(Bytes(aName), &fNew, 0));
        if (file != nullptr && fNew) {
            EXPECT_EQ(file->Write("thumbnail", 9), 9);
        }
        return file;
    }
    static bool Fill(ezFileCacheManager& aCache, const std::string& aName) {
        const FileOwner file = Begin(aCache, aName);
        aCache.SetCachedFileState(Bytes(aName), file.get(), true);
        return file != nullptr;
    }
    std::string Own() const { return mFolder.Path("cache/ezcache"); }
    void LinkToPhotos() const {
        std::filesystem::create_directories(mFolder.Path("cache"));
        if (std::filesystem::exists(Own())) {
            std::filesystem::rename(Own(), mFolder.Path("moved"));
        }
        std::filesystem::create_directory_symlink(mFolder.Path("photos"), Own());
    }
    Names NamesIn(const std::string& aFolder) const {
        Names names;
        for (const auto& entry : std::filesystem::directory_iterator(mFolder.Path(aFolder))) {
            names.insert(entry.path().filename().string());
        }
        return names;
    }
    const Names mPhotos = {"p1.jpg", "p2.jpg", "p3.jpg", ".fill-1-1-1-1"};

    TemporaryFolder mFolder;
    ezFileCacheManager mCache{mFolder.Path("cache").c_str(), 1000000, 2};
};

TEST_F(FileCacheManagerSwap, ALinkThatComesAfterTheFirstRequestLeadsNothingAstray) {
    EXPECT_TRUE(Fill(mCache, "a"));
    LinkToPhotos();
    for (const char* name : {"b", "c", "d"}) {
        EXPECT_FALSE(Fill(mCache, name)) << name;
    }
    EXPECT_EQ(NamesIn("photos"), mPhotos);
}

TEST_F(FileCacheManagerSwap, ALinkThatComesWhereNoFolderWasLeadsNothingAstray) {
    {
        const FaultySystem system({{SystemCall::Mkdir, 1, Fault::kForGood, EACCES}});
        EXPECT_FALSE(Fill(mCache, "a"));
    }
    LinkToPhotos();
    EXPECT_FALSE(Fill(mCache, "a"));
    EXPECT_EQ(NamesIn("photos"), mPhotos);
}

TEST_F(FileCacheManagerSwap, ALinkThatComesWhileAFileIsFilledReceivesAndLosesNothing) {
    EXPECT_TRUE(Fill(mCache, "a"));
    EXPECT_TRUE(Fill(mCache, "b"));
    const FileOwner file = Begin(mCache, "c");
    ASSERT_NE(file, nullptr);
    LinkToPhotos();
    mCache.SetCachedFileState("c", file.get(), true);
    EXPECT_EQ(NamesIn("photos"), mPhotos);
    EXPECT_EQ(NamesIn("moved").size(), 3U); // what was being filled goes as one that a killed process left
    char content[10] = {};
    EXPECT_EQ(file->Seek(0, ezFileSeekMode_Begin), 0);
    EXPECT_EQ(file->Read(content, sizeof content), 9);
    EXPECT_STREQ(content, "thumbnail");
}

TEST_F(FileCacheManagerSwap, AFileReportedBadIsNotRemovedBehindALink) {
    EXPECT_TRUE(Fill(mCache, "a"));
    const FileOwner file = Begin(mCache, "a");
    ASSERT_NE(file, nullptr);
    LinkToPhotos();
    // The same file, under the same name.
    std::filesystem::create_hard_link(mFolder.Path("moved/a"), mFolder.Path("photos/a"));
    mCache.SetCachedFileState("a", file.get(), false);
    EXPECT_EQ(NamesIn("photos").count("a"), 1U);
}

TEST_F(FileCacheManagerSwap, BehindALinkThatWasMetNothingIsHandedOutEither) {
    EXPECT_TRUE(Fill(mCache, "a"));
    LinkToPhotos();
    EXPECT_FALSE(Fill(mCache, "b"));
    EXPECT_EQ(Begin(mCache, "p1.jpg"), nullptr);
}

TEST_F(FileCacheManagerSwap, OnceTheLinkIsGoneTheCacheServesAgain) {
    LinkToPhotos();
    EXPECT_FALSE(Fill(mCache, "a"));
    std::filesystem::remove(Own());
    EXPECT_TRUE(Fill(mCache, "a"));
    EXPECT_EQ(NamesIn("cache/ezcache"), Names{"a"});
}

TEST_F(FileCacheManagerSwap, AnotherFolderInItsPlaceIsServedFrom) {
    EXPECT_TRUE(Fill(mCache, "a"));
    std::filesystem::rename(Own(), mFolder.Path("moved"));
    std::filesystem::create_directory(Own());
    EXPECT_TRUE(Fill(mCache, "b"));
    EXPECT_EQ(NamesIn("cache/ezcache"), Names{"b"});
    EXPECT_EQ(NamesIn("moved"), Names{"a"});
}

// ---- failures on the way into the folder ----

TEST_F(FileCacheManagerSwap, AFolderThatGoesBetweenItsOpeningAndTheNewFileIsOpenedAgain) {
    EXPECT_TRUE(Fill(mCache, "a"));
    for (const int error : {ENOENT, EEXIST}) {
        const FaultySystem system({{SystemCall::Open, 3, 1, error}}); // the request, the folder, the file
        EXPECT_TRUE(Fill(mCache, std::to_string(error))) << error;
        EXPECT_TRUE(system.HasStruck());
    }
    const FaultySystem system({{SystemCall::Open, 3, 1, ENOSPC}});
    EXPECT_FALSE(Fill(mCache, "b"));
}

TEST_F(FileCacheManagerSwap, OpeningIsRepeatedWhenInterrupted) {
    Fault interrupted = {SystemCall::Open, 1, Fault::kForGood, EINTR};
    interrupted.mfEveryOther = true;
    const FaultySystem system({interrupted});
    EXPECT_TRUE(Fill(mCache, "a"));
    EXPECT_EQ(NamesIn("cache/ezcache"), Names{"a"});
}

TEST_F(FileCacheManagerSwap, AHitThatCannotOpenTheFolderIsServed) {
    const std::string path = mFolder.Write("cache/ezcache/a", "x");
    const auto later = std::filesystem::last_write_time(path) + std::chrono::hours(1);
    std::filesystem::last_write_time(path, later);
    const FaultySystem system({{SystemCall::Open, 2, 1, EMFILE}});
    EXPECT_NE(Begin(mCache, "a"), nullptr);
    EXPECT_TRUE(system.HasStruck());
    EXPECT_EQ(system.Count(SystemCall::ReadDir), 0U);
    EXPECT_GT(std::filesystem::last_write_time(path), later); // marked all the same, as the latest
}

TEST_F(FileCacheManagerSwap, AFileReportedBadThatCannotBeRemovedKeepsItsName) {
    EXPECT_TRUE(Fill(mCache, "a"));
    const FileOwner file = Begin(mCache, "a");
    {
        const FaultySystem system({{SystemCall::Unlink, 1, 1, EACCES}});
        mCache.SetCachedFileState("a", file.get(), false);
        EXPECT_TRUE(system.HasStruck());
    }
    EXPECT_EQ(NamesIn("cache/ezcache"), Names{"a"});
}

// ---- a folder that cannot be looked through ----

class FileCacheManagerBlind : public testing::Test {
protected:
    void Fill(ezFileCacheManager& aCache, std::size_t aFiles) {
        for (std::size_t i = 0; i < aFiles; ++i) {
            const ezCString name = Bytes("f" + std::to_string(mFiles++));
            bool fNew = false;
            const FileOwner file(aCache.OpenCachedFile(name, &fNew, 0));
            ASSERT_TRUE(file != nullptr && fNew);
            ASSERT_EQ(file->Write("x", 1), 1);
            aCache.SetCachedFileState(name, file.get(), true);
        }
    }
    std::size_t CountFiles() const {
        const std::filesystem::directory_iterator all(mFolder.Path("ezcache"));
        return static_cast<std::size_t>(std::distance(begin(all), end(all)));
    }
    void FillByObjectsWhoseFirst(SystemCall aCall, int anError) {
        for (int object = 0; object < 20; ++object) {
            ezFileCacheManager cache(Bytes(mFolder.GetPath()), UINT64_MAX, 100);
            const FaultySystem system({{aCall, 1, 1, anError}});
            Fill(cache, 11); // below the eighth that is looked after in any case
            EXPECT_TRUE(system.HasStruck());
        }
    }

    TemporaryFolder mFolder;
    std::size_t mFiles = 0;
};

TEST_F(FileCacheManagerBlind, AFolderThatOnceDidNotOpenIsLookedThroughAtTheNextFile) {
    for (const int error : {EMFILE, EACCES}) {
        FillByObjectsWhoseFirst(SystemCall::OpenDir, error);
        EXPECT_EQ(CountFiles(), 100U) << error;
    }
}

TEST_F(FileCacheManagerBlind, AFolderThatOnceDidNotReadToItsEndIsLookedThroughAtTheNextFile) {
    FillByObjectsWhoseFirst(SystemCall::ReadDir, EIO);
    EXPECT_EQ(CountFiles(), 100U);
}

TEST_F(FileCacheManagerBlind, WhatWasKnownHoldsWhileTheFolderCannotBeLookedThrough) {
    ezFileCacheManager cache(Bytes(mFolder.GetPath()), UINT64_MAX, 100);
    {
        const FaultySystem system;
        Fill(cache, 100);
        Fill(cache, 1); // the oldest go from here on
    }
    {
        const FaultySystem system({{SystemCall::OpenDir, 1, Fault::kForGood, EMFILE}});
        Fill(cache, 60);
        EXPECT_TRUE(system.HasStruck());
        EXPECT_EQ(CountFiles(), 100U);
    }
    {
        const FaultySystem system({{SystemCall::ReadDir, 5, Fault::kForGood, EIO}});
        Fill(cache, 60);
        EXPECT_TRUE(system.HasStruck());
    }
    const FaultySystem system;
    Fill(cache, 1);
    EXPECT_EQ(CountFiles(), 100U);
}

} // namespace
