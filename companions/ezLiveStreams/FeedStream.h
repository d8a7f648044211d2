#pragma once

#include "ezLiveStreams/Export.h"
#include "ezLiveStreams/FeedBuffer.h"

#include "ezPlatform/base/KnownSize.h"
#include "ezPlatform/streams/Stream.h"

#include <string>
#include <thread>

/// What a host chooses about a stream that is fed by a thread of its own.
struct ezFeedOptions {
    ezFeedLimits mLimits; ///< of the window
    /// GetSize waits until the size is known, the media has failed, or the window is full. Media without a
    /// stated size that fits the window then has its size from the start, and one that does not never has it
    /// from the start: what is found out about them does not depend on how fast they came. Without it
    /// GetSize answers at once.
    bool mfWaitForSize = false;
};

/// A media stream whose own thread reads from a source into a bounded window, where the parsing
/// thread finds it: the base of the streams of this library. It copies and lends nothing.
///
/// A concrete stream implements Feed, which runs on the thread, and Interrupt. It calls Start at the end of
/// its constructor and Stop at the start of its destructor. The thread takes no signals: those of the process
/// go to the host's threads.
///
/// A failure is the status of the reads past the last byte that arrived, and GetErrorText says why. All
/// other rules are those of ezStream.
class EZLIVESTREAMS_API ezFeedStream : public ezStream {
public:
    ezuint64 GetSize() override { return ezSizeOrZero(mBuffer.GetSize(mfWaitForSize)); }
    /// False when the media failed before its first byte; true as long as that is not known.
    bool IsOpened() override { return mBuffer.IsOpened(); }
    /// A seek past what has arrived is remembered. One before the window is ezStreamingStatus_OutOfRange
    /// unless the source can be asked for it.
    ezStreamingStatus Seek(const ezuint64& aPosition) override { return mBuffer.Seek(aPosition.ToUInt64()); }
    ezStreamingStatus Read(void* aBuffer, std::size_t* aSize, int aFlag) override {
        return mBuffer.Read(aBuffer, aSize, aFlag);
    }

    /// Ends the stream, for good, from any thread: a reader that waits for bytes or for the size stops
    /// waiting, and reads answer ezStreamingStatus_InvalidState from then on. It must not be destroyed
    /// meanwhile.
    void Cancel();

    /// True when a read, or the wait for the size, came upon a failure of the media. One after everything
    /// that was asked for does not count, so the answer is the same however fast the media came. A read that
    /// was refused for its size counts too.
    bool HasFailed() const { return mBuffer.HasFailed(); }
    /// Why the media failed, in words: those of the system for an error of it. "" while it has not.
    std::string GetErrorText() const { return mBuffer.GetErrorText(); }

protected:
    /// Makes the buffer; the thread runs from Start on.
    /// @param anOptions  copied
    explicit ezFeedStream(const ezFeedOptions& anOptions);
    ~ezFeedStream() override;

    /// Runs on the thread: brings the media into the buffer, until the media ends or Append or WaitForMove
    /// says that nobody reads any more.
    virtual void Feed(ezFeedBuffer& aBuffer) = 0;
    /// Wakes a Feed that waits for its source. Called on the reader's thread, and on that of Cancel; also
    /// when the stream has no thread, or Feed has ended.
    virtual void Interrupt() = 0;

    /// Starts the thread; one that cannot be had is a failure of the media.
    void Start();
    /// Lets Feed end, and returns when it has. May be called again.
    void Stop();

    /// The buffer that Feed is given, for the constructor of a concrete stream; it goes with the stream.
    ezFeedBuffer& GetBuffer() { return mBuffer; }

private:
    ezFeedBuffer mBuffer;
    const bool mfWaitForSize;
    std::thread mThread;
};
