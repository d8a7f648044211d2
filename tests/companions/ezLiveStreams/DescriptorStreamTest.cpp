#include "ezLiveStreams/DescriptorStream.h"

#include "Media.h"
#include "support/TemporaryFolder.h"

#include "ez/StreamMediaParserStream.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace {

using Owned = std::unique_ptr<ezDescriptorStream, ezStreamReleaser>;

struct Pipe {
    Pipe() { EXPECT_EQ(pipe2(mEnds.data(), O_CLOEXEC), 0); }
    ~Pipe() {
        close(mEnds[0]);
        CloseWriter();
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    int Reader() const { return mEnds[0]; }
    bool Write(const std::string& aBytes) const {
        std::size_t written = 0;
        while (written < aBytes.size()) {
            const ssize_t count = write(mEnds[1], aBytes.data() + written, aBytes.size() - written);
            if (count < 0) {
                return false;
            }
            written += static_cast<std::size_t>(count);
        }
        return true;
    }
    void CloseWriter() {
        if (mEnds[1] >= 0) {
            close(mEnds[1]);
            mEnds[1] = -1;
        }
    }
    std::array<int, 2> mEnds = {};
};

ezFeedOptions Waiting(std::size_t aWindow = std::size_t{1} << 20) {
    ezFeedOptions options;
    options.mLimits.mWindow = aWindow;
    options.mfWaitForSize = true;
    return options;
}

ReadResult ReadWaiting(ezMediaParserStream& aStream, std::size_t aSize) {
    ReadResult result;
    result.mBytes.resize(aSize);
    const bool fRead = aStream.Read(&aSize, result.mBytes.data());
    result.mBytes.resize(fRead ? aSize : 0);
    result.mStatus = fRead ? ezStreamingStatus_NoError : ezStreamingStatus_ReadError;
    return result;
}

} // namespace

TEST(DescriptorStream, ItsNameGivesURIAndExtension) {
    Pipe pipe;
    pipe.CloseWriter();
    const Owned named(new ezDescriptorStream(pipe.Reader(), "folder.x/Song.MP3", {}));
    EXPECT_EQ(named->GetURI(), "folder.x/Song.MP3");
    EXPECT_EQ(named->GetExtension(), "MP3");
    const Owned nameless(new ezDescriptorStream(pipe.Reader(), "", {}));
    EXPECT_EQ(nameless->GetURI(), "");
    EXPECT_EQ(nameless->GetExtension(), "");
}

TEST(DescriptorStream, APipeIsReadToItsEnd) {
    const std::string media = MediaBytes(300'000);
    Pipe pipe;
    std::thread writer([&] {
        EXPECT_TRUE(pipe.Write(media));
        pipe.CloseWriter();
    });
    auto* source = new ezDescriptorStream(pipe.Reader(), "a.mp3", Waiting());
    ezStreamMediaParserStream stream(source, true);
    ASSERT_TRUE(stream.Open());
    EXPECT_EQ(stream.GetMediaSize(), media.size());
    EXPECT_EQ(ReadWaiting(stream, media.size() + 1), Got(media));
    EXPECT_FALSE(source->HasFailed());
    writer.join();
}

TEST(DescriptorStream, AMediaOfJustTheWindowHasItsSize) {
    for (const std::size_t size : {65'536U, 65'537U}) {
        const std::string media = MediaBytes(size);
        Pipe pipe;
        std::thread writer([&] {
            EXPECT_TRUE(pipe.Write(media));
            pipe.CloseWriter();
        });
        ezStreamMediaParserStream stream(new ezDescriptorStream(pipe.Reader(), "", Waiting(65'536)), true);
        ASSERT_TRUE(stream.Open());
        EXPECT_EQ(stream.GetMediaSize(), size == 65'536 ? 65'536U : 0U);
        EXPECT_EQ(ReadWaiting(stream, 70'000), Got(media));
        EXPECT_EQ(stream.GetMediaSize(), size);
        writer.join();
    }
}

TEST(DescriptorStream, AFileIsTheMediaFromItsOffsetOn) {
    const TemporaryFolder folder;
    const std::string media = MediaBytes(3'000'000);
    const int file = open(folder.Write("song.mp3", "skipped" + media).c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_GE(file, 0);
    ASSERT_EQ(lseek(file, 7, SEEK_SET), 7);
    {
        ezStreamMediaParserStream stream(new ezDescriptorStream(file, "", Waiting()), true);
        ASSERT_TRUE(stream.Open());
        EXPECT_EQ(stream.GetMediaSize(), media.size());
        std::mt19937 random(3);
        for (int i = 0; i < 200; ++i) { // far more than the window holds, there and back
            const std::size_t position = random() % media.size();
            const std::size_t size = std::min<std::size_t>(1 + random() % 70'000, media.size() - position);
            std::string bytes(size, '\0');
            ASSERT_TRUE(stream.ReadFrom(position, size, bytes.data()));
            ASSERT_EQ(bytes, media.substr(position, size));
        }
    }
    EXPECT_EQ(lseek(file, 0, SEEK_CUR), 7);
    ASSERT_EQ(lseek(file, 10'000'000, SEEK_SET), 10'000'000);
    ezStreamMediaParserStream after(new ezDescriptorStream(file, "", Waiting()), true);
    EXPECT_TRUE(after.Open());
    EXPECT_EQ(ReadWaiting(after, 1), Got(""));
    close(file);
}

TEST(DescriptorStream, AReadErrorIsToldInTheWordsOfTheSystem) {
    const int folder = open("/", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    auto* source = new ezDescriptorStream(folder, "", Waiting());
    ezStreamMediaParserStream stream(source, true);
    EXPECT_FALSE(stream.Open());
    EXPECT_TRUE(source->HasFailed());
    EXPECT_EQ(source->GetErrorText(), "Is a directory");
    stream.Close();
    close(folder);
    ezStreamMediaParserStream none(new ezDescriptorStream(-1, "", Waiting()), true);
    EXPECT_FALSE(none.Open());
}

TEST(DescriptorStream, AClosedDescriptorIsNotTakenForAnother) {
    // The lowest number that is free: the next descriptor that is made has it.
    const int closed = open("/dev/null", O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(close(closed), 0);
    ezFeedOptions options; // without the wait: it would be one for ever
    auto* source = new ezDescriptorStream(closed, "", options);
    ezStreamMediaParserStream stream(source, true);
    EXPECT_FALSE(stream.Open());
    EXPECT_EQ(source->GetErrorText(), "Bad file descriptor");
}

TEST(DescriptorStream, WhatIsOpenForWritingOnlyIsAReadError) {
    const TemporaryFolder folder;
    for (const char* content : {"", "abc"}) {
        const int file = open(folder.Write("a", content).c_str(), O_WRONLY | O_CLOEXEC);
        auto* source = new ezDescriptorStream(file, "", Waiting());
        ezStreamMediaParserStream stream(source, true);
        EXPECT_FALSE(stream.Open());
        EXPECT_EQ(source->GetErrorText(), "Bad file descriptor");
        stream.Close();
        close(file);
    }
}

TEST(DescriptorStream, AFileThatStatesNoBytesIsReadToItsEnd) {
    const int file = open("/proc/self/status", O_RDONLY | O_CLOEXEC);
    ASSERT_GE(file, 0);
    ezStreamMediaParserStream stream(new ezDescriptorStream(file, "", Waiting()), true);
    ASSERT_TRUE(stream.Open());
    EXPECT_GT(stream.GetMediaSize(), 0U);
    EXPECT_EQ(ReadWaiting(stream, 5), Got("Name:"));
    stream.Close();
    close(file);
    const TemporaryFolder folder;
    const int empty = open(folder.Write("a", "").c_str(), O_RDONLY | O_CLOEXEC);
    ezStreamMediaParserStream nothing(new ezDescriptorStream(empty, "", Waiting()), true);
    EXPECT_TRUE(nothing.Open());
    EXPECT_EQ(ReadWaiting(nothing, 1), Got(""));
    nothing.Close();
    close(empty);
}

TEST(DescriptorStream, AResetAfterSomeBytesIsAReadError) {
    std::array<int, 2> ends = {};
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()), 0);
    ASSERT_EQ(write(ends[0], "unread", 6), 6); // which makes the close of the other end a reset
    ASSERT_EQ(write(ends[1], "some bytes", 10), 10);
    auto* source = new ezDescriptorStream(ends[0], "", Waiting());
    ezStreamMediaParserStream stream(source, true);
    close(ends[1]);
    EXPECT_TRUE(stream.Open());
    EXPECT_TRUE(source->HasFailed());
    EXPECT_EQ(source->GetErrorText(), "Connection reset by peer");
    stream.Close();
    close(ends[0]);
}

TEST(DescriptorStream, DestructionDoesNotWaitForAPipeThatNobodyWritesTo) {
    const Pipe pipe;
    for (int i = 0; i < 200; ++i) {
        const Owned stream(new ezDescriptorStream(pipe.Reader(), "", Waiting()));
        EXPECT_EQ(ReadOnce(*stream, 1), Nothing());
    }
}

TEST(DescriptorStream, ANonblockingPipeIsWaitedFor) {
    Pipe pipe;
    ASSERT_EQ(fcntl(pipe.Reader(), F_SETFL, O_NONBLOCK), 0);
    std::thread writer([&] {
        usleep(20'000);
        EXPECT_TRUE(pipe.Write("late"));
        pipe.CloseWriter();
    });
    ezStreamMediaParserStream stream(new ezDescriptorStream(pipe.Reader(), "", Waiting()), true);
    EXPECT_TRUE(stream.Open());
    EXPECT_EQ(ReadWaiting(stream, 9), Got("late"));
    writer.join();
}

TEST(DescriptorStream, WaitingTakesNoProcessorTime) {
    Pipe pipe;
    std::thread writer([&] {
        for (const char letter : std::string("slowly")) {
            usleep(60'000);
            EXPECT_TRUE(pipe.Write(std::string(1, letter)));
        }
        pipe.CloseWriter();
    });
    const std::clock_t before = std::clock();
    ezStreamMediaParserStream stream(new ezDescriptorStream(pipe.Reader(), "", Waiting()), true);
    EXPECT_TRUE(stream.Open());
    EXPECT_EQ(ReadWaiting(stream, 9), Got("slowly"));
    const double seconds = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC; // of all threads
    EXPECT_LT(seconds, 0.1); // in 0.36 that pass; a loop that spins takes all of them
    writer.join();
}
