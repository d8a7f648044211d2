#pragma once

#include "ezHosting/Export.h"

#include "ez/MediaParserStream.h"
#include "ezPlatform/streams/Stream.h"

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

/// Tells those who read that nobody wants the result any more, once and for good.
///
/// All operations may be called from any thread, but not from a signal handler. Streams that watch it must
/// be gone before it goes.
class EZHOSTING_API ezCancellation {
public:
    /// Wakes somebody who waits. Runs on the cancelling thread: it is short, throws nothing, and neither
    /// makes nor destroys a Watch of the same cancellation.
    using Notice = std::function<void()>;

    /// Has a function called when it is cancelled, as long as this lives.
    class EZHOSTING_API Watch {
    public:
        /// Calls the function here and now where it is cancelled already. An empty one is never called.
        Watch(ezCancellation& aCancellation, Notice aNotice);
        /// Returns only when the function does not run, so that what it uses may go then.
        ~Watch();
        Watch(const Watch&) = delete;
        Watch& operator=(const Watch&) = delete;

    private:
        friend class ezCancellation;
        ezCancellation& mCancellation;
        const Notice mNotice;
    };

    ezCancellation() = default;
    ezCancellation(const ezCancellation&) = delete;
    ezCancellation& operator=(const ezCancellation&) = delete;

    /// Cancels, and calls those who watch, each once. A second call does nothing, and waits for nothing.
    void Cancel();
    /// Costs no more than the look at a flag.
    bool IsCancelled() const { return mfCancelled.load(std::memory_order_acquire); }

private:
    std::atomic<bool> mfCancelled{false};
    std::mutex mMutex; ///< over the watches; held while they are called
    std::vector<const Watch*> mWatches;
};

/// A stream of parsers whose reads of the source fail once a cancellation says so: `Stream` is
/// ezFileMediaParserStream, ezStreamMediaParserStream, or a host's own.
///
///     ezCancellable<ezFileMediaParserStream> stream(cancellation, path);
///
/// A read that is under way is not broken off by it, but its result is a failure too: what came of it may be
/// the end of the waiting, and not that of the media. So a request has at most one more read to wait for. A
/// stream that may wait long in a read is woken by what it is made of: ezInterruptibleStream.
/// What parsers find after a cancellation is cut short, and worth nothing.
template <typename Stream>
class ezCancellable : public Stream {
public:
    /// @param aCancellation  borrowed until the destruction
    /// @param anArguments    of the constructor of `Stream`
    template <typename... Arguments>
    explicit ezCancellable(ezCancellation& aCancellation, Arguments&&... anArguments)
        : Stream(std::forward<Arguments>(anArguments)...), mCancellation(aCancellation) {}

    /// As that of `Stream`; false once cancelled, then without touching the source.
    bool Open() override {
        return !mCancellation.IsCancelled() && Stream::Open() && !mCancellation.IsCancelled();
    }

protected:
    /// As that of `Stream`; -1 once cancelled.
    ezFileOffset MediaRead(void* aBuffer, std::size_t aSize) override {
        if (mCancellation.IsCancelled()) {
            return -1;
        }
        const ezFileOffset count = Stream::MediaRead(aBuffer, aSize);
        return mCancellation.IsCancelled() ? -1 : count;
    }

private:
    ezCancellation& mCancellation;
};

/// Another ezStream, whose readers stop waiting when a cancellation says so: from then on its reads and seeks
/// answer ezStreamingStatus_Interrupted, and its size is not known. All else is that of the other stream.
class EZHOSTING_API ezInterruptibleStream : public ezStream {
public:
    /// @param aCancellation  borrowed until the destruction
    /// @param aStream        not null; its threshold callback is this stream's from now on
    /// @param aWake          called at the cancelling, for a stream that waits within its own operations:
    ///                       `[feed] { feed->Cancel(); }` for an ezFeedStream that waits for its size
    ezInterruptibleStream(ezCancellation& aCancellation, ezStreamOwner aStream,
                          ezCancellation::Notice aWake = {});

    ezCString GetExtension() const override { return mStream->GetExtension(); }
    ezCString GetURI() const override { return mStream->GetURI(); }
    ezuint64 GetSize() override;
    bool IsOpened() override { return !mCancellation.IsCancelled() && mStream->IsOpened(); }
    ezStreamingStatus Seek(const ezuint64& aPosition) override;
    ezStreamingStatus Read(void* aBuffer, std::size_t* aSize, int aFlag) override;
    ezStreamingStatus LendingRead(const void** aData, std::size_t* aSize, int aFlag) override;
    bool HasOwnBuffer() const override { return mStream->HasOwnBuffer(); }
    bool CanLend(int anAccess) const override { return mStream->CanLend(anAccess); }
    void CopyInfo(ezMediaInfo* anInfo) override { mStream->CopyInfo(anInfo); }

protected:
    ~ezInterruptibleStream() override;

private:
    static void sThresholdCallBack(void* aUserData);

    ezCancellation& mCancellation;
    const ezStreamOwner mStream;
    const ezCancellation::Watch mWatch; ///< after the stream, which its function may use
};

/// A stream for parsers over an ezStream, by an ezInterruptibleStream: cancelled, a reader that waits for
/// bytes stops waiting.
/// @param aCancellation  borrowed until the destruction
/// @param aStream        null: there is nothing to read
/// @param aWake          as for ezInterruptibleStream
EZHOSTING_API std::unique_ptr<ezMediaParserStream>
ezMakeCancellable(ezCancellation& aCancellation, ezStreamOwner aStream, ezCancellation::Notice aWake = {});
