#include "ezLiveStreams/DescriptorStream.h"
#include "ezLiveStreams/detail/DescriptorCalls.h"

#include "ez/StreamMediaParserStream.h"

#include "support/Catchers.h"
#include "support/FaultySystem.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <functional>
#include <memory>
#include <string>
#include <unistd.h>

// Every system call of a stream of a descriptor goes wrong once, and for good: the reader gets the media, or
// its start and an error, and never a part as if it were all.

namespace {

enum class Call : std::size_t { GetFlags, Pipe, FStat, GetOffset, Poll, Read, PRead, Write };
constexpr std::size_t kCallCount = static_cast<std::size_t>(Call::Write) + 1;
constexpr std::array<const char*, kCallCount> kNames = {"fcntl", "pipe", "fstat", "lseek",
                                                        "poll",  "read", "pread", "write"};

/// What goes wrong: the calls of a kind from one on.
struct DescriptorFault {
    Call mCall = Call::GetFlags;
    int mFrom = 1;
    int mTimes = 1;
    int mError = 0; ///< 0 to come short alone
    std::size_t mMaximum = SIZE_MAX;
    bool mfEveryOther = false;
};

constexpr int kForGood = 1000000;

/// Makes calls fail while it lives; the thread of a stream makes them too.
class FaultyDescriptors {
public:
    explicit FaultyDescriptors(const DescriptorFault& aFault) : mFault(aFault) {
        gFaulty = this;
        static const DescriptorCalls sCalls = {
            [](int aDescriptor) { return Fails(Call::GetFlags) ? -1 : Real().mGetFlags(aDescriptor); },
            [](int* anEnds, int aFlags) { return Fails(Call::Pipe) ? -1 : Real().mPipe(anEnds, aFlags); },
            [](int aDescriptor, struct stat* aStatus) {
                return Fails(Call::FStat) ? -1 : Real().mFStat(aDescriptor, aStatus);
            },
            [](int aDescriptor) {
                return Fails(Call::GetOffset) ? off_t{-1} : Real().mGetOffset(aDescriptor);
            },
            [](pollfd* aDescriptors, nfds_t aCount) {
                return Fails(Call::Poll) ? -1 : Real().mPoll(aDescriptors, aCount);
            },
            [](int aDescriptor, void* aBuffer, std::size_t aSize) {
                return Fails(Call::Read) ? ssize_t{-1} : Real().mRead(aDescriptor, aBuffer, Short(aSize));
            },
            [](int aDescriptor, void* aBuffer, std::size_t aSize, off_t anOffset) {
                return Fails(Call::PRead) ? ssize_t{-1}
                                          : Real().mPRead(aDescriptor, aBuffer, Short(aSize), anOffset);
            },
            [](int aDescriptor, const void* aBuffer, std::size_t aSize) {
                return Fails(Call::Write) ? ssize_t{-1} : Real().mWrite(aDescriptor, aBuffer, aSize);
            },
        };
        DescriptorCalls_Replace(&sCalls);
    }
    ~FaultyDescriptors() {
        DescriptorCalls_Replace(nullptr);
        gFaulty = nullptr;
    }
    FaultyDescriptors(const FaultyDescriptors&) = delete;
    FaultyDescriptors& operator=(const FaultyDescriptors&) = delete;

    bool HasStruck() const { return mfStruck; }

private:
    static const DescriptorCalls& Real() { return DescriptorCalls_Real(); }
    static std::size_t Short(std::size_t aSize) { return std::min(aSize, gFaulty->mFault.mMaximum); }
    static bool Fails(Call aCall) { return gFaulty->Strikes(aCall); }

    bool Strikes(Call aCall) {
        if (aCall != mFault.mCall) {
            return false;
        }
        const int place = ++mCount - mFault.mFrom;
        if (mFault.mError == 0 || place < 0 || place >= mFault.mTimes ||
            (mFault.mfEveryOther && place % 2 != 0)) {
            return false;
        }
        mfStruck = true;
        errno = mFault.mError;
        return true;
    }

    static FaultyDescriptors* gFaulty;
    const DescriptorFault mFault;
    std::atomic<int> mCount = 0;
    std::atomic<bool> mfStruck = false;
};
FaultyDescriptors* FaultyDescriptors::gFaulty = nullptr;

/// More than two blocks of the thread.
std::string Media() {
    std::string media;
    for (unsigned i = 0; media.size() < 150000; ++i) {
        media += std::to_string(i) + " ";
    }
    return media;
}

enum class Source { File, Pipe };

/// What a parser's stream gives of the media, block by block, and how it ends.
std::string ReadAll(ezDescriptorStream& aStream, const std::string& aMedia) {
    ezStreamMediaParserStream parsed(&aStream, false);
    const bool fOpened = parsed.Open();
    std::string got;
    std::size_t count = 0;
    do {
        std::array<char, 7000> block = {};
        count = block.size();
        if (!parsed.Read(&count, block.data())) {
            break;
        }
        got.append(block.data(), count);
    } while (count != 0);
    const std::string what = got == aMedia                             ? "whole"
                             : aMedia.compare(0, got.size(), got) != 0 ? "other bytes"
                             : got.empty()                             ? "nothing"
                                                                       : "start";
    return what + (fOpened ? "" : ", not opened") +
           (!aStream.HasFailed()             ? ""
            : aStream.GetErrorText().empty() ? ", failed without words"
                                             : ", failed with words") +
           (parsed.GetMediaSize() == aMedia.size() ? "" : ", unsized");
}

std::string Read(Source aSource, const DescriptorFault& aFault, bool* afStruck) {
    const AssertCatcher asserts;
    const std::string media = Media();
    const TemporaryFolder folder;
    std::array<int, 2> ends = {-1, -1};
    if (aSource == Source::File) {
        ends[0] = open(folder.Write("media", media).c_str(), O_RDONLY | O_CLOEXEC);
    } else {
        EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK), 0);
        EXPECT_EQ(fcntl(ends[1], F_SETPIPE_SZ, 1 << 18), 1 << 18); // takes all of it at once
        EXPECT_EQ(write(ends[1], media.data(), media.size()), static_cast<ssize_t>(media.size()));
        close(ends[1]);
    }
    std::string told;
    {
        const FaultyDescriptors faulty(aFault);
        ezFeedOptions options;
        options.mLimits.mWindow = 1 << 20;
        std::unique_ptr<ezDescriptorStream, ezStreamReleaser> stream(
            new ezDescriptorStream(ends[0], "media", options));
        told = ReadAll(*stream, media);
        stream.reset(); // with its thread
        *afStruck = faulty.HasStruck();
    }
    close(ends[0]);
    EXPECT_TRUE(asserts.Failures().empty());
    return told;
}

/// The outcomes of all calls of a kind, each failing once or with all after it.
std::string Sweep(Source aSource, Call aCall, int anError, int aTimes) {
    std::string outcomes;
    DescriptorFault fault;
    fault.mCall = aCall;
    fault.mError = anError;
    fault.mTimes = aTimes;
    for (fault.mFrom = 1; fault.mFrom < 1000; ++fault.mFrom) {
        SCOPED_TRACE(std::string(kNames[static_cast<std::size_t>(aCall)]) + " " +
                     std::to_string(fault.mFrom));
        const std::size_t descriptors = OpenDescriptors();
        bool fStruck = false;
        const std::string told = Read(aSource, fault, &fStruck);
        EXPECT_EQ(OpenDescriptors(), descriptors);
        if (!fStruck) {
            return outcomes;
        }
        if (outcomes.size() < told.size() + 1 ||
            outcomes.compare(outcomes.size() - told.size() - 1, told.size(), told) != 0) {
            outcomes += told + "\n";
        }
    }
    return outcomes + "and no end";
}

} // namespace

TEST(DescriptorFaults, TheMediaComesWholeOrEndsInAnError) {
    const std::string whole = "whole\n";
    const std::string notOpened = "nothing, not opened, failed with words, unsized\n";
    const std::string broken = notOpened + "start, failed with words, unsized\n";
    const std::string brokenFile = "nothing, not opened, failed with words\nstart, failed with words\n";
    struct Row {
        Call mCall;
        int mError;
        std::string mOfPipe;
        std::string mOfFile;
    };
    const Row rows[] = {
        {Call::GetFlags, EBADF, notOpened, notOpened},
        {Call::Pipe, EMFILE, notOpened, notOpened},
        // Without it a file is read as a pipe is.
        {Call::FStat, EIO, "whole\n", "whole\n"},
        {Call::GetOffset, EIO, "", "whole\n"},
        {Call::Poll, ENOMEM, broken, ""},
        {Call::Read, EIO, broken, ""},
        {Call::PRead, EIO, "", brokenFile},
    };
    for (const Row& row : rows) {
        for (const int times : {1, kForGood}) {
            SCOPED_TRACE(kNames[static_cast<std::size_t>(row.mCall)]);
            EXPECT_EQ(Sweep(Source::Pipe, row.mCall, row.mError, times), row.mOfPipe) << times;
            std::string ofFile = Sweep(Source::File, row.mCall, row.mError, times);
            // A thread that has brought all may look for more before it is ended, and nobody reads that.
            const std::size_t after = ofFile.size() - std::min(ofFile.size(), whole.size());
            if (row.mCall == Call::PRead && ofFile.substr(after) == whole) {
                ofFile.resize(after);
            }
            EXPECT_EQ(ofFile, row.mOfFile) << times;
        }
    }
}

TEST(DescriptorFaults, InterruptionsAndShortReadsChangeNothing) {
    for (const Source source : {Source::Pipe, Source::File}) {
        bool fStruck = false;
        EXPECT_EQ(Read(source, {}, &fStruck), "whole");
        EXPECT_FALSE(fStruck);
        for (const Call call : {Call::Poll, Call::Read, Call::PRead, Call::Write}) {
            for (const int error : {EINTR, EAGAIN}) {
                const bool fRead = call == Call::Read || call == Call::PRead;
                if (error == EAGAIN && !fRead) {
                    continue;
                }
                DescriptorFault fault;
                fault.mCall = call;
                fault.mTimes = kForGood;
                fault.mError = error;
                fault.mfEveryOther = true;
                fault.mMaximum = 1000;
                EXPECT_EQ(Read(source, fault, &fStruck), "whole")
                    << kNames[static_cast<std::size_t>(call)] << " " << error;
            }
        }
    }
}

// A stream that waits for a pipe is woken by a write that is interrupted at first.
TEST(DescriptorFaults, DestructionIsNotHeldUpByAnInterruption) {
    std::array<int, 2> ends = {};
    ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    DescriptorFault fault;
    fault.mCall = Call::Write;
    fault.mTimes = 3;
    fault.mError = EINTR;
    {
        const FaultyDescriptors faulty(fault);
        std::unique_ptr<ezDescriptorStream, ezStreamReleaser> stream(new ezDescriptorStream(ends[0], "", {}));
        stream.reset();
        EXPECT_TRUE(faulty.HasStruck());
    }
    close(ends[0]);
    close(ends[1]);
}
