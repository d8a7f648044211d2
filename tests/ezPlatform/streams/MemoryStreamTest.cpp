#include "ezPlatform/streams/MemoryStream.h"

#include "support/Record.h"
#include "support/Str.h"

#include "ezPlatform/base/Memory.h"
#include "ezPlatform/media/MediaInfo.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

namespace {

using Memory = std::unique_ptr<ezMemoryStream, ezStreamReleaser>;

Memory Stream(const std::string& aContent, const char* aMimeType = "audio/mpeg") {
    void* block = ezMalloc(aContent.size());
    std::memcpy(block, aContent.data(), aContent.size());
    return Memory(new ezMemoryStream(block, aContent.size(), aMimeType));
}

/// The status, the count and the bytes of one read.
std::string Take(ezStream& aStream, std::size_t aSize) {
    std::string buffer(aSize + 4, '#');
    std::size_t count = aSize;
    const int status = aStream.Read(&buffer[0], &count, ezStreamReadFlag_Whole);
    return std::to_string(status) + " " + std::to_string(count) + " " +
           buffer.substr(0, buffer.find_last_not_of('#') + 1);
}

std::string Lend(ezStream& aStream, std::size_t aSize) {
    const void* data = nullptr;
    std::size_t count = aSize;
    const int status = aStream.LendingRead(&data, &count, ezStreamReadFlag_Whole);
    return std::to_string(status) + " " + std::to_string(count) + " " +
           std::string(static_cast<const char*>(data), count);
}

} // namespace

TEST(MemoryStream, CopyingReadsMoveItToTheEnd) {
    const Memory stream = Stream("0123456789");
    EXPECT_EQ(Take(*stream, 4), "0 4 0123");
    EXPECT_EQ(Take(*stream, 6), "0 6 456789");
    EXPECT_EQ(Take(*stream, 1), "1 0 ");
    EXPECT_EQ(Take(*stream, 100), "1 0 ");
}

TEST(MemoryStream, AReadAcrossTheEndGivesWhatIsLeft) {
    const Memory stream = Stream("0123456789");
    EXPECT_EQ(Take(*stream, 7), "0 7 0123456");
    EXPECT_EQ(Take(*stream, 4), "1 3 789");
    const Memory whole = Stream("0123456789");
    EXPECT_EQ(Take(*whole, 11), "1 10 0123456789");
}

TEST(MemoryStream, LendingReadsDoNotMoveIt) {
    const Memory stream = Stream("0123456789");
    EXPECT_EQ(Lend(*stream, 4), "0 4 0123");
    EXPECT_EQ(Lend(*stream, 10), "0 10 0123456789");
    EXPECT_EQ(Lend(*stream, SIZE_MAX), "1 10 0123456789");
    EXPECT_EQ(Take(*stream, 2), "0 2 01");
    EXPECT_EQ(Lend(*stream, 9), "1 8 23456789");
    ASSERT_EQ(stream->Seek(10), ezStreamingStatus_NoError);
    EXPECT_EQ(Lend(*stream, 1), "1 0 ");
}

TEST(MemoryStream, LendsTheBytesOfItsBlock) {
    void* block = ezMalloc(10);
    std::memcpy(block, "0123456789", 10);
    const Memory stream(new ezMemoryStream(block, 10, ""));
    ASSERT_EQ(stream->Seek(3), ezStreamingStatus_NoError);
    const void* data = nullptr;
    std::size_t size = 5;
    EXPECT_EQ(stream->LendingRead(&data, &size, ezStreamReadFlag_Whole), ezStreamingStatus_NoError);
    EXPECT_EQ(data, static_cast<char*>(block) + 3);
}

TEST(MemoryStream, SeeksUpToTheEndAndStaysWhereItWasBeyond) {
    const Memory stream = Stream("0123456789");
    EXPECT_EQ(stream->Seek(7), ezStreamingStatus_NoError);
    EXPECT_EQ(Take(*stream, 1), "0 1 7");
    EXPECT_EQ(stream->Seek(10), ezStreamingStatus_NoError);
    EXPECT_EQ(Take(*stream, 1), "1 0 ");
    EXPECT_EQ(stream->Seek(2), ezStreamingStatus_NoError);
    for (const std::uint64_t beyond : {std::uint64_t{11}, UINT64_C(1) << 32, UINT64_C(1) << 63, UINT64_MAX}) {
        EXPECT_EQ(stream->Seek(beyond), ezStreamingStatus_OutOfRange) << beyond;
    }
    EXPECT_EQ(Take(*stream, 1), "0 1 2");
}

TEST(MemoryStream, ANullBlockIsAnEmptyMediaWhateverItsSize) {
    const Memory stream(new ezMemoryStream(nullptr, 100, ""));
    EXPECT_EQ(stream->GetSize().ToUInt64(), 0U);
    EXPECT_TRUE(stream->IsOpened());
    EXPECT_EQ(Take(*stream, 1), "1 0 ");
    EXPECT_EQ(stream->Seek(0), ezStreamingStatus_NoError);
    EXPECT_EQ(stream->Seek(1), ezStreamingStatus_OutOfRange);
    const char byte = 'x';
    const void* data = &byte;
    std::size_t size = 5;
    EXPECT_EQ(stream->LendingRead(&data, &size, ezStreamReadFlag_Whole), ezStreamingStatus_EOS);
    EXPECT_EQ(size, 0U);
    EXPECT_EQ(data, nullptr);
}

TEST(MemoryStream, ABlockOfNoBytesIsAnEmptyMedia) {
    const Memory stream(new ezMemoryStream(ezMalloc(16), 0, ""));
    EXPECT_EQ(stream->GetSize().ToUInt64(), 0U);
    EXPECT_EQ(Take(*stream, 1), "1 0 ");
    EXPECT_EQ(Lend(*stream, 1), "1 0 ");
}

TEST(MemoryStream, AReadOfNothingGivesNothingAndIsNoEnd) {
    const Memory stream = Stream("0123456789");
    EXPECT_EQ(Take(*stream, 0), "0 0 ");
    ASSERT_EQ(stream->Seek(10), ezStreamingStatus_NoError);
    EXPECT_EQ(Take(*stream, 0), "0 0 ");
}

TEST(MemoryStream, LendsForEveryUse) {
    const Memory stream = Stream("0");
    EXPECT_TRUE(stream->HasOwnBuffer());
    EXPECT_TRUE(stream->CanLend(ezStreamAccess_Read));
    EXPECT_TRUE(stream->CanLend(ezStreamAccess_Read + ezStreamAccess_Seek));
}

TEST(MemoryStream, IsCalledAsItIsNamed) {
    const Memory stream = Stream("0123456789");
    EXPECT_EQ(stream->GetSize().ToUInt64(), 10U);
    EXPECT_EQ(Str(stream->GetURI()), "");
    EXPECT_EQ(Str(stream->GetExtension()), "");
    stream->SetURI("http://host.example/a.b/Song.MP3");
    EXPECT_EQ(Str(stream->GetURI()), "http://host.example/a.b/Song.MP3");
    EXPECT_EQ(Str(stream->GetExtension()), "MP3");
    stream->SetURI("http://host.example/song");
    EXPECT_EQ(Str(stream->GetExtension()), "");
}

TEST(MemoryStream, TellsTheMimeTypeWhereTheRecordHasNone) {
    const Memory stream = Stream("0", "audio/mpeg");
    ezMediaInfo empty;
    stream->CopyInfo(&empty);
    EXPECT_EQ(DumpRecord(&empty), "mt=\"audio/mpeg\"\n");
    ezMediaInfo known;
    known.Set(kezInfo_MimeType, "audio/wav", true);
    stream->CopyInfo(&known);
    EXPECT_EQ(DumpRecord(&known), "mt=\"audio/wav\"\n");
    const Memory untyped = Stream("0", "");
    ezMediaInfo none;
    untyped->CopyInfo(&none);
    EXPECT_FALSE(none.IsValid());
}
