#include "FileCreateKit.h"
#include "support/ReplacedSystem.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <fcntl.h>

// Where the folder permits no file beside the old one.

using FileInPlace = FileCreate;

namespace {

/// As where the folder refuses a file beside the old one.
void RefuseBeside(ezSystemCalls& aCalls) {
    aCalls.mOpenAt = [](int aFolder, const char* aName, int aFlags, mode_t aMode) {
        errno = EACCES;
        return (aFlags & O_CREAT) != 0 ? -1 : ezSystem_Real().mOpenAt(aFolder, aName, aFlags, aMode);
    };
}

int gCalls = 0; ///< what a replaced call below counts

} // namespace

// Emptying the old file because there is no room beside it would lose it.
TEST_F(FileInPlace, WhereNoFileCanBeMadeBesideTheOldOneOnlyARefusalLeadsIntoIt) {
    for (const int error : {ENOSPC, EDQUOT, EMFILE, ENFILE, EIO, ENOMEM}) {
        static int sError;
        sError = error;
        {
            const ReplacedSystem system([](ezSystemCalls& aCalls) {
                aCalls.mOpenAt = [](int aFolder, const char* aName, int aFlags, mode_t aMode) {
                    if ((aFlags & O_CREAT) != 0) {
                        errno = sError;
                        return -1;
                    }
                    return ezSystem_Real().mOpenAt(aFolder, aName, aFlags, aMode);
                };
            });
            EXPECT_FALSE(Save(mPath, kNew)) << error;
        }
        ExpectOldFileWhole();
    }
    for (const int error : {EACCES, EPERM, EROFS}) {
        static int sError;
        sError = error;
        const ReplacedSystem system([](ezSystemCalls& aCalls) {
            aCalls.mOpenAt = [](int aFolder, const char* aName, int aFlags, mode_t aMode) {
                if ((aFlags & O_CREAT) != 0) {
                    errno = sError;
                    return -1;
                }
                return ezSystem_Real().mOpenAt(aFolder, aName, aFlags, aMode);
            };
        });
        const std::string text = kNew + std::to_string(error);
        const ino_t before = StatusOf(mPath).st_ino;
        EXPECT_TRUE(Save(mPath, text)) << error;
        EXPECT_EQ(ContentAt(mPath), text);
        EXPECT_EQ(StatusOf(mPath).st_ino, before) << "in place";
    }
}

TEST_F(FileInPlace, WhereTheFolderRefusesTheFileIsWrittenInPlace) {
    ASSERT_EQ(chmod(mFolder.GetPath().c_str(), 0555), 0);
    ASSERT_EQ(chmod(mPath.c_str(), 0666), 0);
    const ino_t before = StatusOf(mPath).st_ino;
    EXPECT_EQ(InUnprivilegedChild([&] { return Save(mPath, kNew) ? 42 : 1; }), 42);
    EXPECT_EQ(ContentAt(mPath), kNew);
    EXPECT_EQ(StatusOf(mPath).st_ino, before);
    EXPECT_EQ(NamesIn(mFolder.GetPath()), Names({"table.txt"}));
    EXPECT_EQ(InUnprivilegedChild([&] { return Save(mFolder.Path("new.txt"), kNew) ? 1 : 42; }), 42)
        << "a new file cannot be made there";
    EXPECT_EQ(InUnprivilegedChild([&] {
                  ezFile file;
                  return Create(file, mPath, false) ? 1 : 42;
              }),
              42);
    EXPECT_EQ(ContentAt(mPath), kNew);
    ASSERT_EQ(chmod(mFolder.GetPath().c_str(), 0755), 0);
}

TEST_F(FileInPlace, ALinkIsFollowedToo) {
    ASSERT_EQ(symlink("table.txt", mFolder.Path("link").c_str()), 0);
    ASSERT_EQ(chmod(mFolder.GetPath().c_str(), 0555), 0);
    ASSERT_EQ(chmod(mPath.c_str(), 0666), 0);
    EXPECT_EQ(InUnprivilegedChild([&] { return Save(mFolder.Path("link"), kNew) ? 42 : 1; }), 42);
    EXPECT_EQ(ContentAt(mPath), kNew);
    EXPECT_TRUE(S_ISLNK(StatusOf(mFolder.Path("link")).st_mode));
    ASSERT_EQ(chmod(mFolder.GetPath().c_str(), 0755), 0);
}

TEST_F(FileInPlace, AFailureIsReportedByClose) {
    ASSERT_EQ(chmod(mFolder.GetPath().c_str(), 0555), 0);
    ASSERT_EQ(chmod(mPath.c_str(), 0666), 0);
    EXPECT_EQ(InUnprivilegedChild([&] {
                  const ReplacedSystem system([](ezSystemCalls& aCalls) {
                      aCalls.mFSync = [](int) {
                          errno = EIO;
                          return -1;
                      };
                  });
                  ezFile file;
                  if (!Create(file, mPath) || !WriteAll(file, kNew)) {
                      return 1;
                  }
                  return file.Close() ? 2 : 42;
              }),
              42);
    EXPECT_TRUE(std::filesystem::exists(mPath)) << "the target itself is never removed";
    ASSERT_EQ(chmod(mFolder.GetPath().c_str(), 0755), 0);
}

TEST_F(FileInPlace, WhatIsGivenUpPutsTheOldContentBack) {
    const ReplacedSystem system(RefuseBeside);
    const std::string longer(1000, 'n');
    for (const std::string& text : {std::string(), kNew, longer}) {
        {
            ezFile file;
            ASSERT_TRUE(Create(file, mPath));
            EXPECT_TRUE(WriteAll(file, text));
            EXPECT_EQ(file.Length(), static_cast<ezFileOffset>(text.size()));
        }
        ExpectOldFileWhole("destroyed");
        {
            ezFile file;
            ASSERT_TRUE(Create(file, mPath));
            EXPECT_TRUE(WriteAll(file, longer));
            EXPECT_TRUE(file.Empty());
            EXPECT_TRUE(WriteAll(file, text));
        }
        ExpectOldFileWhole("emptied");
    }
    ASSERT_TRUE(Save(mPath, ""));
    EXPECT_EQ(ContentAt(mPath), "");
    {
        ezFile file;
        ASSERT_TRUE(Create(file, mPath));
        EXPECT_TRUE(WriteAll(file, kNew));
    }
    EXPECT_EQ(ContentAt(mPath), "") << "an old file may hold nothing";
}

TEST_F(FileInPlace, AGapHoldsNothingOfTheOldContent) {
    gCalls = 0;
    const ReplacedSystem system([](ezSystemCalls& aCalls) {
        RefuseBeside(aCalls);
        aCalls.mFTruncate = [](int aFile, ezFileOffset aLength) {
            errno = EIO;
            return gCalls-- == 1 ? -1 : ezSystem_Real().mFTruncate(aFile, aLength);
        };
    });
    for (const bool fTruncates : {true, false}) {
        ezFile file;
        ASSERT_TRUE(Create(file, mPath));
        EXPECT_TRUE(WriteAll(file, "ab"));
        EXPECT_EQ(file.Seek(2, ezFileSeekMode_End), 4);
        gCalls = fTruncates ? 0 : 1;
        EXPECT_EQ(file.Write("ef", 2), fTruncates ? 2 : -1);
        EXPECT_EQ(file.Close(), fTruncates);
        EXPECT_EQ(ContentAt(mPath), std::string("ab\0\0ef", 6)) << "written, or put back";
    }
}

TEST_F(FileInPlace, AFullDiskGivesTheOldContentBack) {
    static int sFailing = 0;
    const ReplacedSystem system([](ezSystemCalls& aCalls) {
        RefuseBeside(aCalls);
        aCalls.mPWrite = [](int aFile, const void* aBuffer, std::size_t aSize,
                            ezFileOffset anOffset) -> ssize_t {
            // Over what is there it writes; beyond that there is no room.
            const auto room = static_cast<std::size_t>(static_cast<ezFileOffset>(kOld.size()) - anOffset);
            if (room == 0) {
                ++sFailing;
                errno = ENOSPC;
                return -1;
            }
            return ezSystem_Real().mPWrite(aFile, aBuffer, std::min(aSize, room), anOffset);
        };
    });
    EXPECT_FALSE(Save(mPath, std::string(1000, 'n')));
    EXPECT_EQ(sFailing, 1);
    ExpectOldFileWhole();
}

TEST_F(FileInPlace, WhatCannotBeKeptIsNotTouched) {
    struct Case {
        const char* mWhat;
        void (*mReplace)(ezSystemCalls&);
    };
    const Case cases[] = {
        {"memory",
         [](ezSystemCalls& aCalls) { aCalls.mAllocate = [](std::size_t) -> void* { return nullptr; }; }},
        {"read",
         [](ezSystemCalls& aCalls) {
             aCalls.mPRead = [](int, void*, std::size_t, ezFileOffset) -> ssize_t {
                 errno = EIO;
                 return -1;
             };
         }},
        {"shrunk since it was opened",
         [](ezSystemCalls& aCalls) {
             aCalls.mPRead = [](int, void*, std::size_t, ezFileOffset) -> ssize_t { return 0; };
         }},
        {"somebody else writes it in place",
         [](ezSystemCalls& aCalls) {
             aCalls.mFLock = [](int, int) {
                 errno = EWOULDBLOCK;
                 return -1;
             };
         }},
    };
    for (const Case& failing : cases) {
        const ReplacedSystem system([&failing](ezSystemCalls& aCalls) {
            RefuseBeside(aCalls);
            failing.mReplace(aCalls);
        });
        ezFile file;
        EXPECT_FALSE(Create(file, mPath)) << failing.mWhat;
        EXPECT_FALSE(file.IsOpened());
        ExpectOldFileWhole(failing.mWhat);
    }
}

// The edge: of less the memory is asked for, which this machine does not give either.
TEST_F(FileInPlace, OfTwoGibibytesNothingIsKeptAndNothingTouched) {
    static ezFileOffset sSize = 0;
    static std::size_t sAsked = 0;
    for (const ezFileOffset more : {0, 1}) {
        sSize = static_cast<ezFileOffset>(INT_MAX) + more;
        sAsked = 0;
        const ReplacedSystem system([](ezSystemCalls& aCalls) {
            RefuseBeside(aCalls);
            aCalls.mFStat = [](int aFile, struct stat* aStatus) {
                const int result = ezSystem_Real().mFStat(aFile, aStatus);
                aStatus->st_size = sSize;
                return result;
            };
            aCalls.mAllocate = [](std::size_t aSize) -> void* {
                sAsked = aSize;
                return nullptr;
            };
        });
        ezFile file;
        EXPECT_FALSE(Create(file, mPath)) << more;
        EXPECT_EQ(sAsked, more == 0 ? static_cast<std::size_t>(INT_MAX) + 1 : 0);
        ExpectOldFileWhole();
    }
}

TEST_F(FileInPlace, AFileThatMayNotBeReadIsWrittenWithoutAWayBack) {
    ASSERT_EQ(chmod(mFolder.GetPath().c_str(), 0555), 0);
    ASSERT_EQ(chmod(mPath.c_str(), 0222), 0);
    EXPECT_EQ(InUnprivilegedChild([&] {
                  const ReplacedSystem system([](ezSystemCalls& aCalls) {
                      aCalls.mFTruncate = [](int, ezFileOffset) {
                          errno = EIO;
                          return -1;
                      };
                  });
                  ezFile file;
                  return Create(file, mPath) ? 1 : 42;
              }),
              42);
    ASSERT_EQ(chmod(mPath.c_str(), 0666), 0);
    EXPECT_EQ(ContentAt(mPath), kOld) << "not touched";
    ASSERT_EQ(chmod(mPath.c_str(), 0222), 0);
    EXPECT_EQ(InUnprivilegedChild([&] {
                  const ReplacedSystem system([](ezSystemCalls& aCalls) {
                      aCalls.mFSync = [](int) {
                          errno = EIO;
                          return -1;
                      };
                  });
                  return Save(mPath, kNew) ? 1 : 42;
              }),
              42);
    EXPECT_EQ(InUnprivilegedChild([&] { return Save(mPath, kNew) ? 42 : 1; }), 42);
    ASSERT_EQ(chmod(mPath.c_str(), 0666), 0);
    EXPECT_EQ(ContentAt(mPath), kNew);
    ASSERT_EQ(chmod(mFolder.GetPath().c_str(), 0755), 0);
}

TEST_F(FileInPlace, OfTwoAtOnceTheSecondIsRefusedAndNothingIsMixed) {
    const ReplacedSystem system(RefuseBeside);
    ezFile first;
    ASSERT_TRUE(Create(first, mPath));
    EXPECT_TRUE(WriteAll(first, "fir"));
    EXPECT_FALSE(Save(mPath, "second"));
    EXPECT_TRUE(WriteAll(first, "st"));
    EXPECT_TRUE(first.Close());
    EXPECT_EQ(ContentAt(mPath), "first");
    EXPECT_TRUE(Save(mPath, "second")) << "then it may";
    EXPECT_EQ(ContentAt(mPath), "second");
}

TEST_F(FileInPlace, WhereThereAreNoLocksItIsWrittenAllTheSame) {
    const ReplacedSystem system([](ezSystemCalls& aCalls) {
        RefuseBeside(aCalls);
        aCalls.mFLock = [](int, int) {
            errno = ENOLCK;
            return -1;
        };
    });
    EXPECT_TRUE(Save(mPath, kNew));
    EXPECT_EQ(ContentAt(mPath), kNew);
}

TEST_F(FileInPlace, AnEmptiedFileIsEmpty) {
    ASSERT_EQ(chmod(mFolder.GetPath().c_str(), 0555), 0);
    ASSERT_EQ(chmod(mPath.c_str(), 0222), 0);
    // What cannot be kept is cut off at once: nothing of it stands after what is shorter.
    EXPECT_EQ(InUnprivilegedChild([&] {
                  ezFile file;
                  if (!Create(file, mPath) || file.Length() != 0) {
                      return 1;
                  }
                  return file.Close() ? 42 : 2;
              }),
              42);
    ASSERT_EQ(chmod(mPath.c_str(), 0666), 0);
    EXPECT_EQ(ContentAt(mPath), "");
    ASSERT_EQ(chmod(mFolder.GetPath().c_str(), 0755), 0);
}
