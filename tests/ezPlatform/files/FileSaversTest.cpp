#include "FileCreateKit.h"
#include "support/ReplacedSystem.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <sys/file.h>
#include <thread>
#include <utility>
#include <vector>

// Several that save the same file at once.

using FileSavers = FileCreate;

namespace {

/// What happens before one of the system calls of a saver, and is not hooked itself.
struct Between {
    std::size_t mAt = 0; ///< which call, from 1
    std::size_t mCount = 0;
    std::function<void()> mAction;
};
Between gBetween;

void Meet() {
    if (++gBetween.mCount == gBetween.mAt) {
        const std::function<void()> action = std::exchange(gBetween.mAction, nullptr);
        action();
    }
}

template <auto kMember, typename Type = decltype(kMember)>
struct Met;
template <auto kMember, typename Result, typename... Arguments>
struct Met<kMember, Result (*ezSystemCalls::*)(Arguments...)> {
    static Result Call(Arguments... aArguments) {
        Meet();
        return (ezSystem_Real().*kMember)(aArguments...);
    }
};

template <auto... kMembers>
void MeetAt(ezSystemCalls& aCalls) {
    ((aCalls.*kMembers = Met<kMembers>::Call), ...);
}

void MeetEverywhere(ezSystemCalls& aCalls) {
    MeetAt<&ezSystemCalls::mOpen, &ezSystemCalls::mClose, &ezSystemCalls::mFStat, &ezSystemCalls::mPWrite,
           &ezSystemCalls::mFChmod, &ezSystemCalls::mFLock, &ezSystemCalls::mOpenDir,
           &ezSystemCalls::mReadDir, &ezSystemCalls::mCloseDir, &ezSystemCalls::mReadLink,
           &ezSystemCalls::mOpenAt, &ezSystemCalls::mLStatAt, &ezSystemCalls::mRenameAt,
           &ezSystemCalls::mUnlinkAt, &ezSystemCalls::mDuplicate, &ezSystemCalls::mGetRandom>(aCalls);
    WithoutSync(aCalls);
}

/// A save with something else before its n-th system call; false when it makes fewer.
bool SaveWith(std::size_t aAt, const std::string& aPath, const std::string& aText,
              const std::function<void()>& aAction, bool* afSaved) {
    gBetween = {aAt, 0, aAction};
    const ReplacedSystem system(MeetEverywhere);
    *afSaved = Save(aPath, aText);
    return gBetween.mCount >= aAt;
}

const std::string kFirst(5000, '1');
const std::string kSecond = "the second one's";

} // namespace

TEST_F(FileSavers, TwoLeaveOneWholeFileOrTheOtherWhereverTheyMeet) {
    for (const bool fNew : {false, true}) {
        const std::string path = fNew ? mFolder.Path("new.txt") : mPath;
        std::size_t meetings = 0;
        bool fFirst = false;
        bool fSecond = false;
        while (SaveWith(
            meetings + 1, path, kFirst, [&] { fSecond = Save(path, kSecond); }, &fFirst)) {
            ++meetings;
            const std::string content = ContentAt(path);
            EXPECT_TRUE(fSecond) << meetings;
            // The only one that may be refused is the one that found nothing, and then something.
            EXPECT_TRUE(fFirst || (fNew && content == kSecond)) << meetings;
            EXPECT_TRUE(content == kFirst || content == kSecond) << meetings;
            EXPECT_EQ(NamesIn(mFolder.GetPath()),
                      fNew ? Names({"new.txt", "table.txt"}) : Names({"table.txt"}))
                << meetings;
            if (fNew) {
                std::filesystem::remove(path);
            }
        }
        EXPECT_GT(meetings, 20U);
    }
}

TEST_F(FileSavers, OneThatIsKilledWhereverItStandsHarmsNoOther) {
    std::size_t deaths = 0;
    int status = -SIGKILL;
    while (status == -SIGKILL) {
        status = InChild([&] {
            bool fSaved = false;
            SaveWith(
                deaths + 1, mPath, kFirst, [] { kill(getpid(), SIGKILL); }, &fSaved);
            return fSaved ? 42 : 1;
        });
        ++deaths;
        const std::string content = ContentAt(mPath);
        EXPECT_TRUE(content == kOld || content == kFirst) << deaths;
        EXPECT_LE(NamesIn(mFolder.GetPath()).size(), 2U) << deaths;
        EXPECT_TRUE(Save(mPath, kOld));
        EXPECT_EQ(NamesIn(mFolder.GetPath()), Names({"table.txt"})) << "the next one clears up";
    }
    EXPECT_EQ(status, 42);
    EXPECT_GT(deaths, 20U);
}

TEST_F(FileSavers, WhatOneThatLivesIsWritingIsNoLeftover) {
    ezFile living;
    ASSERT_TRUE(Create(living, mPath));
    EXPECT_TRUE(WriteAll(living, kFirst));
    // A clock that is a year ahead makes it no leftover either.
    const struct timespec longAgo[2] = {{1, 0}, {1, 0}};
    for (const std::string& name : NamesIn(mFolder.GetPath())) {
        if (name != "table.txt") {
            EXPECT_EQ(utimensat(AT_FDCWD, mFolder.Path(name).c_str(), longAgo, 0), 0);
        }
    }
    EXPECT_TRUE(Save(mPath, kSecond));
    EXPECT_EQ(NamesIn(mFolder.GetPath()).size(), 2U);
    EXPECT_TRUE(living.Close());
    EXPECT_EQ(ContentAt(mPath), kFirst);
    EXPECT_EQ(NamesIn(mFolder.GetPath()), Names({"table.txt"}));
}

TEST_F(FileSavers, WithoutLocksALeftoverGoesByItsAge) {
    struct Case {
        std::string mName;
        std::int64_t mAge; ///< in seconds
        bool mfGoes;
    };
    const std::string prefix = ".table.txt.";
    const Case cases[] = {{prefix + "0123456789ABCDE0.ezsave", 86500, true},
                          {prefix + "0123456789ABCDE1.ezsave", 86300, false},
                          {prefix + "0123456789ABCDE2.ezsave", 0, false},
                          {prefix + "0123456789ABCDE3.ezsave", -1000000, false}};
    for (const Case& left : cases) {
        const std::string path = mFolder.Write(left.mName, "left");
        const struct timespec then = {time(nullptr) - static_cast<time_t>(left.mAge), 0};
        const struct timespec times[2] = {then, then};
        ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    }
    {
        const ReplacedSystem system([](ezSystemCalls& aCalls) {
            aCalls.mFLock = [](int, int) {
                errno = ENOLCK;
                return -1;
            };
        });
        EXPECT_TRUE(Save(mPath, kNew)) << "a save needs none";
        EXPECT_EQ(ContentAt(mPath), kNew);
    }
    for (const Case& left : cases) {
        EXPECT_EQ(std::filesystem::exists(mFolder.Path(left.mName)), !left.mfGoes) << left.mAge;
    }
    EXPECT_TRUE(Save(mPath, kNew));
    EXPECT_EQ(NamesIn(mFolder.GetPath()), Names({"table.txt"})) << "with locks all of them go";
}

TEST_F(FileSavers, OnlyLeftoversOfTheSameTargetGo) {
    const Names others = {".table.txt.0123456789ABCDEF.ezsav",
                          ".table.txt.0123456789ABCDEF.ezsave1",
                          ".table.txt.0123456789abcdef.ezsave",
                          ".table.txt.0123456789ABCDE.ezsave",
                          ".table.txt..ezsave",
                          ".table.txtx.0123456789ABCDEF.ezsave",
                          "table.txt.0123456789ABCDEF.ezsave",
                          ".able.txt.0123456789ABCDEF.ezsave"};
    for (const std::string& name : others) {
        mFolder.Write(name, "somebody's");
    }
    std::filesystem::create_directory(mFolder.Path(".table.txt.0000000000000000.ezsave"));
    ASSERT_EQ(mkfifo(mFolder.Path(".table.txt.0000000000000001.ezsave").c_str(), 0600), 0);
    ASSERT_EQ(symlink("table.txt", mFolder.Path(".table.txt.0000000000000002.ezsave").c_str()), 0);
    const Watchdog watchdog;
    EXPECT_TRUE(Save(mPath, kNew));
    Names left = NamesIn(mFolder.GetPath());
    EXPECT_EQ(left.erase(".table.txt.0000000000000000.ezsave"), 1U) << "a folder";
    EXPECT_EQ(left.erase(".table.txt.0000000000000002.ezsave"), 1U) << "a link";
    left.erase(".table.txt.0000000000000001.ezsave");
    left.erase("table.txt");
    EXPECT_EQ(left, others);
    EXPECT_EQ(ContentAt(mPath), kNew);
}

TEST_F(FileSavers, ATakenNameLeadsToAnother) {
    static int sRandom = 0;
    sRandom = 0;
    mFolder.Write(".table.txt.0000000000000000.ezsave", "");
    const int held = open(mFolder.Path(".table.txt.0000000000000000.ezsave").c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(flock(held, LOCK_EX), 0);
    {
        const ReplacedSystem system([](ezSystemCalls& aCalls) {
            aCalls.mGetRandom = [](void* aBuffer, std::size_t aSize) {
                std::fill_n(static_cast<char*>(aBuffer), aSize, ++sRandom < 8 ? '\0' : '\x7f');
                return static_cast<ssize_t>(aSize);
            };
        });
        EXPECT_TRUE(Save(mPath, kNew)) << "the eighth";
        sRandom = -1;
        EXPECT_FALSE(Save(mPath, kOld)) << "and no more";
    }
    EXPECT_EQ(ContentAt(mPath), kNew);
    close(held);
    const ReplacedSystem system([](ezSystemCalls& aCalls) {
        aCalls.mGetRandom = [](void*, std::size_t) -> ssize_t {
            errno = ENOSYS;
            return -1;
        };
    });
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(Save(mPath, std::to_string(i))) << "without random bytes";
    }
    EXPECT_EQ(NamesIn(mFolder.GetPath()), Names({"table.txt"}));
}

TEST_F(FileSavers, TwoProcessesAtOnceLeaveWholeFilesOnly) {
    const std::string other(20000, 'o');
    const auto saveForAWhile = [&](const std::string& aText) {
        const ReplacedSystem system(WithoutSync);
        const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(700);
        while (std::chrono::steady_clock::now() < end) {
            if (!Save(mPath, aText)) {
                return 1;
            }
        }
        return 42;
    };
    std::vector<pid_t> children;
    for (const std::string& text : {kFirst, other}) {
        const pid_t child = fork();
        if (child == 0) {
            alarm(20);
            _exit(saveForAWhile(text));
        }
        children.push_back(child);
    }
    std::size_t looks = 0;
    int ended = 0;
    while (ended < 2) {
        const std::string content = ContentAt(mPath);
        ASSERT_TRUE(content == kOld || content == kFirst || content == other) << content.size();
        ++looks;
        for (pid_t& child : children) {
            int status = 0;
            if (child > 0 && waitpid(child, &status, WNOHANG) == child) {
                EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 42);
                child = 0;
                ++ended;
            }
        }
    }
    EXPECT_GT(looks, 2U);
    EXPECT_NE(ContentAt(mPath), kOld);
    EXPECT_EQ(NamesIn(mFolder.GetPath()), Names({"table.txt"}));
}
