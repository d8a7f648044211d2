#include "ezPlatform/files/File.h"

#include "support/Patience.h"
#include "support/ScriptedSystem.h"
#include "support/Str.h"
#include "support/TemporaryFolder.h"
#include "support/Unprivileged.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <type_traits>
#include <unistd.h>

namespace {

constexpr ezFileOffset kGiB = ezFileOffset{1} << 30;

ezCString PathOf(const std::string& aPath) {
    return ezCString(aPath.c_str());
}

/// Up to aSize bytes from where the file stands; "<error>" for an error.
std::string ReadText(ezFile& aFile, std::size_t aSize) {
    std::string buffer(aSize + 8, '#');
    const int count = aFile.Read(&buffer[0], aSize);
    if (count < 0) {
        return "<error>";
    }
    EXPECT_LE(static_cast<std::size_t>(count), aSize);
    EXPECT_EQ(buffer.substr(aSize), "########") << "never more than was asked for";
    return buffer.substr(0, static_cast<std::size_t>(count));
}

/// Where the file stands, asked in a way that moves nothing.
ezFileOffset PositionOf(ezFile& aFile) {
    return aFile.Seek(0, ezFileSeekMode_Current);
}

void Append(const std::string& aPath, const std::string& aText) {
    const int file = open(aPath.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
    ASSERT_GE(file, 0);
    EXPECT_EQ(write(file, aText.data(), aText.size()), static_cast<ssize_t>(aText.size()));
    close(file);
}

/// Ends the process where something waits that must never wait.
class Watchdog {
public:
    Watchdog() { alarm(kPatience); }
    ~Watchdog() { alarm(0); }
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;
};

const char* const kDigits = "0123456789";

/// A file of ten bytes, open.
class OpenFile : public testing::Test {
protected:
    OpenFile() : mPath(mFolder.Write("digits.bin", kDigits)), mFile(PathOf(mPath), ezFileOpenMode_Read) {}

    void SetUp() override {
        ASSERT_TRUE(mFile.Open());
        mSystem.ResetCounts();
    }

    TemporaryFolder mFolder;
    std::string mPath;
    ScriptedSystem mSystem;
    ezFile mFile;
};

} // namespace

// Opening.

TEST(File, ModesHaveTheirNumbers) {
    EXPECT_EQ(ezFileOpenMode_Read, 1);
    EXPECT_EQ(ezFileAccessMode_ReadWrite, 3);
    EXPECT_EQ(ezFileSeekMode_Begin, 0);
    EXPECT_EQ(ezFileSeekMode_Current, 1);
    EXPECT_EQ(ezFileSeekMode_End, 2);
    EXPECT_EQ(sizeof(ezFileOffset), 8U);
    EXPECT_EQ(sizeof(off_t), 8U) << "large files on every target";
    EXPECT_FALSE(std::is_copy_constructible<ezFile>::value);
    EXPECT_FALSE(std::is_copy_assignable<ezFile>::value);
}

TEST(File, TheConstructorBindsAndOpensNothing) {
    const TemporaryFolder folder;
    const std::string path = folder.Path("later.bin");
    ScriptedSystem system;
    ezFile file(PathOf(path), ezFileOpenMode_Read);
    EXPECT_EQ(system.GetCounts().All(), 0U);
    EXPECT_FALSE(file.IsOpened());
    EXPECT_FALSE(file.Open()) << "it is not there yet";
    folder.Write("later.bin", "now");
    EXPECT_TRUE(file.Open());
    EXPECT_TRUE(file.IsOpened());
    EXPECT_EQ(ReadText(file, 10), "now");
}

TEST(File, WhatIsNotOpenRefusesEverything) {
    ScriptedSystem system;
    ezFile file;
    char byte = 'x';
    EXPECT_FALSE(file.IsOpened());
    EXPECT_FALSE(file.Open());
    system.ResetCounts();
    EXPECT_EQ(file.Length(), -1);
    EXPECT_EQ(file.LengthAtOpen(), -1);
    EXPECT_EQ(file.Seek(0, ezFileSeekMode_Begin), -1);
    EXPECT_EQ(file.Seek(0, ezFileSeekMode_Current), -1);
    EXPECT_EQ(file.Seek(0, ezFileSeekMode_End), -1);
    EXPECT_EQ(file.Read(&byte, 1), -1);
    EXPECT_EQ(byte, 'x');
    file.Close();
    EXPECT_EQ(system.GetCounts().All(), 0U);
}

TEST(File, MissingFilesAndEmptyPathsAreRefused) {
    const TemporaryFolder folder;
    const ScriptedSystem system;
    for (const std::string& path : {folder.Path("missing"), folder.Path("no/folder"), std::string()}) {
        ezFile file(PathOf(path), ezFileOpenMode_Read);
        EXPECT_FALSE(file.Open()) << path;
        EXPECT_FALSE(file.IsOpened());
        ezFile bare;
        EXPECT_FALSE(bare.Open(PathOf(path), ezFileOpenMode_Read, ezFileAccessMode_ReadWrite)) << path;
        EXPECT_FALSE(bare.IsOpened());
    }
    EXPECT_EQ(system.GetCounts().mClose, 0U) << "nothing was opened";
}

TEST(File, APathWithANULIsRefusedAndDoesNotOpenWhatStandsBeforeIt) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("real", kDigits);
    const ezCString withNUL = Bytes(path + std::string("\0.jpg", 5));
    const ScriptedSystem system;
    ezFile file(withNUL, ezFileOpenMode_Read);
    EXPECT_FALSE(file.Open());
    EXPECT_FALSE(file.Open(withNUL, ezFileOpenMode_Read, ezFileAccessMode_ReadWrite));
    EXPECT_FALSE(file.Open(Bytes(path + std::string(1, '\0')), ezFileOpenMode_Read, 0));
    EXPECT_EQ(system.GetCounts().All(), 0U);
    EXPECT_TRUE(file.Open(PathOf(path), ezFileOpenMode_Read, ezFileAccessMode_ReadWrite));
}

TEST(File, OnlyRegularFilesOpenAndNothingIsWaitedFor) {
    const TemporaryFolder folder;
    const std::string pipe = folder.Path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);

    const std::string socketPath = folder.Path("socket");
    struct sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    ASSERT_LT(socketPath.size(), sizeof(address.sun_path));
    std::memcpy(address.sun_path, socketPath.c_str(), socketPath.size() + 1);
    const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_GE(listener, 0);
    ASSERT_EQ(bind(listener, reinterpret_cast<const struct sockaddr*>(&address), sizeof(address)), 0);

    const std::string link = folder.Path("link");
    ASSERT_EQ(symlink(pipe.c_str(), link.c_str()), 0);

    const Watchdog watchdog;
    const ScriptedSystem system;
    for (const std::string& path : {folder.GetPath(), std::string("/"), pipe, link, socketPath,
                                    std::string("/dev/null"), std::string("/dev/zero")}) {
        ezFile file(PathOf(path), ezFileOpenMode_Read);
        EXPECT_FALSE(file.Open()) << path;
        EXPECT_FALSE(file.IsOpened()) << path;
        EXPECT_EQ(file.Length(), -1) << path;
    }
    // The socket does not open at all; what did open is given back.
    EXPECT_EQ(system.GetCounts().mOpen, 7U);
    EXPECT_EQ(system.GetCounts().mClose, 6U);
    close(listener);
}

TEST(File, APipeWithAWriterIsRefusedToo) {
    const TemporaryFolder folder;
    const std::string pipe = folder.Path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const int writer = open(pipe.c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_GE(writer, 0);
    const Watchdog watchdog;
    ezFile file(PathOf(pipe), ezFileOpenMode_Read);
    EXPECT_FALSE(file.Open());
    close(writer);
}

TEST(File, ASymbolicLinkToARegularFileOpens) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("real", kDigits);
    ASSERT_EQ(symlink(path.c_str(), folder.Path("link").c_str()), 0);
    ezFile file(PathOf(folder.Path("link")), ezFileOpenMode_Read);
    ASSERT_TRUE(file.Open());
    EXPECT_EQ(ReadText(file, 20), kDigits);
}

TEST(File, AnUnreadableFileIsRefused) {
    const TemporaryFolder folder;
    ASSERT_EQ(chmod(folder.GetPath().c_str(), 0755), 0);
    const std::string secret = folder.Write("secret", kDigits);
    const std::string open = folder.Write("open", kDigits);
    ASSERT_EQ(chmod(secret.c_str(), 0), 0);
    ASSERT_EQ(chmod(open.c_str(), 0644), 0);

    const Unprivileged unprivileged;
    ezFile file;
    EXPECT_FALSE(file.Open(PathOf(secret), ezFileOpenMode_Read, ezFileAccessMode_ReadWrite));
    EXPECT_FALSE(file.IsOpened());
    EXPECT_TRUE(file.Open(PathOf(open), ezFileOpenMode_Read, ezFileAccessMode_ReadWrite))
        << "reading needs no right to write, whatever the access mode";
}

TEST(File, AModeOtherThanReadIsRefused) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("real", kDigits);
    ScriptedSystem system;
    for (const int mode : {0, 2, 3, -1, INT_MAX}) {
        ezFile bound(PathOf(path), mode);
        EXPECT_FALSE(bound.Open()) << mode;
        ezFile bare;
        EXPECT_FALSE(bare.Open(PathOf(path), mode, ezFileAccessMode_ReadWrite)) << mode;
    }
    EXPECT_EQ(system.GetCounts().All(), 0U);
    for (const int access : {0, 1, 2, 3, -1}) {
        ezFile file;
        EXPECT_TRUE(file.Open(PathOf(path), ezFileOpenMode_Read, access))
            << "reading does not use it: " << access;
    }
}

TEST(File, OpeningReplacesTheFileThatWasBound) {
    const TemporaryFolder folder;
    const std::string first = folder.Write("first", "one");
    const std::string second = folder.Write("second", "two");
    ezFile file(PathOf(first), ezFileOpenMode_Read);
    ASSERT_TRUE(file.Open(PathOf(second), ezFileOpenMode_Read, ezFileAccessMode_ReadWrite));
    EXPECT_EQ(ReadText(file, 10), "two");
    file.Close();
    ASSERT_TRUE(file.Open());
    EXPECT_EQ(ReadText(file, 10), "two") << "opening binds";
}

TEST_F(OpenFile, OpeningTwiceIsRefusedAndChangesNothing) {
    const std::string other = mFolder.Write("other", "other");
    EXPECT_EQ(ReadText(mFile, 3), "012");
    mSystem.ResetCounts();
    EXPECT_FALSE(mFile.Open());
    EXPECT_FALSE(mFile.Open(PathOf(mPath), ezFileOpenMode_Read, ezFileAccessMode_ReadWrite));
    EXPECT_FALSE(mFile.Open(PathOf(other), ezFileOpenMode_Read, ezFileAccessMode_ReadWrite));
    EXPECT_EQ(mSystem.GetCounts().All(), 0U);
    EXPECT_TRUE(mFile.IsOpened());
    EXPECT_EQ(ReadText(mFile, 3), "345");
    mFile.Close();
    ASSERT_TRUE(mFile.Open());
    EXPECT_EQ(ReadText(mFile, 3), "012") << "still the file that was bound";
}

TEST_F(OpenFile, ReopensAtTheStart) {
    EXPECT_EQ(ReadText(mFile, 4), "0123");
    mFile.Close();
    EXPECT_FALSE(mFile.IsOpened());
    EXPECT_EQ(mFile.LengthAtOpen(), -1);
    EXPECT_EQ(ReadText(mFile, 4), "<error>");
    Append(mPath, "ab");
    ASSERT_TRUE(mFile.Open());
    EXPECT_EQ(PositionOf(mFile), 0);
    EXPECT_EQ(mFile.LengthAtOpen(), 12);
    EXPECT_EQ(ReadText(mFile, 4), "0123");
}

TEST_F(OpenFile, ClosesOnce) {
    mFile.Close();
    mFile.Close();
    EXPECT_EQ(mSystem.GetCounts().mClose, 1U);
}

TEST(File, IsClosedOnDestruction) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("real", kDigits);
    const ScriptedSystem system;
    {
        ezFile file(PathOf(path), ezFileOpenMode_Read);
        ASSERT_TRUE(file.Open());
        EXPECT_EQ(system.GetCounts().mClose, 0U);
    }
    EXPECT_EQ(system.GetCounts().mClose, 1U);
}

TEST(File, OpeningIsRepeatedWhenInterruptedAndFailsOnAnyOtherError) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("real", kDigits);
    ScriptedSystem system;
    ezFile file(PathOf(path), ezFileOpenMode_Read);
    system.mOpenOutcomes = {{EINTR}, {EINTR}, {EINTR}};
    EXPECT_TRUE(file.Open());
    EXPECT_EQ(system.GetCounts().mOpen, 4U);
    file.Close();
    for (const int error : {EACCES, EMFILE, ENFILE, EIO, ENOMEM}) {
        system.ResetCounts();
        system.mOpenOutcomes = {{error}};
        EXPECT_FALSE(file.Open()) << error;
        EXPECT_FALSE(file.IsOpened());
        EXPECT_EQ(system.GetCounts().mOpen, 1U);
        EXPECT_EQ(system.GetCounts().mClose, 0U);
    }
    EXPECT_TRUE(file.Open());
}

TEST(File, AFileWhoseKindCannotBeToldIsGivenBackAndRefused) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("real", kDigits);
    ScriptedSystem system;
    system.mFStatOutcomes = {{EIO}};
    ezFile file(PathOf(path), ezFileOpenMode_Read);
    EXPECT_FALSE(file.Open());
    EXPECT_FALSE(file.IsOpened());
    EXPECT_EQ(system.GetCounts().mClose, 1U);
}

// Length.

TEST_F(OpenFile, LengthIsLiveAndLengthAtOpenCostsNothing) {
    EXPECT_EQ(mFile.LengthAtOpen(), 10);
    EXPECT_EQ(mSystem.GetCounts().All(), 0U);
    EXPECT_EQ(mFile.Length(), 10);
    EXPECT_EQ(mSystem.GetCounts().All(), 1U);
    Append(mPath, "abcde");
    EXPECT_EQ(mFile.Length(), 15);
    EXPECT_EQ(mFile.LengthAtOpen(), 10);
    ASSERT_EQ(truncate(mPath.c_str(), 4), 0);
    EXPECT_EQ(mFile.Length(), 4);
    EXPECT_EQ(mFile.LengthAtOpen(), 10);
}

TEST_F(OpenFile, LengthThatIsNotToBeHadIsMinus1) {
    mSystem.mFStatOutcomes = {{EIO}};
    EXPECT_EQ(mFile.Length(), -1);
    EXPECT_EQ(mFile.Length(), 10);
}

// Moving.

TEST_F(OpenFile, MovesFromStartAndFromTheCurrentPositionWithoutASystemCall) {
    EXPECT_EQ(mFile.Seek(4, ezFileSeekMode_Begin), 4);
    EXPECT_EQ(PositionOf(mFile), 4);
    EXPECT_EQ(mFile.Seek(3, ezFileSeekMode_Current), 7);
    EXPECT_EQ(mFile.Seek(-5, ezFileSeekMode_Current), 2);
    EXPECT_EQ(mFile.Seek(0, ezFileSeekMode_Begin), 0);
    EXPECT_EQ(mFile.Seek(10, ezFileSeekMode_Begin), 10);
    EXPECT_EQ(mFile.Seek(1000, ezFileSeekMode_Begin), 1000) << "beyond the end too";
    EXPECT_EQ(mFile.Seek(8, ezFileSeekMode_Begin), 8);
    EXPECT_EQ(mSystem.GetCounts().All(), 0U);
    EXPECT_EQ(ReadText(mFile, 10), "89");
}

TEST_F(OpenFile, MovesFromTheEndAsItIsNow) {
    EXPECT_EQ(mFile.Seek(-3, ezFileSeekMode_End), 7);
    EXPECT_EQ(ReadText(mFile, 10), "789");
    EXPECT_EQ(mFile.Seek(0, ezFileSeekMode_End), 10);
    EXPECT_EQ(mFile.Seek(5, ezFileSeekMode_End), 15);
    EXPECT_EQ(mFile.Seek(-10, ezFileSeekMode_End), 0);
    Append(mPath, "ab");
    EXPECT_EQ(mFile.Seek(-1, ezFileSeekMode_End), 11);
    EXPECT_EQ(ReadText(mFile, 10), "b");
}

TEST_F(OpenFile, AMoveThatCannotBeLeavesThePosition) {
    ASSERT_EQ(mFile.Seek(5, ezFileSeekMode_Begin), 5);
    EXPECT_EQ(mFile.Seek(-1, ezFileSeekMode_Begin), -1);
    EXPECT_EQ(mFile.Seek(INT64_MIN, ezFileSeekMode_Begin), -1);
    EXPECT_EQ(mFile.Seek(-6, ezFileSeekMode_Current), -1);
    EXPECT_EQ(mFile.Seek(INT64_MAX - 4, ezFileSeekMode_Current), -1) << "above 2^63-1";
    EXPECT_EQ(mFile.Seek(INT64_MAX, ezFileSeekMode_Current), -1);
    EXPECT_EQ(mFile.Seek(INT64_MIN, ezFileSeekMode_Current), -1);
    EXPECT_EQ(mFile.Seek(-11, ezFileSeekMode_End), -1);
    EXPECT_EQ(mFile.Seek(INT64_MAX, ezFileSeekMode_End), -1);
    EXPECT_EQ(mFile.Seek(INT64_MIN, ezFileSeekMode_End), -1);
    for (const int mode : {-1, 3, INT_MAX, INT_MIN}) {
        EXPECT_EQ(mFile.Seek(0, mode), -1) << mode;
    }
    mSystem.mFStatOutcomes = {{EIO}};
    EXPECT_EQ(mFile.Seek(0, ezFileSeekMode_End), -1) << "the end is not known";
    EXPECT_EQ(PositionOf(mFile), 5);
    EXPECT_EQ(ReadText(mFile, 2), "56");
}

TEST_F(OpenFile, MovesAsFarAsTheLargestOffset) {
    EXPECT_EQ(mFile.Seek(INT64_MAX, ezFileSeekMode_Begin), INT64_MAX);
    EXPECT_EQ(PositionOf(mFile), INT64_MAX);
    EXPECT_EQ(mFile.Seek(1, ezFileSeekMode_Current), -1);
    EXPECT_EQ(PositionOf(mFile), INT64_MAX);
    EXPECT_EQ(mFile.Seek(-INT64_MAX, ezFileSeekMode_Current), 0);
    EXPECT_EQ(mFile.Seek(5, ezFileSeekMode_Begin), 5);
    EXPECT_EQ(mFile.Seek(INT64_MAX - 5, ezFileSeekMode_Current), INT64_MAX);
}

// Reading.

TEST_F(OpenFile, AReadMovesThePositionByWhatWasRead) {
    EXPECT_EQ(ReadText(mFile, 3), "012");
    EXPECT_EQ(PositionOf(mFile), 3);
    EXPECT_EQ(ReadText(mFile, 4), "3456");
    EXPECT_EQ(PositionOf(mFile), 7);
    EXPECT_EQ(ReadText(mFile, 4), "789");
    EXPECT_EQ(PositionOf(mFile), 10);
    EXPECT_EQ(ReadText(mFile, 4), "");
    EXPECT_EQ(PositionOf(mFile), 10);
}

TEST_F(OpenFile, AReadOf0BytesReadsNothing) {
    EXPECT_EQ(mFile.Read(nullptr, 0), 0);
    EXPECT_EQ(mSystem.GetCounts().All(), 0U);
    EXPECT_EQ(PositionOf(mFile), 0);
}

TEST_F(OpenFile, AReadAfterTheEndGivesNothing) {
    ASSERT_EQ(mFile.Seek(11, ezFileSeekMode_Begin), 11);
    EXPECT_EQ(ReadText(mFile, 4), "");
    ASSERT_EQ(mFile.Seek(kGiB * 64, ezFileSeekMode_Begin), kGiB * 64);
    EXPECT_EQ(ReadText(mFile, 4), "");
    EXPECT_EQ(PositionOf(mFile), kGiB * 64);
}

TEST_F(OpenFile, AReadAtTheLargestOffsetEndsWithoutBytes) {
    ASSERT_EQ(mFile.Seek(INT64_MAX, ezFileSeekMode_Begin), INT64_MAX);
    char byte = 'x';
    EXPECT_LE(mFile.Read(&byte, 1), 0);
    EXPECT_EQ(byte, 'x');
    EXPECT_EQ(PositionOf(mFile), INT64_MAX);
}

TEST_F(OpenFile, APositionAndAReadCostOneSystemCall) {
    ASSERT_EQ(mFile.Seek(6, ezFileSeekMode_Begin), 6);
    EXPECT_EQ(ReadText(mFile, 2), "67");
    EXPECT_EQ(mSystem.GetCounts().All(), 1U);
    EXPECT_EQ(mSystem.GetCounts().mPRead, 1U);
}

TEST_F(OpenFile, TheLengthThatOpenSawIsTheEndAndNeedsNoFurtherCall) {
    EXPECT_EQ(ReadText(mFile, 100), kDigits);
    EXPECT_EQ(mSystem.GetCounts().All(), 1U);
    ASSERT_EQ(mFile.Seek(7, ezFileSeekMode_Begin), 7);
    EXPECT_EQ(ReadText(mFile, 100), "789");
    EXPECT_EQ(mSystem.GetCounts().All(), 2U);
}

TEST_F(OpenFile, InterruptedReadsAreRepeated) {
    mSystem.mPReadOutcomes = {{EINTR}, {EINTR}, {0, 4}, {EINTR}, {0, 1}, {EINTR}};
    EXPECT_EQ(ReadText(mFile, 8), "01234567");
    EXPECT_EQ(mSystem.GetCounts().mPRead, 7U);
    EXPECT_EQ(PositionOf(mFile), 8);
}

TEST_F(OpenFile, PartialReadsAreRepeatedUntilTheSize) {
    mSystem.mPReadOutcomes = {{0, 1}, {0, 2}, {0, 1}};
    EXPECT_EQ(ReadText(mFile, 6), "012345");
    EXPECT_EQ(mSystem.GetCounts().mPRead, 4U);
}

TEST_F(OpenFile, PartialReadsAreRepeatedUntilTheEndAndNotBeyondIt) {
    mSystem.mPReadOutcomes.assign(10, {0, 1});
    EXPECT_EQ(ReadText(mFile, 50), kDigits);
    EXPECT_EQ(mSystem.GetCounts().mPRead, 10U);
}

TEST_F(OpenFile, AnErrorAtOnceIsMinus1AndLeavesThePosition) {
    ASSERT_EQ(mFile.Seek(2, ezFileSeekMode_Begin), 2);
    mSystem.mPReadOutcomes = {{EIO}};
    EXPECT_EQ(ReadText(mFile, 3), "<error>");
    EXPECT_EQ(mSystem.GetCounts().mPRead, 1U);
    EXPECT_EQ(PositionOf(mFile), 2);
    EXPECT_EQ(ReadText(mFile, 3), "234");
}

TEST_F(OpenFile, AnErrorAfterSomeBytesGivesThemFirstAndThenTheError) {
    mSystem.mPReadOutcomes = {{0, 3}, {EIO}, {EIO}};
    EXPECT_EQ(ReadText(mFile, 8), "012");
    EXPECT_EQ(mSystem.GetCounts().mPRead, 2U);
    EXPECT_EQ(PositionOf(mFile), 3);
    EXPECT_EQ(ReadText(mFile, 8), "<error>");
    EXPECT_EQ(PositionOf(mFile), 3);
    EXPECT_EQ(ReadText(mFile, 8), "3456789");
}

TEST_F(OpenFile, AnInterruptionBeforeAnErrorDoesNotHideIt) {
    mSystem.mPReadOutcomes = {{EINTR}, {EIO}};
    EXPECT_EQ(ReadText(mFile, 8), "<error>");
}

TEST_F(OpenFile, AFileThatShrinksEndsWhereItEndsNow) {
    EXPECT_EQ(ReadText(mFile, 2), "01");
    ASSERT_EQ(truncate(mPath.c_str(), 5), 0);
    EXPECT_EQ(ReadText(mFile, 8), "234");
    EXPECT_EQ(PositionOf(mFile), 5);
    EXPECT_EQ(ReadText(mFile, 8), "");
    ASSERT_EQ(mFile.Seek(8, ezFileSeekMode_Begin), 8);
    EXPECT_EQ(ReadText(mFile, 8), "");
}

TEST_F(OpenFile, AFileThatGrowsIsReadOn) {
    EXPECT_EQ(ReadText(mFile, 100), kDigits);
    EXPECT_EQ(ReadText(mFile, 100), "");
    Append(mPath, "abcde");
    EXPECT_EQ(ReadText(mFile, 3), "abc");
    EXPECT_EQ(ReadText(mFile, 100), "de");
    EXPECT_EQ(ReadText(mFile, 100), "");
    EXPECT_EQ(PositionOf(mFile), 15);
}

TEST_F(OpenFile, AReadThatStopsAtTheLengthThatOpenSawTakesItForTheEnd) {
    Append(mPath, "abcde");
    mSystem.mPReadOutcomes = {{0, 10}};
    EXPECT_EQ(ReadText(mFile, 100), kDigits);
    EXPECT_EQ(mSystem.GetCounts().mPRead, 1U);
    EXPECT_EQ(ReadText(mFile, 100), "abcde");
}

TEST_F(OpenFile, ARequestOverINT_MAXIsTakenAsINT_MAX) {
    constexpr std::size_t kMost = INT_MAX;
    for (const std::size_t size : {SIZE_MAX, kMost + 1, kMost}) {
        char buffer[16] = {};
        ASSERT_EQ(mFile.Seek(0, ezFileSeekMode_Begin), 0);
        mSystem.ResetCounts();
        mSystem.mPReadOutcomes = {{0, 10}}; // the system is not told of a buffer that is not there
        EXPECT_EQ(mFile.Read(buffer, size), 10);
        EXPECT_EQ(mSystem.GetCounts().mLargestPRead, kMost);
        EXPECT_EQ(std::string(buffer), kDigits);
    }
}

TEST(File, AFileOf6GiBIsReadAtItsEnd) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("large.mpg", "start");
    const int writer = open(path.c_str(), O_WRONLY | O_CLOEXEC);
    ASSERT_GE(writer, 0);
    ASSERT_EQ(ftruncate(writer, 6 * kGiB), 0);
    ASSERT_EQ(pwrite(writer, "the end", 7, 6 * kGiB - 7), 7);
    ASSERT_EQ(pwrite(writer, "4 GiB", 5, 4 * kGiB - 2), 5);
    close(writer);

    ezFile file(PathOf(path), ezFileOpenMode_Read);
    ASSERT_TRUE(file.Open());
    EXPECT_EQ(file.LengthAtOpen(), 6 * kGiB);
    EXPECT_EQ(file.Length(), 6 * kGiB);
    EXPECT_EQ(ReadText(file, 5), "start");
    EXPECT_EQ(file.Seek(-7, ezFileSeekMode_End), 6 * kGiB - 7);
    EXPECT_EQ(ReadText(file, 100), "the end");
    EXPECT_EQ(PositionOf(file), 6 * kGiB);
    EXPECT_EQ(ReadText(file, 100), "");
    EXPECT_EQ(file.Seek(4 * kGiB - 2, ezFileSeekMode_Begin), 4 * kGiB - 2);
    EXPECT_EQ(ReadText(file, 3), "4 G");
    EXPECT_EQ(ReadText(file, 2), "iB") << "a read that begins above 4 GiB";
    EXPECT_EQ(file.Seek(-2 * kGiB, ezFileSeekMode_Current), 2 * kGiB + 3);
    EXPECT_EQ(ReadText(file, 2), std::string(2, '\0'));
}

TEST(File, AnEmptyFileOpensAndIsAtItsEnd) {
    const TemporaryFolder folder;
    ezFile file(PathOf(folder.Write("empty", "")), ezFileOpenMode_Read);
    ASSERT_TRUE(file.Open());
    EXPECT_EQ(file.Length(), 0);
    EXPECT_EQ(file.LengthAtOpen(), 0);
    EXPECT_EQ(ReadText(file, 10), "");
    EXPECT_EQ(file.Seek(0, ezFileSeekMode_End), 0);
}

RC_GTEST_PROP(FileModel, ReadsAndMovesAsTheContentSays, ()) {
    const std::string content = *rc::gen::container<std::string>(rc::gen::inRange('a', 'z'));
    const TemporaryFolder folder;
    ezFile file(PathOf(folder.Write("file", content)), ezFileOpenMode_Read);
    RC_ASSERT(file.Open());
    ScriptedSystem system;
    const ezFileOffset length = static_cast<ezFileOffset>(content.size());
    ezFileOffset position = 0;
    const int steps = *rc::gen::inRange(0, 30);
    for (int step = 0; step < steps; ++step) {
        if (*rc::gen::arbitrary<bool>()) {
            const ezFileOffset offset = *rc::gen::inRange<ezFileOffset>(-50, 120);
            const int mode = *rc::gen::inRange(-1, 4);
            const ezFileOffset bases[] = {0, position, length};
            const ezFileOffset target = mode < 0 || mode > 2 ? -1 : bases[mode] + offset;
            RC_ASSERT(file.Seek(offset, mode) == std::max<ezFileOffset>(target, -1));
            position = target >= 0 ? target : position;
        } else {
            const std::size_t size = *rc::gen::inRange<std::size_t>(0, 60);
            const std::size_t pieces = *rc::gen::inRange<std::size_t>(0, 4);
            system.mPReadOutcomes.assign(pieces, {0, *rc::gen::inRange<std::size_t>(1, 5)});
            const std::string expected =
                position < length ? content.substr(static_cast<std::size_t>(position), size) : "";
            RC_ASSERT(ReadText(file, size) == expected);
            system.mPReadOutcomes.clear();
            position += static_cast<ezFileOffset>(expected.size());
        }
        RC_ASSERT(PositionOf(file) == position);
    }
}

// Times.

TEST(FileTimes, AreThoseOfTheFileByOneSystemCall) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("timed", "x");
    const struct timespec times[2] = {{1600000000, 123456789}, {1500000000, 987654321}};
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    struct stat status = {};
    ASSERT_EQ(stat(path.c_str(), &status), 0);

    const ScriptedSystem system;
    ezDateTime creation;
    ezDateTime modification;
    ezDateTime access;
    ASSERT_TRUE(ezFile::GetTimes(PathOf(path), &creation, &modification, &access));
    EXPECT_EQ(system.GetCounts().All(), 1U);
    EXPECT_EQ(system.GetCounts().mStat, 1U);
    EXPECT_TRUE(access == ezDateTime(1600000000, 123456789));
    EXPECT_TRUE(modification == ezDateTime(1500000000, 987654321));
    EXPECT_TRUE(creation ==
                ezDateTime(status.st_ctim.tv_sec, static_cast<std::int32_t>(status.st_ctim.tv_nsec)))
        << "the time of the last status change";
}

TEST(FileTimes, OnlyTheTimesThatAreWantedAreWritten) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("timed", "x");
    const struct timespec times[2] = {{1600000000, 0}, {-5, 1}};
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    ezDateTime modification;
    EXPECT_TRUE(ezFile::GetTimes(PathOf(path), nullptr, &modification, nullptr));
    EXPECT_TRUE(modification == ezDateTime(-5, 1)) << "before 1970";
    ezDateTime access;
    EXPECT_TRUE(ezFile::GetTimes(PathOf(path), nullptr, nullptr, &access));
    EXPECT_TRUE(access == ezDateTime(1600000000, 0));
    ezDateTime creation;
    EXPECT_TRUE(ezFile::GetTimes(PathOf(path), &creation, nullptr, nullptr));
    EXPECT_TRUE(creation.IsSet());
    EXPECT_TRUE(ezFile::GetTimes(PathOf(path), nullptr, nullptr, nullptr));
}

TEST(FileTimes, AFailureWritesNothing) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("timed", "x");
    ezDateTime creation(1, 2);
    ezDateTime modification(3, 4);
    ezDateTime access(5, 6);
    ScriptedSystem system;
    EXPECT_FALSE(ezFile::GetTimes(PathOf(folder.Path("missing")), &creation, &modification, &access));
    EXPECT_FALSE(ezFile::GetTimes(ezCString(), &creation, &modification, &access));
    EXPECT_FALSE(ezFile::GetTimes(PathOf("http://host/x"), &creation, &modification, &access));
    EXPECT_FALSE(ezFile::GetTimes(Bytes(path + std::string("\0x", 2)), &creation, &modification, &access));
    system.mStatOutcomes = {{EIO}};
    EXPECT_FALSE(ezFile::GetTimes(PathOf(path), &creation, &modification, &access));
    EXPECT_TRUE(creation == ezDateTime(1, 2));
    EXPECT_TRUE(modification == ezDateTime(3, 4));
    EXPECT_TRUE(access == ezDateTime(5, 6));
}

TEST(File, ACloseThatFailsSaysSoAndLeavesNothingOpen) {
    const TemporaryFolder folder;
    ezFile file(PathOf(folder.Write("real", kDigits)), ezFileOpenMode_Read);
    ASSERT_TRUE(file.Open());
    ezSystemCalls calls = ezSystem_Real();
    calls.mClose = [](int aFile) {
        ezSystem_Real().mClose(aFile);
        errno = EIO;
        return -1;
    };
    ezSystem_Replace(&calls);
    EXPECT_FALSE(file.Close());
    ezSystem_Replace(nullptr);
    EXPECT_FALSE(file.IsOpened());
    EXPECT_TRUE(file.Open());
    EXPECT_TRUE(file.Close());
}
