#include "ez/FileMediaParserStream.h"

#include "support/Catchers.h"
#include "support/Patience.h"
#include "support/Record.h"
#include "support/ScriptedSystem.h"
#include "support/StreamReads.h"
#include "support/TemporaryFolder.h"

#include "ezPlatform/media/MediaInfo.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

constexpr std::uint64_t kLastOffset = static_cast<std::uint64_t>(INT64_MAX);

/// The file stream with its inner side turned out.
class OpenedUpStream : public ezFileMediaParserStream {
public:
    using ezFileMediaParserStream::ezFileMediaParserStream;
    using ezFileMediaParserStream::FileSeek;
    using ezFileMediaParserStream::MediaRead;
    using ezFileMediaParserStream::MediaSeek;

    std::uint64_t SeekPos() const { return mSeekPos.ToUInt64(); }
    std::uint64_t FilePos() const { return mFilePos.ToUInt64(); }
    bool IsOpened() const { return mFile.IsOpened(); }
    std::string FilePath() const { return mFilePath.GetFullPath().c_str(); }
    bool OpenBoundFile() { return mFile.Open(); }

    bool FieldsAreInOrder() const {
        const void* const fields[] = {&mLastModificationTime, &mFile, &mSeekPos, &mFilePos, &mFilePath};
        return std::is_sorted(std::begin(fields), std::end(fields), std::less<const void*>());
    }
};

std::uint64_t Size(const ezMediaParserStream& aStream) {
    return aStream.GetMediaSize().ToUInt64();
}

bool SeekLazily(ezMediaParserStream& aStream, const ezuint64& aPosition) {
    return aStream.Seek(aPosition, ezMediaParserStream::SeekFromStart, false);
}

bool SeekNow(ezMediaParserStream& aStream, const ezuint64& aPosition) {
    return aStream.Seek(aPosition, ezMediaParserStream::SeekFromStart, true);
}

ezDateTime ModificationTime(ezMediaParserStream& aStream) {
    ezMediaInfo info;
    aStream.CopyInfo(&info);
    return info.mLastModificationTime;
}

/// The exit status of a child that runs aCheck, or -1 when it did not end by itself in time.
int InChild(const std::function<int()>& aCheck) {
    const pid_t child = fork();
    if (child == 0) {
        alarm(kPatience);
        _exit(aCheck());
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status)) {
        return -1;
    }
    return WEXITSTATUS(status);
}

/// Everything that a path which cannot be opened gives.
void ExpectNotReadable(const std::string& aPath) {
    SCOPED_TRACE(aPath);
    OpenedUpStream opened{ezCString(aPath.c_str())};
    EXPECT_FALSE(opened.Open());
    EXPECT_EQ(Size(opened), 0U);
    EXPECT_FALSE(opened.IsOpened());

    OpenedUpStream upTo{ezCString(aPath.c_str())};
    const ReadOutcome read = UpTo(upTo, 10);
    EXPECT_TRUE(read.mfResult);
    EXPECT_EQ(read.mCount, 0U);
    EXPECT_TRUE(read.IsUntouched());

    OpenedUpStream exact{ezCString(aPath.c_str())};
    EXPECT_FALSE(Exact(exact, 10).mfResult);
    EXPECT_EQ(At(exact), 0U);
}

class FileMediaParserStream : public testing::Test {
protected:
    std::string Write(const std::string& aName, const std::string& aContent) {
        return mFolder.Write(aName, aContent);
    }

    TemporaryFolder mFolder;
    const std::string mMedia = RandomMedia(20000);
};

} // namespace

// ---- construction ----

TEST_F(FileMediaParserStream, ConstructionLooksTheTimeUpAndOpensNothing) {
    const std::string path = Write("one.mpg", mMedia);
    ScriptedSystem system;
    const OpenedUpStream stream{ezCString(path.c_str())};
    EXPECT_EQ(system.GetCounts().mStat, 1U);
    EXPECT_EQ(system.GetCounts().All(), 1U);
    EXPECT_FALSE(stream.IsOpened());
    EXPECT_EQ(Size(stream), 0U);
    EXPECT_EQ(At(stream), 0U);
    EXPECT_EQ(stream.SeekPos(), 0U);
    EXPECT_EQ(stream.FilePos(), 0U);
    EXPECT_EQ(stream.FilePath(), path);
    EXPECT_TRUE(stream.FieldsAreInOrder());
}

TEST_F(FileMediaParserStream, BothConstructorsMakeTheSameStream) {
    const std::string path = Write("One.MPG", mMedia);
    OpenedUpStream ofText{ezCString(path.c_str())};
    OpenedUpStream ofPath{ezPathName::MakeFilePath(path.c_str())};
    for (OpenedUpStream* stream : {&ofText, &ofPath}) {
        EXPECT_TRUE(stream->GetFullPath() == path.c_str());
        EXPECT_TRUE(stream->GetExtension() == "mpg");
        EXPECT_EQ(stream->FilePath(), path);
        EXPECT_FALSE(stream->IsOpened());
        EXPECT_EQ(Exact(*stream, 100).mBuffer, mMedia.substr(0, 100));
        EXPECT_EQ(Size(*stream), 20000U);
    }
    EXPECT_TRUE(ModificationTime(ofText) == ModificationTime(ofPath));
}

TEST_F(FileMediaParserStream, ConstructionBindsThePathForReading) {
    const std::string path = Write("one.mpg", mMedia);
    OpenedUpStream ofText{ezCString(path.c_str())};
    EXPECT_TRUE(ofText.OpenBoundFile());
    OpenedUpStream ofPath{ezPathName::MakeFilePath(path.c_str())};
    EXPECT_TRUE(ofPath.OpenBoundFile());
}

TEST_F(FileMediaParserStream, FullPathIsThePathAsItWasGiven) {
    for (const char* path : {"relative/One.mpg", "/a//b/../c.mpg", "c:\\media\\one.mpg", ""}) {
        const ezFileMediaParserStream stream{ezCString(path)};
        EXPECT_TRUE(stream.GetFullPath() == path);
    }
}

TEST_F(FileMediaParserStream, ExtensionIsThatOfTheLastComponentInLowerCase) {
    const std::pair<const char*, const char*> cases[] = {{"/m/Movie.MPG", "mpg"},
                                                         {"/m/a.tar.Gz", "gz"},
                                                         {"/m/none", ""},
                                                         {"/m/.profile", ""},
                                                         {"/m.dir/none", ""},
                                                         {"/m/last.", ""},
                                                         {"C:\\m.x\\a.Mp3", "mp3"},
                                                         {"/m/.a.B", "b"},
                                                         {"/m/\xC3\x84.\xC3\x84X", "\xC3\x84x"},
                                                         {"", ""}};
    for (const auto& [path, extension] : cases) {
        EXPECT_TRUE(ezFileMediaParserStream{ezCString(path)}.GetExtension() == extension) << path;
    }
}

TEST_F(FileMediaParserStream, ModificationTimeIsThatOfTheFileAndNoOtherTime) {
    const std::string path = Write("one.mpg", mMedia);
    const struct timespec times[2] = {{1111111111, 111}, {1234567890, 987654321}}; // access, modification
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    ezFileMediaParserStream stream{ezCString(path.c_str())};
    EXPECT_TRUE(ModificationTime(stream) == ezDateTime(1234567890, 987654321));
}

TEST_F(FileMediaParserStream, ModificationTimeIsLookedUpOnce) {
    const std::string path = Write("one.mpg", mMedia);
    const struct timespec before[2] = {{1000, 0}, {1000, 0}};
    const struct timespec after[2] = {{2000, 0}, {2000, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), before, 0), 0);
    ezFileMediaParserStream stream{ezCString(path.c_str())};
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), after, 0), 0);
    EXPECT_TRUE(stream.Open());
    EXPECT_EQ(ModificationTime(stream).GetUnixTime(), 1000);
}

TEST_F(FileMediaParserStream, MissingFileHasNoModificationTime) {
    ezFileMediaParserStream stream{ezCString(mFolder.Path("missing.mpg").c_str())};
    EXPECT_FALSE(ModificationTime(stream).IsSet());
    EXPECT_TRUE(stream.GetExtension() == "mpg");
}

TEST_F(FileMediaParserStream, CopyInfoTellsWhatTheBaseTells) {
    const std::string path = Write("One.MPG", mMedia);
    const struct timespec times[2] = {{1000, 0}, {1234567890, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    ezFileMediaParserStream stream{ezCString(path.c_str())};
    ezMediaInfo unopened;
    stream.CopyInfo(&unopened);
    EXPECT_EQ(DumpRecord(&unopened), "fe=\"mpg\"\npath=\"" + path + "\"\nmodified=1234567890\n");
    ASSERT_TRUE(stream.Open());
    ezMediaInfo opened;
    stream.CopyInfo(&opened);
    EXPECT_EQ(DumpRecord(&opened), "fe=\"mpg\"\nfs=20000\npath=\"" + path + "\"\nmodified=1234567890\n");
}

// ---- Init ----

TEST_F(FileMediaParserStream, InitOnAnotherPathTakesItsFacts) {
    const std::string one = Write("one.mpg", mMedia);
    const std::string two = Write("Two.MP3", std::string(300, 'b'));
    const struct timespec times[2] = {{1000, 0}, {2222, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, two.c_str(), times, 0), 0);
    OpenedUpStream stream{ezCString(one.c_str())};
    stream.Init(two.c_str());
    EXPECT_TRUE(stream.GetFullPath() == two.c_str());
    EXPECT_EQ(stream.FilePath(), two);
    EXPECT_TRUE(stream.GetExtension() == "mp3");
    EXPECT_EQ(ModificationTime(stream).GetUnixTime(), 2222);
    EXPECT_EQ(Size(stream), 0U);
    EXPECT_EQ(Exact(stream, 300).mBuffer, std::string(300, 'b'));
    EXPECT_EQ(Size(stream), 300U);
}

TEST_F(FileMediaParserStream, InitWhileAFileIsOpenTakesTheLengthOfThatFileNow) {
    const std::string one = Write("one.mpg", mMedia);
    const std::string two = Write("two.mp3", std::string(300, 'b'));
    OpenedUpStream stream{ezCString(one.c_str())};
    ASSERT_TRUE(stream.Open());
    ASSERT_EQ(truncate(one.c_str(), 12345), 0);
    EXPECT_EQ(Size(stream), 20000U);
    stream.Init(two.c_str());
    EXPECT_EQ(Size(stream), 12345U);
    EXPECT_TRUE(stream.IsOpened());
    ASSERT_TRUE(stream.Open());
    EXPECT_EQ(Size(stream), 300U);
}

TEST_F(FileMediaParserStream, InitWithoutALengthToBeHadKnowsNoSize) {
    const std::string path = Write("one.mpg", mMedia);
    ScriptedSystem system;
    AssertCatcher assertions;
    OpenedUpStream stream{ezCString(path.c_str())};
    ASSERT_TRUE(stream.Open());
    system.mFStatOutcomes = {{EIO}};
    stream.Init(path.c_str());
    EXPECT_EQ(Size(stream), 0U);
    EXPECT_EQ(assertions.Failures(), std::vector<std::string>()); // -1 never reaches the unsigned size
}

TEST_F(FileMediaParserStream, InitWithoutAPathIsAnEmptyPath) {
    OpenedUpStream stream{ezCString(Write("one.mpg", mMedia).c_str())};
    stream.Init(nullptr);
    EXPECT_TRUE(stream.GetFullPath() == "");
    EXPECT_TRUE(stream.GetExtension() == "");
    EXPECT_FALSE(stream.Open());
}

// ---- Open and Close ----

TEST_F(FileMediaParserStream, OpenMakesTheSizeKnown) {
    OpenedUpStream stream{ezCString(Write("one.mpg", mMedia).c_str())};
    EXPECT_TRUE(stream.Open());
    EXPECT_TRUE(stream.IsOpened());
    EXPECT_EQ(Size(stream), 20000U);
}

TEST_F(FileMediaParserStream, OpenClosesAnOpenFileFirst) {
    const std::string path = Write("one.mpg", mMedia);
    ScriptedSystem system;
    {
        OpenedUpStream stream{ezCString(path.c_str())};
        ASSERT_TRUE(stream.Open());
        EXPECT_EQ(system.GetCounts().mClose, 0U);
        ASSERT_TRUE(stream.Open());
        EXPECT_EQ(system.GetCounts().mClose, 1U);
    }
    EXPECT_EQ(system.GetCounts().mOpen, 2U);
    EXPECT_EQ(system.GetCounts().mClose, 2U);
}

TEST_F(FileMediaParserStream, OpenCallsTheCloseOfADerivedStreamAndAReadItsOpen) {
    class Counting : public OpenedUpStream {
    public:
        using OpenedUpStream::OpenedUpStream;
        bool Open() override {
            ++mOpens;
            return !mfRefuse && OpenedUpStream::Open();
        }
        void Close() override {
            ++mCloses;
            OpenedUpStream::Close();
        }
        int mOpens = 0;
        int mCloses = 0;
        bool mfRefuse = false;
    };
    Counting stream{ezCString(Write("one.mpg", mMedia).c_str())};
    EXPECT_TRUE(Exact(stream, 10).mfResult);
    EXPECT_EQ(stream.mOpens, 1);
    EXPECT_EQ(stream.mCloses, 1);
    stream.Close();
    stream.mfRefuse = true;
    char byte = kUntouched;
    EXPECT_EQ(stream.MediaRead(&byte, 1), 0);
    EXPECT_EQ(stream.mOpens, 2);
    EXPECT_FALSE(stream.IsOpened());
}

TEST_F(FileMediaParserStream, FirstReadOpens) {
    const std::string path = Write("one.mpg", mMedia);
    OpenedUpStream buffered{ezCString(path.c_str())};
    EXPECT_EQ(Exact(buffered, 10).mBuffer, mMedia.substr(0, 10));
    EXPECT_TRUE(buffered.IsOpened());
    EXPECT_EQ(Size(buffered), 20000U);
    OpenedUpStream direct{ezCString(path.c_str())};
    EXPECT_EQ(UpTo(direct, 9000).mBuffer, mMedia.substr(0, 9000));
    EXPECT_EQ(Size(direct), 20000U);
}

TEST_F(FileMediaParserStream, OpenKeepsThePositionAndTheBuffer) {
    const std::string path = Write("one.mpg", mMedia);
    OpenedUpStream stream{ezCString(path.c_str())};
    ASSERT_TRUE(Exact(stream, 100).mfResult);
    std::ofstream(path, std::ios::binary) << std::string(20000, 'x');
    stream.Close();
    ASSERT_TRUE(stream.Open());
    EXPECT_EQ(At(stream), 100U);
    EXPECT_EQ(Exact(stream, 50).mBuffer, mMedia.substr(100, 50)); // of the buffer, which nothing refreshes
    ASSERT_TRUE(SeekLazily(stream, 9000));
    EXPECT_EQ(Exact(stream, 5).mBuffer, "xxxxx");
}

TEST_F(FileMediaParserStream, OpenPutsTheFileAtItsStartWhateverThePosition) {
    OpenedUpStream stream{ezCString(Write("one.mpg", mMedia).c_str())};
    ASSERT_TRUE(Exact(stream, 10).mfResult);
    ASSERT_TRUE(SeekLazily(stream, 12000));
    ASSERT_TRUE(stream.Open());
    EXPECT_EQ(stream.SeekPos(), 0U);
    EXPECT_EQ(stream.FilePos(), 0U);
    EXPECT_EQ(At(stream), 12000U);
    EXPECT_EQ(Exact(stream, 100).mBuffer, mMedia.substr(0, 100));
    EXPECT_EQ(At(stream), 12100U);
}

TEST_F(FileMediaParserStream, BufferedReadAfterAnOpenPutsTheFileBackInStep) {
    OpenedUpStream stream{ezCString(Write("one.mpg", mMedia).c_str())};
    ASSERT_TRUE(Exact(stream, 8000).mfResult);
    ASSERT_TRUE(stream.Open());
    EXPECT_EQ(Exact(stream, 100).mBuffer, mMedia.substr(8000, 100));
    EXPECT_EQ(Exact(stream, 9000).mBuffer, mMedia.substr(8100, 9000));
}

TEST_F(FileMediaParserStream, ReadAfterCloseOpensAgainAtTheStartOfTheFile) {
    OpenedUpStream stream{ezCString(Write("one.mpg", mMedia).c_str())};
    ASSERT_TRUE(Exact(stream, 10).mfResult);
    stream.Close();
    EXPECT_FALSE(stream.IsOpened());
    EXPECT_EQ(Size(stream), 20000U);
    ASSERT_TRUE(SeekLazily(stream, 12000));
    EXPECT_EQ(stream.SeekPos(), 12000U);
    EXPECT_EQ(Exact(stream, 100).mBuffer, mMedia.substr(0, 100)); // the open inside forgets the seek
    EXPECT_EQ(At(stream), 12100U);
    ASSERT_TRUE(SeekLazily(stream, 12000));
    EXPECT_EQ(Exact(stream, 100).mBuffer, mMedia.substr(12000, 100));
}

TEST_F(FileMediaParserStream, SeekAfterAnExplicitOpenIsKept) {
    OpenedUpStream stream{ezCString(Write("one.mpg", mMedia).c_str())};
    ASSERT_TRUE(stream.Open());
    ASSERT_TRUE(SeekLazily(stream, 12000));
    EXPECT_EQ(Exact(stream, 100).mBuffer, mMedia.substr(12000, 100));
}

TEST_F(FileMediaParserStream, BufferServesAClosedFile) {
    const std::string path = Write("one.mpg", mMedia);
    OpenedUpStream stream{ezCString(path.c_str())};
    ASSERT_TRUE(Exact(stream, 10).mfResult);
    stream.Close();
    ASSERT_EQ(unlink(path.c_str()), 0);
    EXPECT_EQ(Exact(stream, 8000).mBuffer, mMedia.substr(10, 8000));
    EXPECT_FALSE(stream.IsOpened());
}

TEST_F(FileMediaParserStream, CloseClosesOnce) {
    const std::string path = Write("one.mpg", mMedia);
    ScriptedSystem system;
    {
        OpenedUpStream stream{ezCString(path.c_str())};
        stream.Close();
        EXPECT_EQ(system.GetCounts().mClose, 0U);
        ASSERT_TRUE(stream.Open());
        stream.Close();
        stream.Close();
        EXPECT_EQ(system.GetCounts().mClose, 1U);
    }
    EXPECT_EQ(system.GetCounts().mClose, 1U);
}

TEST_F(FileMediaParserStream, FailedOpenKeepsTheSizeAndGoesToTheStart) {
    const std::string path = Write("one.mpg", mMedia);
    OpenedUpStream stream{ezCString(path.c_str())};
    ASSERT_TRUE(stream.Open());
    ASSERT_TRUE(SeekNow(stream, 500));
    ASSERT_EQ(unlink(path.c_str()), 0);
    EXPECT_FALSE(stream.Open());
    EXPECT_FALSE(stream.IsOpened());
    EXPECT_EQ(Size(stream), 20000U);
    EXPECT_EQ(stream.SeekPos(), 0U);
    EXPECT_EQ(stream.FilePos(), 0U);
    EXPECT_EQ(At(stream), 500U);
}

TEST_F(FileMediaParserStream, OpenFollowsSetFullPath) {
    const std::string one = Write("one.mpg", mMedia);
    const std::string two = Write("two.mpg", std::string(10000, 'b'));
    OpenedUpStream stream{ezCString(one.c_str())};
    stream.SetFullPath(two.c_str());
    ASSERT_TRUE(stream.Open());
    EXPECT_EQ(Size(stream), 10000U);
    EXPECT_EQ(Exact(stream, 3).mBuffer, "bbb");
}

// ---- seeking ----

TEST_F(FileMediaParserStream, LazySeekOfAnUnopenedFileReachesOnlyZero) {
    OpenedUpStream stream{ezCString(Write("one.mpg", mMedia).c_str())};
    EXPECT_FALSE(SeekLazily(stream, 10));
    EXPECT_FALSE(SeekLazily(stream, 1));
    EXPECT_TRUE(SeekLazily(stream, 0));
    EXPECT_FALSE(stream.IsOpened());
    std::size_t size = 5;
    char bytes[5];
    EXPECT_FALSE(stream.ReadFrom(10, size, bytes));
    EXPECT_FALSE(stream.ReadFromEnd(size, bytes));
    EXPECT_FALSE(stream.ReadFromEnd(&size, bytes));
    EXPECT_FALSE(stream.IsOpened());
}

TEST_F(FileMediaParserStream, ImmediateSeekOfAnUnopenedFileReachesOnlyWhereItStands) {
    OpenedUpStream stream{ezCString(Write("one.mpg", mMedia).c_str())};
    EXPECT_TRUE(SeekNow(stream, 0));
    EXPECT_FALSE(SeekNow(stream, 10));
    EXPECT_EQ(stream.SeekPos(), 10U);
    EXPECT_EQ(stream.FilePos(), 0U);
    EXPECT_EQ(At(stream), 0U);
    EXPECT_FALSE(stream.FileSeek());
}

TEST_F(FileMediaParserStream, LazySeekReachesTheEndAndNoFurther) {
    OpenedUpStream stream{ezCString(Write("one.mpg", mMedia).c_str())};
    ASSERT_TRUE(stream.Open());
    EXPECT_TRUE(SeekLazily(stream, 20000));
    EXPECT_EQ(At(stream), 20000U);
    EXPECT_EQ(stream.SeekPos(), 20000U);
    EXPECT_EQ(stream.FilePos(), 0U);
    EXPECT_FALSE(SeekLazily(stream, 20001));
    EXPECT_EQ(At(stream), 20000U);
    EXPECT_EQ(stream.SeekPos(), 20001U);
    EXPECT_FALSE(SeekLazily(stream, UINT64_MAX));
    EXPECT_EQ(stream.SeekPos(), UINT64_MAX);
    EXPECT_EQ(At(stream), 20000U);
}

TEST_F(FileMediaParserStream, ReadAfterARefusedSeekStartsWhereItWasRefused) {
    const std::string path = Write("one.mpg", mMedia);
    OpenedUpStream stream{ezCString(path.c_str())};
    ASSERT_TRUE(Exact(stream, 10).mfResult);
    std::ofstream(path, std::ios::binary | std::ios::app) << std::string(20000, 'x') << "THERE";
    EXPECT_FALSE(SeekLazily(stream, 40000)); // the size is that of opening
    const ReadOutcome read = UpTo(stream, 9000);
    EXPECT_TRUE(read.mfResult);
    EXPECT_EQ(read.Bytes(), "THERE");
    EXPECT_EQ(At(stream), 15U);
}

TEST_F(FileMediaParserStream, FirstReadAfterARefusedSeekFindsTheEnd) {
    OpenedUpStream stream{ezCString(Write("one.mpg", mMedia).c_str())};
    ASSERT_TRUE(stream.Open());
    EXPECT_FALSE(SeekLazily(stream, 20001));
    const ReadOutcome read = UpTo(stream, 10);
    EXPECT_TRUE(read.mfResult);
    EXPECT_EQ(read.mCount, 0U);
    EXPECT_EQ(Exact(stream, 10).mBuffer, mMedia.substr(0, 10)); // directly: the buffer is filled with nothing
    EXPECT_EQ(stream.FilePos(), 10U);
}

TEST_F(FileMediaParserStream, LazySeekAsksTheSystemNothing) {
    const std::string path = Write("one.mpg", mMedia);
    OpenedUpStream stream{ezCString(path.c_str())};
    ASSERT_TRUE(stream.Open());
    ScriptedSystem system;
    for (const std::uint64_t position : {0U, 1U, 19999U, 20000U, 20001U}) {
        EXPECT_EQ(SeekLazily(stream, position), position <= 20000);
        EXPECT_EQ(stream.FilePos(), 0U);
    }
    EXPECT_EQ(system.GetCounts().All(), 0U);
}

TEST_F(FileMediaParserStream, LazySeekTakesEffectAtTheNextRead) {
    OpenedUpStream stream{ezCString(Write("one.mpg", mMedia).c_str())};
    ASSERT_TRUE(stream.Open());
    ASSERT_TRUE(SeekLazily(stream, 19000));
    ASSERT_TRUE(SeekLazily(stream, 10000));
    EXPECT_EQ(stream.FilePos(), 0U);
    EXPECT_EQ(Exact(stream, 100).mBuffer, mMedia.substr(10000, 100));
    EXPECT_EQ(stream.FilePos(), 10100U);
    EXPECT_EQ(stream.SeekPos(), 10100U);
    EXPECT_EQ(Exact(stream, 100).mBuffer, mMedia.substr(10100, 100));
}

TEST_F(FileMediaParserStream, ImmediateSeekMovesTheFileAlsoAfterItsEnd) {
    OpenedUpStream stream{ezCString(Write("one.mpg", mMedia).c_str())};
    ASSERT_TRUE(stream.Open());
    EXPECT_TRUE(SeekNow(stream, 500));
    EXPECT_EQ(stream.FilePos(), 500U);
    EXPECT_TRUE(SeekNow(stream, 30000));
    EXPECT_EQ(stream.FilePos(), 30000U);
    EXPECT_EQ(stream.SeekPos(), 30000U);
    EXPECT_EQ(At(stream), 30000U);
    const ReadOutcome read = UpTo(stream, 10);
    EXPECT_TRUE(read.mfResult);
    EXPECT_EQ(read.mCount, 0U);
    EXPECT_FALSE(Exact(stream, 10).mfResult);
    EXPECT_EQ(At(stream), 30000U);
}

TEST_F(FileMediaParserStream, ImmediateSeekReachesTheLastFileOffsetAndNoFurther) {
    AssertCatcher assertions;
    OpenedUpStream stream{ezCString(Write("one.mpg", mMedia).c_str())};
    ASSERT_TRUE(stream.Open());
    EXPECT_TRUE(SeekNow(stream, kLastOffset));
    EXPECT_EQ(stream.FilePos(), kLastOffset);
    for (const std::uint64_t beyond : {kLastOffset + 1, UINT64_MAX - 1, UINT64_MAX}) {
        EXPECT_FALSE(SeekNow(stream, beyond));
        EXPECT_EQ(stream.SeekPos(), beyond);
        EXPECT_EQ(stream.FilePos(), kLastOffset);
        EXPECT_EQ(At(stream), kLastOffset);
    }
    EXPECT_EQ(assertions.Failures(), std::vector<std::string>());
}

TEST_F(FileMediaParserStream, ReadWhereTheFileCannotStandGivesNothing) {
    OpenedUpStream stream{ezCString(Write("one.mpg", mMedia).c_str())};
    ASSERT_TRUE(Exact(stream, 10).mfResult);
    ScriptedSystem system;
    ASSERT_FALSE(SeekNow(stream, kLastOffset + 1));
    char bytes[10];
    EXPECT_EQ(stream.MediaRead(bytes, sizeof(bytes)), 0);
    EXPECT_EQ(system.GetCounts().mPRead, 0U);
    EXPECT_EQ(stream.SeekPos(), kLastOffset + 1);
    const ReadOutcome read = UpTo(stream, 9000);
    EXPECT_TRUE(read.mfResult);
    EXPECT_EQ(read.mCount, 0U);
    EXPECT_FALSE(Exact(stream, 9000).mfResult);
    EXPECT_EQ(At(stream), 10U);
    ASSERT_TRUE(SeekLazily(stream, 10000));
    EXPECT_EQ(Exact(stream, 10).mBuffer, mMedia.substr(10000, 10));
}

TEST_F(FileMediaParserStream, FileSeekMovesOnlyAnOpenFile) {
    OpenedUpStream stream{ezCString(Write("one.mpg", mMedia).c_str())};
    ASSERT_TRUE(stream.Open());
    ASSERT_TRUE(SeekNow(stream, 700));
    stream.Close();
    EXPECT_TRUE(stream.FileSeek()); // stands there already: nothing to do, closed or not
    EXPECT_TRUE(stream.MediaSeek(700, true));
    EXPECT_FALSE(stream.MediaSeek(701, true));
    EXPECT_EQ(stream.FilePos(), 700U);
}

// ---- reading ----

TEST_F(FileMediaParserStream, MediaReadMovesBothPositionsByWhatWasRead) {
    OpenedUpStream stream{ezCString(Write("one.mpg", mMedia).c_str())};
    std::string bytes(100, kUntouched);
    EXPECT_EQ(stream.MediaRead(&bytes[0], 100), 100);
    EXPECT_EQ(bytes, mMedia.substr(0, 100));
    EXPECT_EQ(stream.FilePos(), 100U);
    EXPECT_EQ(stream.SeekPos(), 100U);
    ASSERT_TRUE(stream.MediaSeek(19960, false));
    EXPECT_EQ(stream.MediaRead(&bytes[0], 100), 40);
    EXPECT_EQ(stream.FilePos(), 20000U);
    EXPECT_EQ(stream.SeekPos(), 20000U);
    EXPECT_EQ(stream.MediaRead(&bytes[0], 100), 0);
    EXPECT_EQ(stream.FilePos(), 20000U);
    EXPECT_EQ(At(stream), 0U);
}

TEST_F(FileMediaParserStream, ReadErrorPassesThroughWhereOpenAndSeekFailuresGiveNothing) {
    OpenedUpStream stream{ezCString(Write("one.mpg", mMedia).c_str())};
    char bytes[10];
    ScriptedSystem system;
    system.mOpenOutcomes = {{EACCES}};
    EXPECT_EQ(stream.MediaRead(bytes, sizeof(bytes)), 0);
    system.mFStatOutcomes = {{EIO}};
    EXPECT_EQ(stream.MediaRead(bytes, sizeof(bytes)), 0);
    EXPECT_EQ(system.GetCounts().mOpen, 2U);
    EXPECT_EQ(system.GetCounts().mClose, 1U); // what could be opened but not looked at is closed again
    ASSERT_TRUE(stream.Open());
    ASSERT_TRUE(stream.MediaSeek(5000, false));
    system.mPReadOutcomes = {{EIO}};
    EXPECT_EQ(stream.MediaRead(bytes, sizeof(bytes)), -1);
    EXPECT_EQ(stream.FilePos(), 5000U);
    EXPECT_EQ(stream.SeekPos(), 5000U);
    EXPECT_EQ(stream.MediaRead(bytes, sizeof(bytes)), 10);
    EXPECT_EQ(std::string(bytes, 10), mMedia.substr(5000, 10));
}

TEST_F(FileMediaParserStream, ReadErrorFailsTheReadsAsTheirFormsSay) {
    const std::string path = Write("one.mpg", mMedia);
    ScriptedSystem system;
    OpenedUpStream upTo{ezCString(path.c_str())};
    system.mPReadOutcomes = {{EIO}, {EIO}};
    const ReadOutcome filling = UpTo(upTo, 10);
    EXPECT_FALSE(filling.mfResult);
    EXPECT_EQ(filling.mCount, 10U);
    const ReadOutcome direct = UpTo(upTo, 10);
    EXPECT_FALSE(direct.mfResult);
    EXPECT_EQ(direct.mCount, 10U);
    EXPECT_EQ(UpTo(upTo, 10).mBuffer, mMedia.substr(0, 10));

    OpenedUpStream exact{ezCString(path.c_str())};
    system.mPReadOutcomes = {{EIO}, {EIO}};
    EXPECT_FALSE(Exact(exact, 10).mfResult);
    EXPECT_FALSE(Exact(exact, 9000).mfResult);
    EXPECT_EQ(At(exact), 0U);
    EXPECT_EQ(Exact(exact, 9000).mBuffer, mMedia.substr(0, 9000));
}

TEST_F(FileMediaParserStream, InterruptedAndPartialReadsAreNotSeen) {
    const std::string path = Write("one.mpg", mMedia);
    ScriptedSystem system;
    system.mOpenOutcomes = {{EINTR}, {}};
    system.mPReadOutcomes = {{0, 3}, {EINTR}, {0, 1}};
    OpenedUpStream stream{ezCString(path.c_str())};
    EXPECT_EQ(Exact(stream, 8192).mBuffer, mMedia.substr(0, 8192));
    EXPECT_EQ(system.GetCounts().mPRead, 4U);
    EXPECT_EQ(Exact(stream, 11808).mBuffer, mMedia.substr(8192));
}

TEST_F(FileMediaParserStream, HundredByteFile) {
    const std::string path = Write("small.mpg", mMedia.substr(0, 100));
    OpenedUpStream exact{ezCString(path.c_str())};
    EXPECT_FALSE(Exact(exact, 200).mfResult);
    EXPECT_EQ(At(exact), 100U);
    OpenedUpStream upTo{ezCString(path.c_str())};
    const ReadOutcome read = UpTo(upTo, 200);
    EXPECT_TRUE(read.mfResult);
    EXPECT_EQ(read.mCount, 100U);
    EXPECT_EQ(read.Bytes(), mMedia.substr(0, 100));

    ScriptedSystem system;
    ASSERT_TRUE(SeekLazily(upTo, 0));
    EXPECT_EQ(UpTo(upTo, 100).mBuffer, mMedia.substr(0, 100));
    EXPECT_EQ(system.GetCounts().mPRead, 0U);
    ASSERT_TRUE(SeekLazily(upTo, 0));
    EXPECT_EQ(Exact(upTo, 100).mBuffer, mMedia.substr(0, 100)); // ends where the buffer ends: from the file
    EXPECT_EQ(system.GetCounts().mPRead, 1U);
}

TEST_F(FileMediaParserStream, ReadFromEndGivesTheLastBytes) {
    OpenedUpStream stream{ezCString(Write("one.mpg", mMedia).c_str())};
    ASSERT_TRUE(stream.Open());
    std::string bytes(128, kUntouched);
    std::size_t size = 128;
    EXPECT_TRUE(stream.ReadFromEnd(size, &bytes[0]));
    EXPECT_EQ(bytes, mMedia.substr(19872));
    size = 30000;
    bytes.assign(size, kUntouched);
    EXPECT_FALSE(stream.ReadFromEnd(size, &bytes[0]));
    EXPECT_TRUE(stream.ReadFromEnd(&size, &bytes[0]));
    EXPECT_EQ(size, 20000U);
    EXPECT_EQ(bytes.substr(0, size), mMedia);
}

TEST_F(FileMediaParserStream, EmptyFile) {
    OpenedUpStream stream{ezCString(Write("empty.mpg", "").c_str())};
    EXPECT_TRUE(stream.Open());
    EXPECT_EQ(Size(stream), 0U);
    EXPECT_TRUE(SeekLazily(stream, 0));
    EXPECT_FALSE(SeekLazily(stream, 1));
    const ReadOutcome read = UpTo(stream, 10);
    EXPECT_TRUE(read.mfResult);
    EXPECT_EQ(read.mCount, 0U);
    EXPECT_FALSE(Exact(stream, 1).mfResult);
    std::size_t size = 1;
    char byte;
    EXPECT_FALSE(stream.ReadFromEnd(&size, &byte));
    ezMediaInfo info;
    stream.CopyInfo(&info);
    EXPECT_FALSE(info.Has("fs"));
}

TEST_F(FileMediaParserStream, FileThatShrinksIsReadToItsNewEnd) {
    const std::string path = Write("one.mpg", mMedia);
    OpenedUpStream filling{ezCString(path.c_str())};
    OpenedUpStream direct{ezCString(path.c_str())};
    ASSERT_TRUE(filling.Open());
    ASSERT_TRUE(direct.Open());
    ASSERT_EQ(truncate(path.c_str(), 60), 0);
    EXPECT_EQ(Size(filling), 20000U);
    EXPECT_FALSE(Exact(filling, 100).mfResult);
    EXPECT_EQ(At(filling), 60U);
    EXPECT_TRUE(SeekLazily(filling, 20000)); // checked against the size of opening
    EXPECT_EQ(UpTo(filling, 10).mCount, 0U);

    const ReadOutcome read = UpTo(direct, 9000);
    EXPECT_TRUE(read.mfResult);
    EXPECT_EQ(read.mCount, 60U);
    EXPECT_EQ(read.Bytes(), mMedia.substr(0, 60));
    char bytes[10];
    std::size_t size = 10;
    EXPECT_TRUE(direct.ReadFromEnd(&size, bytes));
    EXPECT_EQ(size, 0U);
}

TEST_F(FileMediaParserStream, FileAbove4GiBIsReadAtItsEnd) {
    const std::uint64_t length = UINT64_C(6) << 30;
    const std::string path = Write("sparse.mpg", "HEAD");
    std::filesystem::resize_file(path, length);
    {
        std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
        file.seekp(static_cast<std::streamoff>(length - mMedia.size()));
        file << mMedia;
    }
    OpenedUpStream stream{ezCString(path.c_str())};
    ASSERT_TRUE(stream.Open());
    EXPECT_EQ(Size(stream), length);
    EXPECT_EQ(Exact(stream, 4).mBuffer, "HEAD");
    ASSERT_TRUE(SeekLazily(stream, length - 20000));
    EXPECT_EQ(Exact(stream, 100).mBuffer, mMedia.substr(0, 100));
    EXPECT_EQ(At(stream), length - 19900);
    ASSERT_TRUE(SeekNow(stream, length - 50));
    EXPECT_EQ(Exact(stream, 50).mBuffer, mMedia.substr(19950));
    EXPECT_EQ(At(stream), length);
    EXPECT_FALSE(Exact(stream, 1).mfResult);
    EXPECT_FALSE(SeekLazily(stream, length + 1));
    std::string bytes(128, kUntouched);
    std::size_t size = 128;
    EXPECT_TRUE(stream.ReadFromEnd(size, &bytes[0]));
    EXPECT_EQ(bytes, mMedia.substr(19872));
    bytes.assign(128, kUntouched);
    EXPECT_TRUE(stream.ReadFromEnd(&size, &bytes[0]));
    EXPECT_EQ(size, 128U);
    EXPECT_EQ(bytes, mMedia.substr(19872));
    ezMediaInfo info;
    stream.CopyInfo(&info);
    EXPECT_EQ(info.GetUInt64("fs", 0).ToUInt64(), length);
}

// ---- what cannot be read ----

TEST_F(FileMediaParserStream, MissingFileReadsAsAnEmptyMedia) {
    ExpectNotReadable(mFolder.Path("missing.mpg"));
    ExpectNotReadable(mFolder.Path("missing/one.mpg"));
    ExpectNotReadable(Write("one.mpg", mMedia) + "/below");
    ExpectNotReadable(Write("two.mpg", mMedia) + "/");
    ExpectNotReadable(mFolder.Path(std::string(256, 'n')));
    ExpectNotReadable("");
    ASSERT_EQ(symlink("nowhere", mFolder.Path("dangling").c_str()), 0);
    ExpectNotReadable(mFolder.Path("dangling"));
    ASSERT_EQ(symlink("loop", mFolder.Path("loop").c_str()), 0);
    ExpectNotReadable(mFolder.Path("loop"));
}

TEST_F(FileMediaParserStream, MissingFileThatAppearsLaterIsReadButNeverBuffered) {
    OpenedUpStream stream{ezCString(mFolder.Path("late.mpg").c_str())};
    const ReadOutcome missing = UpTo(stream, 10);
    EXPECT_TRUE(missing.mfResult);
    EXPECT_EQ(missing.mCount, 0U);
    Write("late.mpg", mMedia);
    ScriptedSystem system;
    EXPECT_EQ(Exact(stream, 10).mBuffer, mMedia.substr(0, 10));
    EXPECT_EQ(UpTo(stream, 10).mBuffer, mMedia.substr(10, 10));
    ASSERT_TRUE(SeekLazily(stream, 0));
    EXPECT_EQ(Exact(stream, 10).mBuffer, mMedia.substr(0, 10));
    EXPECT_EQ(system.GetCounts().mPRead, 3U);
}

TEST_F(FileMediaParserStream, ExactReadOfAMissingFileFailsUntilItIsThere) {
    OpenedUpStream stream{ezCString(mFolder.Path("late.mpg").c_str())};
    EXPECT_FALSE(Exact(stream, 10).mfResult);
    EXPECT_FALSE(Exact(stream, 10000).mfResult);
    EXPECT_EQ(At(stream), 0U);
    Write("late.mpg", mMedia);
    EXPECT_EQ(Exact(stream, 10000).mBuffer, mMedia.substr(0, 10000));
}

TEST_F(FileMediaParserStream, FolderIsRefused) {
    const std::string folder = mFolder.Path("folder.mpg");
    ASSERT_EQ(mkdir(folder.c_str(), 0700), 0);
    ExpectNotReadable(folder);
    ScriptedSystem system;
    OpenedUpStream stream{ezCString(folder.c_str())};
    EXPECT_TRUE(ModificationTime(stream).IsSet());
    EXPECT_FALSE(stream.Open());
    EXPECT_EQ(system.GetCounts().mOpen, system.GetCounts().mClose);
}

TEST_F(FileMediaParserStream, PipeIsRefusedWithoutWaitingForItsOtherEnd) {
    const std::string pipe = mFolder.Path("pipe.mpg");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const int status = InChild([&pipe] {
        OpenedUpStream stream{ezCString(pipe.c_str())};
        const bool opened = stream.Open();
        const ReadOutcome read = UpTo(stream, 10);
        return !opened && read.mfResult && read.mCount == 0 && !Exact(stream, 9000).mfResult ? 0 : 1;
    });
    EXPECT_EQ(status, 0);
}

TEST_F(FileMediaParserStream, PipeWithAWriterIsRefusedAndLosesNothing) {
    const std::string pipe = mFolder.Path("pipe.mpg");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const int both = open(pipe.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    ASSERT_GE(both, 0);
    ASSERT_EQ(write(both, "bytes", 5), 5);
    ExpectNotReadable(pipe);
    char left[8];
    EXPECT_EQ(read(both, left, sizeof(left)), 5);
    close(both);
}

TEST_F(FileMediaParserStream, DevicesAndSocketsAreRefused) {
    ExpectNotReadable("/dev/null");
    ExpectNotReadable("/dev/zero");
    const std::string path = mFolder.Path("socket.mpg");
    struct sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    ASSERT_LT(path.size(), sizeof(address.sun_path));
    std::memcpy(address.sun_path, path.c_str(), path.size());
    const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_GE(listener, 0);
    const void* const bytes = &address;
    ASSERT_EQ(bind(listener, static_cast<const struct sockaddr*>(bytes), sizeof(address)), 0);
    ExpectNotReadable(path);
    close(listener);
}

TEST_F(FileMediaParserStream, UnreadableFileReadsAsAnEmptyMedia) {
    const std::string path = Write("secret.mpg", mMedia);
    ASSERT_EQ(chmod(path.c_str(), 0), 0);
    ASSERT_EQ(chmod(mFolder.GetPath().c_str(), 0755), 0);
    const int status = InChild([&path] {
        constexpr uid_t kNobody = 65534;
        if (geteuid() == 0 && (setgid(kNobody) != 0 || setuid(kNobody) != 0)) {
            return 2; // root reads everything
        }
        OpenedUpStream stream{ezCString(path.c_str())};
        const bool opened = stream.Open();
        const ReadOutcome read = UpTo(stream, 10);
        return !opened && read.mfResult && read.mCount == 0 && !Exact(stream, 9000).mfResult &&
                       ModificationTime(stream).IsSet()
                   ? 0
                   : 1;
    });
    EXPECT_EQ(status, 0);
}

TEST_F(FileMediaParserStream, SymbolicLinkIsFollowed) {
    Write("one.mpg", mMedia);
    ASSERT_EQ(symlink("one.mpg", mFolder.Path("link.avi").c_str()), 0);
    OpenedUpStream stream{ezCString(mFolder.Path("link.avi").c_str())};
    EXPECT_EQ(Exact(stream, 10).mBuffer, mMedia.substr(0, 10));
    EXPECT_TRUE(stream.GetExtension() == "avi");
}

// ---- names ----

TEST_F(FileMediaParserStream, AnyNameThatTheSystemTakesIsOpened) {
    const std::string names[] = {"with spaces .mp3",
                                 " .mp3",
                                 "quote\"'`.mp3",
                                 "back\\slash.mp3",
                                 "new\nline\t.mp3",
                                 "percent%s%n.mp3",
                                 "-.mp3",
                                 "\xC3\xA4\xE2\x82\xAC.mp3",
                                 "invalid\xFF\xC3(.mp3",
                                 "\x01\x7F.mp3",
                                 std::string(251, 'n') + ".mp3"};
    for (const std::string& name : names) {
        SCOPED_TRACE(name);
        const std::string path = Write(name, name + mMedia);
        OpenedUpStream stream{ezCString(path.c_str())};
        EXPECT_TRUE(stream.Open());
        EXPECT_TRUE(stream.GetFullPath() == path.c_str());
        EXPECT_TRUE(stream.GetExtension() == "mp3");
        EXPECT_EQ(Size(stream), name.size() + 20000);
        EXPECT_EQ(Exact(stream, name.size()).mBuffer, name);
        EXPECT_TRUE(ModificationTime(stream).IsSet());
    }
}

// ---- costs ----

TEST_F(FileMediaParserStream, ProbingTheStartCostsOneReadOfTheFile) {
    for (const std::size_t size : {20000U, 8193U, 8192U, 8191U, 100U, 1U}) {
        SCOPED_TRACE(size);
        const std::string path = Write("one.mpg", mMedia.substr(0, size));
        const std::size_t buffered = std::min<std::size_t>(size, 8192);
        ScriptedSystem system;
        {
            OpenedUpStream stream{ezCString(path.c_str())};
            ASSERT_TRUE(stream.Open());
            for (std::size_t parser = 0; parser < 50; ++parser) {
                ASSERT_TRUE(SeekNow(stream, 0));
                const std::size_t upTo = buffered * (parser + 1) / 50;
                ASSERT_EQ(UpTo(stream, upTo).mBuffer, mMedia.substr(0, upTo));
                const std::size_t position = buffered * parser / 50;
                ASSERT_TRUE(SeekLazily(stream, position));
                const std::size_t exact = std::min<std::size_t>(buffered - position - 1, 100);
                ASSERT_EQ(Exact(stream, exact).mBuffer, mMedia.substr(position, exact));
            }
        }
        EXPECT_EQ(system.GetCounts().mStat, 1U);
        EXPECT_EQ(system.GetCounts().mOpen, 1U);
        EXPECT_EQ(system.GetCounts().mFStat, 1U);
        EXPECT_EQ(system.GetCounts().mPRead, 1U);
        EXPECT_EQ(system.GetCounts().mClose, 1U);
        EXPECT_EQ(system.GetCounts().All(), 5U);
        EXPECT_EQ(system.GetCounts().mAllocate, 0U);
    }
}

TEST_F(FileMediaParserStream, SmallFileReadToItsEndAtOnceCostsOneRead) {
    const std::string path = Write("small.mpg", mMedia.substr(0, 100));
    ScriptedSystem system;
    OpenedUpStream stream{ezCString(path.c_str())};
    EXPECT_EQ(UpTo(stream, 8192).mCount, 100U);
    EXPECT_EQ(system.GetCounts().mPRead, 1U);
}

TEST_F(FileMediaParserStream, FailuresAreNotLogged) {
    LogCatcher log;
    ExpectNotReadable(mFolder.Path("missing.mpg"));
    OpenedUpStream stream{ezCString(Write("one.mpg", mMedia).c_str())};
    EXPECT_FALSE(SeekNow(stream, UINT64_MAX));
    EXPECT_FALSE(SeekLazily(stream, 10));
    ScriptedSystem system;
    system.mPReadOutcomes = {{EIO}};
    EXPECT_FALSE(Exact(stream, 10000).mfResult);
    EXPECT_EQ(log.Texts(), std::vector<std::string>());
}

// ---- what lies beside the file ----

TEST(FileMediaParserStreamBeside, OpensARegularFileOfItsFolderAndNothingElse) {
    const TemporaryFolder folder;
    const std::string path = folder.GetPath();
    std::ofstream(path + "/film.vob") << "film";
    std::ofstream(path + "/film.ifo") << "table";
    std::filesystem::create_directory(path + "/folder");
    std::filesystem::create_symlink("film.ifo", path + "/link.ifo");
    ASSERT_EQ(mkfifo((path + "/pipe").c_str(), 0600), 0);
    ezFileMediaParserStream stream(ezCString((path + "/film.vob").c_str()));
    for (const char* const name : {"film.ifo", "link.ifo"}) {
        const auto beside = stream.OpenBeside(name);
        ASSERT_NE(beside, nullptr) << name;
        EXPECT_EQ(beside->GetMediaSize(), 5U);
        EXPECT_EQ(beside->GetFullPath(), (path + "/" + name).c_str());
    }
    const std::string out = "../" + std::filesystem::path(path).filename().string() + "/film.ifo";
    for (const std::string& name :
         {std::string(), std::string("."), std::string(".."), std::string("folder"), std::string("pipe"),
          std::string("FILM.IFO"), out, path + "/film.ifo", std::string("film.ifo\0", 9)}) {
        EXPECT_EQ(stream.OpenBeside(ezCString(std::string_view(name))), nullptr) << name;
    }
}
