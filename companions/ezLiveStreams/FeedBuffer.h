#pragma once

#include "ezLiveStreams/Export.h"

#include "ezPlatform/base/UInt64.h"
#include "ezPlatform/streams/Stream.h"

#include <array>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

/// How much of the media a feed buffer holds, in bytes.
struct ezFeedLimits {
    /// Bytes that are held as a rule, so that parsers can seek back to what they have seen: parsers look at
    /// the head of a file, and whole pictures and short songs fit, while a device that looks at a few files
    /// at a time still has the memory.
    std::size_t mWindow = std::size_t{1} << 20;
    /// Bytes that the window grows to for a single read that is larger: a read beyond fails. At least
    /// mWindow.
    std::size_t mLargest = std::size_t{16} << 20;
};

/// The bytes of a stream between the thread on which they arrive, the writer, and the one that reads them: a
/// bounded window over the media, which keeps its start as long as it can and can be sought back in.
///
/// The writer waits while the window is full; what is dropped from its front follows from the reads alone. A
/// source that can be moved (SetMovable) is moved when the reader seeks outside of the window. Media that end
/// before their known size have failed. The first failure stays; bytes that arrived before it are still given
/// out. The writer's operations belong to one thread, the reader's to another; Close may be called on any.
/// All of the rules: docs/live-streams.md.
class EZLIVESTREAMS_API ezFeedBuffer {
public:
    /// Wakes the other side. Not empty; called with no lock held, so that it may ask the buffer.
    using Notice = std::function<void()>;

    /// What became of the bytes that the writer appended.
    enum class Push {
        Taken,  ///< all of it: go on
        Moved,  ///< the reader wants bytes of another place: WaitForMove tells from where
        Closed, ///< nobody reads any more: stop
        Full    ///< the media is complete: what comes past its known size is not wanted
    };

    /// Bytes that a seek leads ahead of what has arrived, at most, for reading on: that costs less than
    /// asking anew. A seek farther ahead moves a source that can be moved ahead.
    static constexpr std::uint64_t kWorthMoving = std::uint64_t{256} * 1024;
    /// Moves of a failed source: a server that stalls costs the reader a whole time-out each time, so they
    /// are few.
    static constexpr int kRetries = 3;

    /// @param aThreshold   called on the writer's thread for new data, the end, a failure and a full window
    /// @param anInterrupt  called when the source is to be moved, and by Close: it has to wake a writer that
    ///                     waits for its source
    ezFeedBuffer(const ezFeedLimits& aLimits, Notice aThreshold, Notice anInterrupt);
    ~ezFeedBuffer();
    ezFeedBuffer(const ezFeedBuffer&) = delete;
    ezFeedBuffer& operator=(const ezFeedBuffer&) = delete;

    /// @name For the writer
    /// @{

    /// Takes the bytes that follow the ones before. Waits while the window is full.
    Push Append(const void* aData, std::size_t aSize);
    /// Tells the size of the whole media. Another size than the one known already is a failure, and false:
    /// the media is not the same any more. Ignored, and true, while a move is asked for: what has arrived
    /// says nothing then, and whoever takes the move up tells the size again.
    bool SetSize(std::uint64_t aSize);
    /// Tells where the source can be moved to: back, and also ahead. Without it nowhere.
    void SetMovable(bool afBack, bool afAhead);
    /// The media ends here. Ignored while a move is asked for.
    void End();
    /// The media cannot be read on, with the reason in words. Ignored while a move is asked for.
    void Fail(ezStreamingStatus aStatus, const std::string& aText);
    /// True while the source is to be moved or nobody reads any more: what is under way can be given up.
    bool IsInterrupted() const;
    /// Takes up a move: the place that the bytes are wanted from. Waits for one as long as nobody closes, at
    /// the end of the media. False when closed.
    bool WaitForMove(std::uint64_t* aPosition);
    /// The next bytes are those of this place, at or before the one asked for. The window must be empty, as
    /// it follows a move.
    void StartAt(std::uint64_t aPosition);

    /// @}
    /// @name For the reader, by the contract of ezStream
    /// @{

    /// As ezStream::Read. ezStreamingStatus_OutOfInternalBuffer for a read that is larger than the largest
    /// window and does not end with the media.
    ezStreamingStatus Read(void* aBuffer, std::size_t* aSize, int aFlag);
    /// As ezStream::Seek. A seek ahead of what has arrived is remembered, and the bytes before are passed
    /// over. ezStreamingStatus_OutOfRange before the window of a source that cannot be moved.
    ezStreamingStatus Seek(std::uint64_t aPosition);
    /// The size of the whole media; without a value while it is not known.
    /// @param afWait  waits until the size is known, the media has failed, or the window is full
    std::optional<std::uint64_t> GetSize(bool afWait);
    /// False when the media failed before a byte of it came.
    bool IsOpened() const;
    /// True when the reader came upon a failure: by a read, or by waiting for the size. A failure after
    /// everything that was read is not the reader's; a read that was refused for its size is one. It
    /// stays true also when the media can be read again.
    bool HasFailed() const;
    /// Why the media failed, or a read was refused for its size; "" while neither was.
    std::string GetErrorText() const;

    /// @}

    /// Lets the writer go, for good.
    void Close();

private:
    static constexpr std::size_t kBlockSize = std::size_t{64} * 1024;
    using Block = std::array<unsigned char, kBlockSize>;
    using Lock = std::unique_lock<std::mutex>;

    std::size_t Held() const { return static_cast<std::size_t>(mEnd - mStart); }
    std::size_t HeldForReader() const;
    /// Bytes of a request that the media can have; its whole where the size is not known.
    std::uint64_t Possible(std::size_t anAsked) const;
    bool IsBeyondLargest(std::uint64_t aWanted, std::size_t aHeld) const;
    /// Bytes that fit, after dropping what the reader lets go.
    std::size_t MakeRoom();
    void DropBefore(std::uint64_t aPosition);
    void TakeIn(const unsigned char* aData, std::size_t aSize);
    void GiveOut(unsigned char* aBuffer, std::size_t aSize);
    void WaitForRoom(Lock& aLock);
    void SetFailure(ezStreamingStatus aStatus, const std::string& aText);
    void MoveTo(std::uint64_t aPosition);

    const ezFeedLimits mLimits;
    const Notice mThreshold;
    const Notice mInterrupt;

    mutable std::mutex mMutex; ///< over everything below
    std::condition_variable mWriterMayGoOn;
    std::condition_variable mSizeMayBeKnown;
    std::deque<std::unique_ptr<Block>> mBlocks;
    std::size_t mFirstOffset = 0; ///< of the byte at mStart in the first block
    std::uint64_t mStart = 0;     ///< of the window, in the media
    std::uint64_t mEnd = 0;       ///< of what has arrived
    std::size_t mWindow;          ///< bytes that the window may hold now
    std::uint64_t mPosition = 0;  ///< of the reader
    std::uint64_t mWantedEnd = 0; ///< of the request that the reader waits for; 0: it does not wait
    std::optional<std::uint64_t> mSize;
    std::optional<std::uint64_t> mMoveTo;
    ezStreamingStatus mFailure = ezStreamingStatus_NoError;
    std::string mErrorText;
    bool mfFailureSeen = false;
    int mRetriesLeft = kRetries;
    bool mfAnyArrived = false;
    bool mfFull = false; ///< the writer waits for room
    bool mfMovableBack = false;
    bool mfMovableAhead = false;
    bool mfClosed = false;
};
