#include "ezPlatform/files/FileState.h"

#include "support/ReplacedSystem.h"
#include "support/Settled.h"
#include "support/Str.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <filesystem>
#include <set>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

struct stat gStatus = {};
struct timespec gNow = {};

/// A file of this state, looked at by this clock.
void Replace(ezSystemCalls& aCalls) {
    aCalls.mStat = [](const char*, struct stat* aStatus) {
        *aStatus = gStatus;
        return 0;
    };
    aCalls.mNow = [](struct timespec* aNow) { *aNow = gNow; };
}

struct stat SomeStatus() {
    struct stat status = {};
    status.st_dev = 1;
    status.st_ino = 2;
    status.st_size = 3;
    status.st_mtim = {100, 5};
    status.st_ctim = {200, 6};
    return status;
}

std::string TextOf(const ezFileState& aState) {
    return std::string(aState.ToText().View());
}

bool IsSettled(const ezFileState& aState) {
    return aState.ToIdentity() == aState.ToText();
}

/// Whether a file is settled that was changed last at aStamp.
bool IsSettled(const struct timespec& aStamp, const struct timespec& aNow) {
    gStatus = SomeStatus();
    gStatus.st_mtim = {0, 1};
    gStatus.st_ctim = aStamp;
    gNow = aNow;
    const bool fSettled = IsSettled(ezFileState("x"));
    gStatus.st_mtim = aStamp;
    gStatus.st_ctim = {0, 1};
    EXPECT_EQ(IsSettled(ezFileState("x")), fSettled) << "either time counts";
    return fSettled;
}

} // namespace

TEST(FileState, WhatIsNotThereIsNone) {
    const TemporaryFolder folder;
    for (const std::string& path :
         {folder.Path("missing"), std::string(), folder.GetPath() + std::string("\0x", 2)}) {
        const ezFileState state(Bytes(path));
        EXPECT_EQ(TextOf(state), "none");
        EXPECT_EQ(state.ToIdentity(), "none");
        EXPECT_EQ(state, ezFileState());
    }
}

TEST(FileState, EveryPartOfItTells) {
    const ReplacedSystem system(Replace);
    gNow = {5000, 0};
    gStatus = SomeStatus();
    const ezFileState first("x");
    EXPECT_EQ(TextOf(first), "1 2 3 100.5 200.6");
    EXPECT_EQ(first.ToIdentity(), first.ToText());
    EXPECT_EQ(first, ezFileState("y")) << "the path is no part of it";
    using Change = void (*)(struct stat&);
    for (const Change change :
         std::vector<Change>{[](struct stat& aStatus) { aStatus.st_dev = 9; },
                             [](struct stat& aStatus) { aStatus.st_ino = 9; },
                             [](struct stat& aStatus) { aStatus.st_size = 9; },
                             [](struct stat& aStatus) { aStatus.st_mtim.tv_sec = 9; },
                             [](struct stat& aStatus) { aStatus.st_mtim.tv_nsec = 9; },
                             [](struct stat& aStatus) { aStatus.st_ctim.tv_sec = 9; },
                             [](struct stat& aStatus) { aStatus.st_ctim.tv_nsec = 9; }}) {
        gStatus = SomeStatus();
        change(gStatus);
        EXPECT_NE(first, ezFileState("x")) << TextOf(ezFileState("x"));
        EXPECT_NE(first, ezFileState());
    }
}

TEST(FileState, IsSettledOnceTheStepOfItsTimesIsOver) {
    const ReplacedSystem system(Replace);
    struct Case {
        struct timespec mStamp;
        struct timespec mNow;
        bool mfSettled;
    };
    const Case cases[] = {
        {{1000, 500000000}, {1000, 500000000}, false}, // fine times: two ticks
        {{1000, 500000000}, {1000, 519999999}, false},
        {{1000, 500000000}, {1000, 520000000}, true},
        {{1000, 990000000}, {1001, 9999999}, false}, // into the next second
        {{1000, 990000000}, {1001, 10000000}, true},
        {{1000, 500000000}, {1000, 480000001}, false}, // a server whose clock is a little ahead
        {{1000, 500000000}, {1000, 480000000}, true},
        {{1000, 0}, {1002, 19999999}, false}, // coarse times: two seconds
        {{1000, 0}, {1002, 20000000}, true},
        {{1000, 0}, {997, 980000001}, false},
        {{1000, 0}, {997, 980000000}, true},
        {{1000, 7}, {100, 0}, true}, // a device whose clock begins in 1970
        {{1000, 7}, {1999, 0}, true},
        {{1000, 7}, {2000, 0}, true},
        {{1000, 7}, {2001, 0}, true},
        {{0, 0}, {INT32_MAX, 0}, true},
    };
    for (const Case& look : cases) {
        EXPECT_EQ(IsSettled(look.mStamp, look.mNow), look.mfSettled)
            << look.mStamp.tv_sec << "." << look.mStamp.tv_nsec << " at " << look.mNow.tv_sec << "."
            << look.mNow.tv_nsec;
    }
}

TEST(FileState, AnIdentityThatIsNotSettledIsNeverTheSameTwice) {
    const ReplacedSystem system(Replace);
    gStatus = SomeStatus();
    gNow = {200, 10};
    std::set<std::string> identities;
    for (int i = 0; i < 10; ++i) {
        const ezFileState state("x");
        EXPECT_FALSE(IsSettled(state));
        EXPECT_EQ(TextOf(state), "1 2 3 100.5 200.6");
        identities.insert(std::string(state.ToIdentity().View()));
    }
    EXPECT_EQ(identities.size(), 10U);
    gNow = {300, 0};
    EXPECT_EQ(identities.count(std::string(ezFileState("x").ToIdentity().View())), 0U) << "nor later";
}

// Two contents of one size, one after the other and as fast as can be: whatever was made of the first is not
// found for the second.
TEST(FileState, ARewriteOfTheSameSizeIsSeenWhateverTheStepOfTheFileSystem) {
    const MemoryFolder memory;
    const TemporaryFolder disk;
    for (const TemporaryFolder* folder : {static_cast<const TemporaryFolder*>(&memory), &disk}) {
        const std::string path = folder->Write("a", "first");
        for (int i = 0; i < 300; ++i) {
            const ezFileState before(Bytes(path));
            const ezCString identity = before.ToIdentity();
            const int file = open(path.c_str(), O_WRONLY | O_CLOEXEC);
            ASSERT_EQ(pwrite(file, i % 2 == 0 ? "other" : "first", 5, 0), 5);
            close(file);
            ASSERT_NE(ezFileState(Bytes(path)).ToIdentity(), identity) << i;
            if (i % 100 == 99) {
                WaitUntilSettled(folder->GetPath());
            }
        }
    }
}

TEST(FileState, TellsACopyWithItsTimeKept) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("a", "first");
    WaitUntilSettled(folder.GetPath());
    const ezFileState before(Bytes(path));
    const auto time = std::filesystem::last_write_time(path);
    std::filesystem::rename(folder.Write("b", "other"), path);
    std::filesystem::last_write_time(path, time);
    EXPECT_NE(ezFileState(Bytes(path)), before);
    WaitUntilSettled(folder.GetPath());
    EXPECT_EQ(ezFileState(Bytes(path)).ToIdentity(), ezFileState(Bytes(path)).ToIdentity());
}
