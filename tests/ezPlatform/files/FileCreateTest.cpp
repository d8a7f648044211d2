#include "FileCreateKit.h"
#include "support/ReplacedSystem.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <fcntl.h>
#include <functional>
#include <sys/socket.h>
#include <sys/un.h>
#include <vector>

namespace {

int gCalls = 0; ///< what the replaced calls below count

} // namespace

TEST_F(FileCreate, WritesANewFile) {
    const std::string path = mFolder.Path("new.txt");
    ezFile file;
    ASSERT_TRUE(Create(file, path));
    EXPECT_TRUE(file.IsOpened());
    EXPECT_TRUE(WriteAll(file, "one "));
    EXPECT_TRUE(WriteAll(file, ""));
    EXPECT_TRUE(WriteAll(file, "two"));
    EXPECT_FALSE(std::filesystem::exists(path)) << "it stands under its name when it is whole";
    EXPECT_TRUE(file.Close());
    EXPECT_FALSE(file.IsOpened());
    EXPECT_EQ(ContentAt(path), "one two");
    EXPECT_FALSE(file.Close()) << "there is nothing left to close";
    EXPECT_EQ(NamesIn(mFolder.GetPath()), Names({"new.txt", "table.txt"}));
}

TEST_F(FileCreate, ReplacesAnOldFileWhenItIsClosed) {
    ezFile file;
    ASSERT_TRUE(Create(file, mPath));
    EXPECT_TRUE(WriteAll(file, kNew));
    EXPECT_EQ(ContentAt(mPath), kOld);
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(ContentAt(mPath), kNew);
    EXPECT_EQ(NamesIn(mFolder.GetPath()), Names({"table.txt"}));
}

TEST_F(FileCreate, AnEmptyFileAndOneWithEveryByteAreWritten) {
    EXPECT_TRUE(Save(mPath, ""));
    EXPECT_EQ(ContentAt(mPath), "");
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
    }
    EXPECT_TRUE(Save(mPath, bytes));
    EXPECT_EQ(ContentAt(mPath), bytes);
}

TEST_F(FileCreate, ARelativePathIsWrittenInTheWorkingFolder) {
    EXPECT_EQ(InChild([&] {
                  return chdir(mFolder.GetPath().c_str()) == 0 && Save("table.txt", "a") && Save("new", "b")
                             ? 0
                             : 1;
              }),
              0);
    EXPECT_EQ(ContentAt(mPath), "a");
    EXPECT_EQ(ContentAt(mFolder.Path("new")), "b");
    EXPECT_EQ(NamesIn(mFolder.GetPath()), Names({"new", "table.txt"}));
}

TEST_F(FileCreate, TheNewContentIsOnTheDiskBeforeItTakesTheName) {
    static std::string sOrder;
    sOrder.clear();
    const ReplacedSystem system([](ezSystemCalls& aCalls) {
        aCalls.mFSync = [](int aFile) {
            sOrder += "sync ";
            return ezSystem_Real().mFSync(aFile);
        };
        aCalls.mRenameAt = [](int aFolder, const char* aFrom, const char* aTo) {
            sOrder += "rename";
            return ezSystem_Real().mRenameAt(aFolder, aFrom, aTo);
        };
    });
    EXPECT_TRUE(Save(mPath, kNew));
    EXPECT_EQ(sOrder, "sync rename");
}

TEST_F(FileCreate, AFileThatIsDestroyedWithoutCloseIsGivenUp) {
    {
        ezFile file;
        ASSERT_TRUE(Create(file, mPath));
        EXPECT_TRUE(WriteAll(file, kNew));
    }
    ExpectOldFileWhole();
    {
        ezFile file;
        ASSERT_TRUE(Create(file, mFolder.Path("new.txt")));
    }
    ExpectOldFileWhole();
}

TEST_F(FileCreate, WithoutOverwriteAnOldFileIsRefusedAndANewOneIsNot) {
    ezFile file;
    EXPECT_FALSE(Create(file, mPath, false));
    EXPECT_FALSE(file.IsOpened());
    EXPECT_FALSE(file.Close());
    ExpectOldFileWhole();
    EXPECT_TRUE(Create(file, mFolder.Path("new.txt"), false));
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(ContentAt(mFolder.Path("new.txt")), "");
}

TEST_F(FileCreate, AnObjectThatIsOpenRefusesAnother) {
    ezFile writing;
    ASSERT_TRUE(Create(writing, mPath));
    EXPECT_FALSE(Create(writing, mFolder.Path("other.txt")));
    EXPECT_TRUE(WriteAll(writing, kNew)) << "and goes on";
    EXPECT_TRUE(writing.Close());
    EXPECT_EQ(ContentAt(mPath), kNew);

    ezFile reading(mPath.c_str(), ezFileOpenMode_Read);
    ASSERT_TRUE(reading.Open());
    EXPECT_FALSE(Create(reading, mPath));
    EXPECT_TRUE(reading.IsOpened());
    EXPECT_EQ(NamesIn(mFolder.GetPath()), Names({"table.txt"}));
}

TEST_F(FileCreate, AFileIsEitherReadOrWritten) {
    ezFile writing;
    ASSERT_TRUE(Create(writing, mPath));
    EXPECT_TRUE(WriteAll(writing, kNew));
    char byte = 0;
    EXPECT_EQ(writing.Read(&byte, 1), -1);
    EXPECT_EQ(writing.Length(), static_cast<ezFileOffset>(kNew.size()));
    EXPECT_TRUE(writing.Close());
    EXPECT_EQ(writing.Write("x", 1), -1) << "it is closed";

    ezFile reading(mPath.c_str(), ezFileOpenMode_Read);
    ASSERT_TRUE(reading.Open());
    EXPECT_EQ(reading.Write("x", 1), -1);
    EXPECT_TRUE(reading.Close());
    EXPECT_EQ(ContentAt(mPath), kNew);
    EXPECT_EQ(ezFile().Write("x", 1), -1);
}

TEST_F(FileCreate, AnObjectServesOneFileAfterAnother) {
    ezFile file(mPath.c_str(), ezFileOpenMode_Read);
    ASSERT_TRUE(Create(file, mFolder.Path("a.txt")));
    EXPECT_TRUE(WriteAll(file, "a"));
    EXPECT_TRUE(file.Close());
    ASSERT_TRUE(file.Open()) << "the file that was bound";
    char buffer[100];
    EXPECT_EQ(file.Read(buffer, sizeof buffer), static_cast<int>(kOld.size()));
    EXPECT_TRUE(file.Close());
    ASSERT_TRUE(Create(file, mFolder.Path("b.txt")));
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(ContentAt(mFolder.Path("a.txt")), "a");
    EXPECT_EQ(ContentAt(mFolder.Path("b.txt")), "");
}

TEST_F(FileCreate, AFullDiskLeavesTheOldFile) {
    const ReplacedSystem system([](ezSystemCalls& aCalls) {
        aCalls.mPWrite = [](int, const void*, std::size_t, ezFileOffset) -> ssize_t {
            errno = ENOSPC;
            return -1;
        };
    });
    ezFile file;
    ASSERT_TRUE(Create(file, mPath));
    EXPECT_EQ(file.Write(kNew.data(), kNew.size()), -1);
    EXPECT_FALSE(file.Close());
    EXPECT_FALSE(file.IsOpened());
    ExpectOldFileWhole();
}

TEST_F(FileCreate, ADiskThatFillsUpIsAShortWriteAndLeavesTheOldFile) {
    gCalls = 0;
    const ReplacedSystem system([](ezSystemCalls& aCalls) {
        aCalls.mPWrite = [](int aFile, const void* aBuffer, std::size_t aSize,
                            ezFileOffset anOffset) -> ssize_t {
            if (++gCalls == 1) {
                return ezSystem_Real().mPWrite(aFile, aBuffer, std::min<std::size_t>(aSize, 5), anOffset);
            }
            if (gCalls == 2) {
                errno = ENOSPC;
                return -1;
            }
            return ezSystem_Real().mPWrite(aFile, aBuffer, aSize, anOffset);
        };
    });
    ezFile file;
    ASSERT_TRUE(Create(file, mPath));
    EXPECT_EQ(file.Write(kNew.data(), kNew.size()), 5);
    EXPECT_TRUE(WriteAll(file, "more")) << "there is room again, but a piece is missing";
    EXPECT_FALSE(file.Close());
    ExpectOldFileWhole();
}

TEST_F(FileCreate, AWriteThatTakesNothingIsAFailure) {
    const ReplacedSystem system([](ezSystemCalls& aCalls) {
        aCalls.mPWrite = [](int, const void*, std::size_t, ezFileOffset) -> ssize_t { return 0; };
    });
    const Watchdog watchdog;
    EXPECT_FALSE(Save(mPath, kNew));
    ExpectOldFileWhole();
}

TEST_F(FileCreate, PartialAndInterruptedCallsAreRepeated) {
    gCalls = 0;
    const ReplacedSystem system([](ezSystemCalls& aCalls) {
        aCalls.mOpen = [](const char* aPath, int aFlags, mode_t aMode) {
            errno = EINTR;
            return ++gCalls % 2 == 1 ? -1 : ezSystem_Real().mOpen(aPath, aFlags, aMode);
        };
        aCalls.mPWrite = [](int aFile, const void* aBuffer, std::size_t aSize,
                            ezFileOffset anOffset) -> ssize_t {
            errno = EINTR;
            return ++gCalls % 2 == 1
                       ? -1
                       : ezSystem_Real().mPWrite(aFile, aBuffer, std::min<std::size_t>(aSize, 3), anOffset);
        };
        aCalls.mFSync = [](int aFile) {
            errno = EINTR;
            return ++gCalls % 2 == 1 ? -1 : ezSystem_Real().mFSync(aFile);
        };
    });
    EXPECT_TRUE(Save(mPath, kNew));
    EXPECT_EQ(ContentAt(mPath), kNew);
    EXPECT_EQ(NamesIn(mFolder.GetPath()), Names({"table.txt"}));
}

TEST_F(FileCreate, ARequestOverINT_MAXIsTakenAsINT_MAX) {
    const ReplacedSystem system([](ezSystemCalls& aCalls) {
        aCalls.mPWrite = [](int, const void*, std::size_t aSize, ezFileOffset) {
            return static_cast<ssize_t>(aSize);
        };
    });
    ezFile file;
    ASSERT_TRUE(Create(file, mPath));
    EXPECT_EQ(file.Write("", static_cast<std::size_t>(INT_MAX) + 10), INT_MAX);
}

TEST_F(FileCreate, EveryFailingCallLeavesTheOldFile) {
    struct Case {
        const char* mWhat;
        void (*mReplace)(ezSystemCalls&);
    };
    const Case cases[] = {
        {"fsync",
         [](ezSystemCalls& aCalls) {
             aCalls.mFSync = [](int) {
                 errno = EIO;
                 return -1;
             };
         }},
        {"close",
         [](ezSystemCalls& aCalls) {
             aCalls.mClose = [](int aFile) {
                 ezSystem_Real().mClose(aFile);
                 errno = EIO;
                 return -1;
             };
         }},
        {"rename",
         [](ezSystemCalls& aCalls) {
             aCalls.mRenameAt = [](int, const char*, const char*) {
                 errno = EACCES;
                 return -1;
             };
         }},
        {"fchmod",
         [](ezSystemCalls& aCalls) {
             aCalls.mFChmod = [](int, mode_t) {
                 errno = EPERM;
                 return -1;
             };
         }},
        {"fstat",
         [](ezSystemCalls& aCalls) {
             aCalls.mFStat = [](int, struct stat*) {
                 errno = EIO;
                 return -1;
             };
         }},
        {"where it stands",
         [](ezSystemCalls& aCalls) {
             aCalls.mReadLink = [](const char*, char*, std::size_t) -> ssize_t {
                 errno = ENOENT;
                 return -1;
             };
             aCalls.mRealPath = [](const char*) -> char* {
                 errno = ENOMEM;
                 return nullptr;
             };
         }},
        {"it stands elsewhere by now",
         [](ezSystemCalls& aCalls) {
             aCalls.mLStatAt = [](int aFolder, const char* aName, struct stat* aStatus) {
                 const int result = ezSystem_Real().mLStatAt(aFolder, aName, aStatus);
                 ++aStatus->st_ino;
                 return result;
             };
         }},
        {"the lock is somebody else's, again and again",
         [](ezSystemCalls& aCalls) {
             aCalls.mFLock = [](int, int) {
                 errno = EWOULDBLOCK;
                 return -1;
             };
         }},
        {"every name is taken",
         [](ezSystemCalls& aCalls) {
             aCalls.mOpenAt = [](int aFolder, const char* aName, int aFlags, mode_t aMode) {
                 errno = EEXIST;
                 return (aFlags & O_CREAT) != 0 ? -1 : ezSystem_Real().mOpenAt(aFolder, aName, aFlags, aMode);
             };
         }},
        {"no descriptor to hold the lock",
         [](ezSystemCalls& aCalls) {
             aCalls.mDuplicate = [](int) {
                 errno = EMFILE;
                 return -1;
             };
         }},
    };
    for (const Case& failing : cases) {
        {
            const ReplacedSystem system(failing.mReplace);
            EXPECT_FALSE(Save(mPath, kNew)) << failing.mWhat;
        }
        ExpectOldFileWhole(failing.mWhat);
    }
    EXPECT_TRUE(Save(mPath, kNew)) << "and the next save succeeds";
    EXPECT_EQ(ContentAt(mPath), kNew);
}

TEST_F(FileCreate, EightNamesAreTriedAndTheTargetIsLookedForAHundredTimes) {
    static int sLeft = 0;
    const auto saves = [&](int aCount, const std::function<void(ezSystemCalls&)>& aReplace) {
        sLeft = aCount;
        const ReplacedSystem system(aReplace);
        return Save(mPath, kNew);
    };
    const auto taken = [](ezSystemCalls& aCalls) {
        aCalls.mOpenAt = [](int aFolder, const char* aName, int aFlags, mode_t aMode) {
            errno = EEXIST;
            const bool fTaken = (aFlags & O_CREAT) != 0 && sLeft-- > 0;
            return fTaken ? -1 : ezSystem_Real().mOpenAt(aFolder, aName, aFlags, aMode);
        };
    };
    EXPECT_TRUE(saves(7, taken));
    EXPECT_FALSE(saves(8, taken));
    const auto elsewhere = [](ezSystemCalls& aCalls) {
        aCalls.mLStatAt = [](int aFolder, const char* aName, struct stat* aStatus) {
            const int result = ezSystem_Real().mLStatAt(aFolder, aName, aStatus);
            aStatus->st_ino += sLeft-- > 0 ? 1 : 0;
            return result;
        };
    };
    EXPECT_TRUE(saves(2 * 100 - 1, elsewhere)) << "each look asks two names";
    EXPECT_FALSE(saves(2 * 100, elsewhere));
}

TEST_F(FileCreate, AKilledWriterLeavesTheOldFileAndTheNextSaveClearsUp) {
    EXPECT_EQ(InChild([&] {
                  ezFile file;
                  if (!Create(file, mPath) || !WriteAll(file, std::string(100000, 'x'))) {
                      return 1;
                  }
                  kill(getpid(), SIGKILL);
                  return 2;
              }),
              -SIGKILL);
    EXPECT_EQ(ContentAt(mPath), kOld);
    EXPECT_EQ(NamesIn(mFolder.GetPath()).size(), 2U) << "what it had written";
    EXPECT_TRUE(Save(mPath, kNew));
    EXPECT_EQ(ContentAt(mPath), kNew);
    EXPECT_EQ(NamesIn(mFolder.GetPath()), Names({"table.txt"}));
}

TEST_F(FileCreate, WhatAKilledWriterLeftGoesEvenWhenTheNextOneGivesUp) {
    EXPECT_EQ(InChild([&] {
                  ezFile file;
                  _exit(Create(file, mPath) && WriteAll(file, "x") ? 7 : 1);
                  return 2;
              }),
              7);
    EXPECT_EQ(NamesIn(mFolder.GetPath()).size(), 2U);
    {
        ezFile file;
        EXPECT_TRUE(Create(file, mPath));
    }
    ExpectOldFileWhole();
}

TEST_F(FileCreate, OfTwoWritersAtOnceEachIsWholeAndTheLastStays) {
    ezFile first;
    ezFile second;
    ASSERT_TRUE(Create(first, mPath));
    EXPECT_TRUE(WriteAll(first, "first, wh"));
    ASSERT_TRUE(Create(second, mPath));
    EXPECT_TRUE(WriteAll(second, "second, ha"));
    EXPECT_TRUE(WriteAll(first, "ole"));
    EXPECT_TRUE(first.Close());
    EXPECT_EQ(ContentAt(mPath), "first, whole");
    EXPECT_TRUE(WriteAll(second, "lf and half"));
    EXPECT_TRUE(second.Close());
    EXPECT_EQ(ContentAt(mPath), "second, half and half");
    EXPECT_EQ(NamesIn(mFolder.GetPath()), Names({"table.txt"}));
}

TEST_F(FileCreate, TheModeOfTheOldFileIsKept) {
    const Mask mask(077);
    for (const unsigned mode : {0640U, 0600U, 0666U, 0755U}) {
        ASSERT_EQ(chmod(mPath.c_str(), mode), 0);
        EXPECT_TRUE(Save(mPath, kNew));
        EXPECT_EQ(ModeOf(mPath), mode);
    }
}

// Who may not read the old file may not read the new one on its way either.
TEST_F(FileCreate, UntilItHasTheModeOfTheOldFileNobodyElseMayReadTheNewOne) {
    const Mask mask(0);
    ASSERT_EQ(chmod(mPath.c_str(), 0640), 0);
    static std::vector<unsigned> sModes;
    sModes.clear();
    const ReplacedSystem system([](ezSystemCalls& aCalls) {
        aCalls.mFChmod = [](int aFile, mode_t aMode) {
            struct stat status = {};
            EXPECT_EQ(fstat(aFile, &status), 0);
            sModes = {status.st_mode & 07777U, aMode};
            return ezSystem_Real().mFChmod(aFile, aMode);
        };
    });
    EXPECT_TRUE(Save(mPath, kNew));
    EXPECT_EQ(sModes, (std::vector<unsigned>{0600, 0640}));
}

TEST_F(FileCreate, ANewFileIsForEverybodyLessTheMask) {
    for (const unsigned mask : {0U, 022U, 027U, 077U}) {
        const Mask inForce(mask);
        const std::string path = mFolder.Path("new" + std::to_string(mask));
        EXPECT_TRUE(Save(path, kNew));
        EXPECT_EQ(ModeOf(path), 0666U & ~mask);
    }
}

TEST_F(FileCreate, OnlyARegularFileIsReplacedAndNothingIsWaitedFor) {
    const Watchdog watchdog;
    EXPECT_FALSE(Save(mFolder.GetPath(), kNew));
    EXPECT_FALSE(Save(mFolder.GetPath() + "/", kNew));
    // Without the rights of root, which could replace the machine's devices by files if this went wrong.
    for (const char* device : {"/dev/null", "/dev/full"}) {
        EXPECT_EQ(InUnprivilegedChild([&] {
                      ezFile file;
                      return Create(file, device) ? 1 : 42;
                  }),
                  42)
            << device;
    }

    const std::string pipe = mFolder.Path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_FALSE(Save(pipe, kNew));
    const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_GE(reader, 0);
    EXPECT_FALSE(Save(pipe, kNew)) << "with a reader too";
    char byte = 0;
    EXPECT_EQ(read(reader, &byte, 1), 0) << "nothing was written into it";
    close(reader);
    EXPECT_TRUE(S_ISFIFO(StatusOf(pipe).st_mode));

    const std::string name = mFolder.Path("socket");
    struct sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    ASSERT_LT(name.size(), sizeof address.sun_path);
    std::copy(name.begin(), name.end(), address.sun_path);
    const int socketFile = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_EQ(bind(socketFile, reinterpret_cast<struct sockaddr*>(&address), sizeof address), 0);
    EXPECT_FALSE(Save(name, kNew));
    close(socketFile);
    EXPECT_EQ(NamesIn(mFolder.GetPath()), Names({"pipe", "socket", "table.txt"}));
}

TEST_F(FileCreate, APathThatNamesNoFileIsRefused) {
    EXPECT_FALSE(Save("", kNew));
    EXPECT_FALSE(Save(mFolder.Path("missing/new.txt"), kNew));
    EXPECT_FALSE(Save(mFolder.Path("table.txt/new.txt"), kNew));
    EXPECT_FALSE(Save(mFolder.Path("new.txt/"), kNew));
    EXPECT_FALSE(Save(mPath + std::string("\0x", 2), kNew))
        << "and does not write what stands before the NUL";
    EXPECT_FALSE(Save(mFolder.Path(std::string(256, 'n')), kNew));
    ExpectOldFileWhole();
}

TEST_F(FileCreate, ANameOf255BytesIsWrittenAndReplaced) {
    const std::string name(255, 'n');
    EXPECT_TRUE(Save(mFolder.Path(name), kOld));
    EXPECT_TRUE(Save(mFolder.Path(name), kNew));
    EXPECT_EQ(ContentAt(mFolder.Path(name)), kNew);
    EXPECT_EQ(NamesIn(mFolder.GetPath()), Names({name, "table.txt"}));
}

TEST_F(FileCreate, AFileThatMayNotBeWrittenIsRefusedThoughItsFolderMayBe) {
    ASSERT_EQ(chmod(mFolder.GetPath().c_str(), 0777), 0);
    ASSERT_EQ(chmod(mPath.c_str(), 0444), 0);
    const ino_t before = StatusOf(mPath).st_ino;
    EXPECT_EQ(InUnprivilegedChild([&] { return Save(mPath, kNew) ? 1 : 42; }), 42);
    ExpectOldFileWhole();
    EXPECT_EQ(StatusOf(mPath).st_ino, before);
    EXPECT_EQ(ModeOf(mPath), 0444U);
}

TEST_F(FileCreate, AHundredSavesLeaveNothingBehind) {
    for (int i = 0; i < 100; ++i) {
        EXPECT_TRUE(Save(mPath, std::to_string(i)));
        ezFile refused;
        EXPECT_FALSE(Create(refused, mPath, false));
        ezFile givenUp;
        EXPECT_TRUE(Create(givenUp, mPath));
    }
    EXPECT_EQ(ContentAt(mPath), "99");
    EXPECT_EQ(OpenDescriptors(), mDescriptors);
    EXPECT_EQ(NamesIn(mFolder.GetPath()), Names({"table.txt"}));
}

TEST_F(FileCreate, AFileThatIsMadeWhileItIsLookedForIsNotReplacedUnseen) {
    {
        const ReplacedSystem system([](ezSystemCalls& aCalls) {
            aCalls.mOpen = [](const char*, int, mode_t) {
                errno = ENOENT; // what is true when it is asked for
                return -1;
            };
        });
        EXPECT_FALSE(Save(mPath, kNew));
    }
    ExpectOldFileWhole();
}

TEST_F(FileCreate, AFileOfAnotherDeviceInThePlaceOfTheWrittenOneIsNotPutInPlace) {
    const std::string path = mFolder.Write("a.txt", kOld);
    ezFile file;
    ASSERT_TRUE(Create(file, path));
    ASSERT_TRUE(WriteAll(file, kNew));
    const ReplacedSystem system([](ezSystemCalls& aCalls) {
        aCalls.mLStatAt = [](int aFolder, const char* aName, struct stat* aStatus) {
            const int result = ezSystem_Real().mLStatAt(aFolder, aName, aStatus);
            ++aStatus->st_dev;
            return result;
        };
    });
    EXPECT_FALSE(file.Close());
    EXPECT_EQ(ContentAt(path), kOld);
}
