#include "ezPlatform/streams/FileStream.h"

#include "support/Record.h"
#include "support/ScriptedSystem.h"
#include "support/Str.h"
#include "support/TemporaryFolder.h"

#include "ezPlatform/media/MediaInfo.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace {

/// The status, the count and the bytes of one read.
std::string Take(ezStream& aStream, std::size_t aSize) {
    std::string buffer(aSize + 4, '#');
    std::size_t count = aSize;
    const int status = aStream.Read(&buffer[0], &count, ezStreamReadFlag_Whole);
    return std::to_string(status) + " " + std::to_string(count) + " " + buffer.substr(0, count);
}

ezFile* Opened(const std::string& aPath) {
    ezFile* file = new ezFile(aPath.c_str(), ezFileOpenMode_Read);
    EXPECT_TRUE(file->Open());
    return file;
}

class FileStream : public testing::Test {
protected:
    ezStreamOwner Whole(const char* aMimeType = "video/mpeg") {
        return ezStreamOwner(ezFileGetStream(Opened(mPath), aMimeType, mPath.c_str()));
    }
    ezStreamOwner Part(const ezuint64& anOffset, const ezuint64& aSize) {
        return ezStreamOwner(
            ezFilePartGetStream(Opened(mPath), "video/mpeg", mPath.c_str(), anOffset, aSize));
    }

    TemporaryFolder mFolder;
    const std::string mPath = mFolder.Write("Digits.TXT", "0123456789");
};

} // namespace

// ---- a whole file ----

TEST_F(FileStream, ReadsTheFileToItsEnd) {
    const ezStreamOwner stream = Whole();
    EXPECT_TRUE(stream->IsOpened());
    EXPECT_EQ(stream->GetSize().ToUInt64(), 10U);
    EXPECT_EQ(Take(*stream, 4), "0 4 0123");
    EXPECT_EQ(Take(*stream, 6), "0 6 456789") << "just up to the end is not the end yet";
    EXPECT_EQ(Take(*stream, 1), "1 0 ");
    EXPECT_EQ(stream->Seek(7), ezStreamingStatus_NoError);
    EXPECT_EQ(Take(*stream, 4), "1 3 789");
}

TEST_F(FileStream, SeeksUpToTheEndAndStaysWhereItWasBeyond) {
    const ezStreamOwner stream = Whole();
    EXPECT_EQ(stream->Seek(10), ezStreamingStatus_NoError);
    EXPECT_EQ(Take(*stream, 1), "1 0 ");
    EXPECT_EQ(stream->Seek(3), ezStreamingStatus_NoError);
    for (const std::uint64_t beyond : {std::uint64_t{11}, UINT64_C(1) << 32, UINT64_C(1) << 63, UINT64_MAX}) {
        EXPECT_EQ(stream->Seek(beyond), ezStreamingStatus_OutOfRange) << beyond;
    }
    EXPECT_EQ(Take(*stream, 1), "0 1 3");
}

TEST_F(FileStream, AReadOfNothingGivesNothing) {
    const ezStreamOwner stream = Whole();
    EXPECT_EQ(Take(*stream, 0), "0 0 ");
    ASSERT_EQ(stream->Seek(10), ezStreamingStatus_NoError);
    EXPECT_EQ(Take(*stream, 0), "0 0 ");
}

TEST_F(FileStream, LendsNothing) {
    const ezStreamOwner stream = Whole();
    EXPECT_FALSE(stream->HasOwnBuffer());
    EXPECT_FALSE(stream->CanLend(ezStreamAccess_Read));
    const void* data = nullptr;
    std::size_t size = 4;
    EXPECT_EQ(stream->LendingRead(&data, &size, ezStreamReadFlag_Whole), ezStreamingStatus_NotSupported);
    EXPECT_EQ(Take(*stream, 4), "0 4 0123");
}

TEST_F(FileStream, IsCalledAsTheHostSays) {
    const ezStreamOwner stream(ezFileGetStream(Opened(mPath), "", "/a.b/Film.MPG"));
    EXPECT_EQ(Str(stream->GetURI()), "/a.b/Film.MPG");
    EXPECT_EQ(Str(stream->GetExtension()), "MPG");
    const ezStreamOwner none(ezFileGetStream(Opened(mPath), "", "/a.b/film"));
    EXPECT_EQ(Str(none->GetExtension()), "");
}

TEST_F(FileStream, TellsTheMimeTypeWhereTheRecordHasNone) {
    const ezStreamOwner stream = Whole("video/mpeg");
    ezMediaInfo empty;
    stream->CopyInfo(&empty);
    EXPECT_EQ(DumpRecord(&empty), "mt=\"video/mpeg\"\n");
    ezMediaInfo known;
    known.Set(kezInfo_MimeType, "audio/wav", true);
    stream->CopyInfo(&known);
    EXPECT_EQ(DumpRecord(&known), "mt=\"audio/wav\"\n");
    ezMediaInfo none;
    Whole("")->CopyInfo(&none);
    EXPECT_FALSE(none.IsValid());
}

TEST_F(FileStream, AnEmptyFileIsAtItsEnd) {
    const std::string path = mFolder.Write("empty", "");
    const ezStreamOwner stream(ezFileGetStream(Opened(path), "", path.c_str()));
    EXPECT_TRUE(stream->IsOpened());
    EXPECT_EQ(stream->GetSize().ToUInt64(), 0U);
    EXPECT_EQ(Take(*stream, 1), "1 0 ");
    EXPECT_EQ(stream->Seek(0), ezStreamingStatus_NoError);
    EXPECT_EQ(stream->Seek(1), ezStreamingStatus_OutOfRange);
}

TEST_F(FileStream, OwnsTheFile) {
    ScriptedSystem system;
    {
        const ezStreamOwner stream = Whole();
        EXPECT_EQ(system.GetCounts().mOpen, 1U);
        EXPECT_EQ(system.GetCounts().mClose, 0U);
    }
    EXPECT_EQ(system.GetCounts().mClose, 1U);
}

// ---- a part of a file ----

TEST_F(FileStream, APartIsAMediaOfItsOwn) {
    const ezStreamOwner stream = Part(3, 4);
    EXPECT_TRUE(stream->IsOpened());
    EXPECT_EQ(stream->GetSize().ToUInt64(), 4U);
    EXPECT_EQ(Take(*stream, 2), "0 2 34");
    EXPECT_EQ(Take(*stream, 3), "1 2 56");
    EXPECT_EQ(Take(*stream, 1), "1 0 ") << "the file goes on, the part does not";
    EXPECT_EQ(stream->Seek(4), ezStreamingStatus_NoError);
    EXPECT_EQ(stream->Seek(5), ezStreamingStatus_OutOfRange);
    EXPECT_EQ(stream->Seek(1), ezStreamingStatus_NoError);
    EXPECT_EQ(Take(*stream, 100), "1 3 456");
}

TEST_F(FileStream, APartReachesAsFarAsTheFileGoes) {
    constexpr std::uint64_t kMost = UINT64_MAX;
    struct Case {
        std::uint64_t mOffset;
        std::uint64_t mSize;
        std::string mBytes;
    };
    const Case cases[] = {{0, 10, "0123456789"},
                          {0, 11, "0123456789"},
                          {0, kMost, "0123456789"},
                          {7, 3, "789"},
                          {7, 4, "789"},
                          {7, kMost, "789"},
                          {7, kMost - 7, "789"},
                          {7, kMost - 6, "789"},
                          {9, 1, "9"},
                          {3, 0, ""},
                          {10, 0, ""},
                          {10, 5, ""},
                          {10, kMost, ""},
                          {11, 1, ""},
                          {11, kMost, ""},
                          {UINT64_C(1) << 63, 10, ""},
                          {kMost, 0, ""},
                          {kMost, 1, ""},
                          {kMost - 5, 10, ""},
                          {kMost, kMost, ""}};
    for (const Case& part : cases) {
        SCOPED_TRACE(std::to_string(part.mOffset) + ", " + std::to_string(part.mSize));
        const ezStreamOwner stream = Part(part.mOffset, part.mSize);
        EXPECT_TRUE(stream->IsOpened());
        EXPECT_EQ(stream->GetSize().ToUInt64(), part.mBytes.size());
        EXPECT_EQ(Take(*stream, 20), "1 " + std::to_string(part.mBytes.size()) + " " + part.mBytes);
        EXPECT_EQ(stream->Seek(part.mBytes.size()), ezStreamingStatus_NoError);
        EXPECT_EQ(stream->Seek(part.mBytes.size() + 1), ezStreamingStatus_OutOfRange);
        EXPECT_EQ(stream->Seek(kMost), ezStreamingStatus_OutOfRange);
    }
}

TEST_F(FileStream, APartBeyond4GiBIsRead) {
    const std::string path = mFolder.Path("sparse");
    const int file = open(path.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
    ASSERT_GE(file, 0);
    const off_t at = static_cast<off_t>(UINT64_C(5) << 30);
    ASSERT_EQ(pwrite(file, "abcdef", 6, at), 6);
    close(file);
    const ezStreamOwner part(
        ezFilePartGetStream(Opened(path), "", path.c_str(), static_cast<std::uint64_t>(at) + 1, 3));
    EXPECT_EQ(Take(*part, 9), "1 3 bcd");
    const ezStreamOwner whole(ezFileGetStream(Opened(path), "", path.c_str()));
    EXPECT_EQ(whole->GetSize().ToUInt64(), (UINT64_C(5) << 30) + 6);
    ASSERT_EQ(whole->Seek(static_cast<std::uint64_t>(at) + 2), ezStreamingStatus_NoError);
    EXPECT_EQ(Take(*whole, 9), "1 4 cdef");
}

// ---- a file that is not there, changes or fails ----

TEST_F(FileStream, AFileThatDidNotOpenIsInvalidState) {
    for (ezFile* file : {static_cast<ezFile*>(nullptr), new ezFile(), new ezFile(mPath.c_str(), 1)}) {
        const ezStreamOwner stream(ezFilePartGetStream(file, "video/mpeg", "film.mpg", 0, UINT64_MAX));
        EXPECT_FALSE(stream->IsOpened());
        EXPECT_EQ(stream->GetSize().ToUInt64(), 0U);
        EXPECT_EQ(stream->Seek(0), ezStreamingStatus_InvalidState);
        EXPECT_EQ(stream->Seek(UINT64_MAX), ezStreamingStatus_InvalidState);
        EXPECT_EQ(Take(*stream, 5), "4 0 ");
        EXPECT_EQ(Take(*stream, 0), "4 0 ");
        EXPECT_EQ(Str(stream->GetExtension()), "mpg");
        ezMediaInfo info;
        stream->CopyInfo(&info);
        EXPECT_EQ(DumpRecord(&info), "mt=\"video/mpeg\"\n");
    }
}

TEST_F(FileStream, AFileThatWasCutIsAReadErrorAndMovesNothing) {
    const ezStreamOwner stream = Whole();
    EXPECT_EQ(Take(*stream, 2), "0 2 01");
    ASSERT_EQ(truncate(mPath.c_str(), 5), 0);
    EXPECT_EQ(stream->GetSize().ToUInt64(), 10U);
    EXPECT_EQ(Take(*stream, 4), "8 0 ");
    EXPECT_EQ(Take(*stream, 100), "8 0 ");
    EXPECT_EQ(Take(*stream, 3), "0 3 234") << "what is left of it is read where it stood";
    EXPECT_EQ(Take(*stream, 1), "8 0 ");
}

TEST_F(FileStream, AFileThatGrowsIsReadAsFarAsItWent) {
    const ezStreamOwner stream = Whole();
    mFolder.Write("Digits.TXT", "0123456789abc");
    EXPECT_EQ(stream->GetSize().ToUInt64(), 10U);
    EXPECT_EQ(Take(*stream, 13), "1 10 0123456789");
}

TEST_F(FileStream, AnErrorOfTheSystemIsAReadErrorAndMovesNothing) {
    ScriptedSystem system;
    const ezStreamOwner stream = Whole();
    ASSERT_EQ(stream->Seek(2), ezStreamingStatus_NoError);
    system.mPReadOutcomes = {{EIO}};
    EXPECT_EQ(Take(*stream, 4), "8 0 ");
    EXPECT_EQ(Take(*stream, 4), "0 4 2345");
    system.mPReadOutcomes = {{0, 2}, {EIO}};
    EXPECT_EQ(Take(*stream, 3), "8 0 ") << "after a part of what was asked";
    EXPECT_EQ(Take(*stream, 100), "1 4 6789");
}

TEST_F(FileStream, InterruptedAndPartialReadsAreReadOn) {
    ScriptedSystem system;
    const ezStreamOwner stream = Whole();
    system.mPReadOutcomes = {{EINTR}, {0, 1}, {EINTR}, {EINTR}, {0, 3}};
    EXPECT_EQ(Take(*stream, 8), "0 8 01234567");
    EXPECT_TRUE(system.mPReadOutcomes.empty());
    EXPECT_EQ(Take(*stream, 8), "1 2 89");
}

TEST_F(FileStream, SeekingAndTheEndCostNoSystemCall) {
    ScriptedSystem system;
    const ezStreamOwner stream = Whole();
    system.ResetCounts();
    EXPECT_EQ(stream->Seek(10), ezStreamingStatus_NoError);
    EXPECT_EQ(Take(*stream, 5), "1 0 ");
    EXPECT_EQ(stream->Seek(5), ezStreamingStatus_NoError);
    EXPECT_EQ(system.GetCounts().All(), 0U);
    EXPECT_EQ(Take(*stream, 100), "1 5 56789");
    EXPECT_EQ(system.GetCounts().All(), 1U);
}
