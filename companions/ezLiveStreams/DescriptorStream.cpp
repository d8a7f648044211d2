#include "ezLiveStreams/DescriptorStream.h"

#include "ezLiveStreams/detail/DescriptorCalls.h"
#include "ezLiveStreams/detail/Limits.h"

#include "ezPlatform/files/PathName.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace {

std::string TextOfError(int anError) {
    return std::generic_category().message(anError); // unlike strerror safe beside other threads
}

/// Why a descriptor cannot be read from: what a read of it would say; 0 when it can.
int ErrorOf(int aDescriptor) {
    const int flags = DescriptorCalls_InForce().mGetFlags(aDescriptor);
    if (flags < 0) {
        return errno;
    }
    return (flags & O_ACCMODE) == O_WRONLY ? EBADF : 0;
}

} // namespace

ezDescriptorStream::ezDescriptorStream(int aDescriptor, const ezCString& aName,
                                       const ezFeedOptions& anOptions)
    : ezFeedStream(anOptions), mDescriptor(aDescriptor), mName(aName) {
    // Before the pipe is made, which takes the number of a descriptor that is closed.
    if (const int error = ErrorOf(mDescriptor)) {
        GetBuffer().Fail(ezStreamingStatus_ReadError, TextOfError(error));
        return;
    }
    std::array<int, 2> ends = {};
    if (DescriptorCalls_InForce().mPipe(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        GetBuffer().Fail(ezStreamingStatus_ReadError, TextOfError(errno));
        return;
    }
    mWakeRead = ends[0];
    mWakeWrite = ends[1];
    FindSize();
    Start();
}

ezDescriptorStream::~ezDescriptorStream() {
    Stop();
    if (mWakeRead >= 0) {
        close(mWakeRead);
        close(mWakeWrite);
    }
}

ezCString ezDescriptorStream::GetExtension() const {
    return ezPathName::MakeFilePath(mName).GetExtension();
}

void ezDescriptorStream::FindSize() {
    struct stat status = {};
    if (DescriptorCalls_InForce().mFStat(mDescriptor, &status) != 0 || !S_ISREG(status.st_mode) ||
        status.st_size == 0) {
        return;
    }
    const off_t offset = DescriptorCalls_InForce().mGetOffset(mDescriptor);
    if (offset < 0) {
        return;
    }
    mfFile = true;
    mFileOffset = offset;
    const std::int64_t size = status.st_size > offset ? status.st_size - offset : 0;
    GetBuffer().SetSize(static_cast<std::uint64_t>(size));
    GetBuffer().SetMovable(true, true);
}

void ezDescriptorStream::Interrupt() {
    if (mWakeWrite < 0) {
        return;
    }
    const char byte = 0;
    // A pipe that is full wakes too.
    while (DescriptorCalls_InForce().mWrite(mWakeWrite, &byte, 1) < 0 && errno == EINTR) {
    }
}

ezDescriptorStream::Outcome ezDescriptorStream::WaitForData() {
    if (mfFile) {
        return Outcome::Data; // the read itself tells; a file's interruptions are met at the next Append
    }
    std::array<pollfd, 2> descriptors = {{{mDescriptor, POLLIN, 0}, {mWakeRead, POLLIN, 0}}};
    while (DescriptorCalls_InForce().mPoll(descriptors.data(), descriptors.size()) < 0) {
        if (errno != EINTR) {
            return Outcome::Failure;
        }
    }
    return descriptors[1].revents != 0 ? Outcome::Interrupted : Outcome::Data;
}

ezDescriptorStream::Outcome ezDescriptorStream::ReadSome(std::uint64_t aPosition, unsigned char* aData,
                                                         std::size_t* aSize) {
    while (true) {
        const Outcome ready = WaitForData();
        if (ready != Outcome::Data) {
            return ready;
        }
        const DescriptorCalls& calls = DescriptorCalls_InForce();
        const ssize_t count =
            mfFile ? calls.mPRead(mDescriptor, aData, *aSize, mFileOffset + static_cast<off_t>(aPosition))
                   : calls.mRead(mDescriptor, aData, *aSize);
        if (count >= 0) {
            *aSize = static_cast<std::size_t>(count);
            return count == 0 ? Outcome::End : Outcome::Data;
        }
        if (errno != EINTR && errno != EAGAIN) { // EAGAIN: another reader of a nonblocking pipe was faster
            return Outcome::Failure;
        }
    }
}

void ezDescriptorStream::FeedFrom(std::uint64_t aPosition, ezFeedBuffer& aBuffer) {
    std::vector<unsigned char> data(kDescriptor_ReadSize);
    while (true) {
        std::size_t size = data.size();
        const Outcome outcome = ReadSome(aPosition, data.data(), &size);
        if (outcome == Outcome::Interrupted) {
            return;
        }
        if (outcome == Outcome::Failure) {
            aBuffer.Fail(ezStreamingStatus_ReadError, TextOfError(errno));
            return;
        }
        if (outcome == Outcome::End) {
            aBuffer.End();
            return;
        }
        const ezFeedBuffer::Push push = aBuffer.Append(data.data(), size);
        if (push == ezFeedBuffer::Push::Full) {
            aBuffer.End();
        }
        if (push != ezFeedBuffer::Push::Taken) {
            return;
        }
        aPosition += size;
    }
}

void ezDescriptorStream::Feed(ezFeedBuffer& aBuffer) {
    std::uint64_t position = 0;
    do {
        aBuffer.StartAt(position);
        FeedFrom(position, aBuffer);
    } while (mfFile && aBuffer.WaitForMove(&position));
}
