#pragma once

#include "ezPlatform/base/Export.h"
#include "ezPlatform/base/Types.h"
#include "ezPlatform/base/UInt64.h"
#include "ezPlatform/text/CString.h"

#include <cstddef>
#include <memory>
#include <mutex>

class ezMediaInfo;

/// What an operation of a stream came to.
enum ezStreamingStatus : int {
    ezStreamingStatus_NoError = 0,
    ezStreamingStatus_EOS = 1,         ///< the end of the media
    ezStreamingStatus_Downloading = 2, ///< for a host's own use: waiting is never reported by it
    ezStreamingStatus_InvalidParam = 3,
    ezStreamingStatus_InvalidState = 4, ///< the stream is not open
    ezStreamingStatus_InvalidSize = 5,
    ezStreamingStatus_OutOfInternalBuffer = 6, ///< more was asked for than the stream can hold
    ezStreamingStatus_Interrupted = 7,
    ezStreamingStatus_ReadError = 8,
    ezStreamingStatus_WriteError = 9,
    ezStreamingStatus_NotSupported = 10,
    ezStreamingStatus_OutOfRange = 11 ///< a position that the stream cannot reach
};

/// How a read is meant.
enum ezStreamReadFlag : int {
    /// All that was asked for, or nothing as long as it has not arrived; less only at the end of the media.
    ezStreamReadFlag_Whole = 1
};

/// Ways in which a stream is used; a set of them is the sum.
enum ezStreamAccess : int { ezStreamAccess_Read = 1, ezStreamAccess_Seek = 2 };

/// Runs on the stream's own thread: it must be short, and must not call the stream.
using ezStreamThresholdCallBack = void (*)(void* aUserData);

// clang-format off
/// A media stream: bytes that arrive from a network, a pipe, a file or memory, through one interface.
///
/// What both reads give with ezStreamReadFlag_Whole; *aSize is what was asked for, and then the count:
///
/// | state of the stream                              | status    | count                         |
/// |--------------------------------------------------|-----------|-------------------------------|
/// | all of it has arrived (also just up to the end)  | NoError   | all that was asked for        |
/// | it has not arrived yet                           | NoError   | 0, however much of it is there |
/// | the media ends within it, or stands at its end   | EOS       | what is left, 0 at the end    |
/// | the media cannot be read                         | any other | 0                             |
///
// clang-format on
/// A count is never above what was asked. Without the flag a read may also give less, but not 0, before the
/// end. The copying read moves the stream by its count. The lending read does not move it: it lends the
/// stream's own bytes, which stay until the next call of the stream. A read never waits: whoever finds
/// nothing waits for the threshold callback, which comes when more has arrived, and also for the end, an
/// error and a time-out.
///
/// One reader at a time, on one thread. The bytes may come from another thread, and only the callback crosses
/// over.
class EZPLATFORM_API ezStream {
public:
    ezStream(const ezStream&) = delete;
    ezStream& operator=(const ezStream&) = delete;

    /// Extension of the media's name, without the dot; empty when it has none.
    virtual ezCString GetExtension() const = 0;
    /// URI or path of the media; empty when it has none.
    virtual ezCString GetURI() const = 0;

    /// Makes aCallBack(aUserData) be called from now on; one callback at a time, the latest counts. aUserData
    /// is borrowed until the callback is unregistered.
    virtual void RegisterThresholdCallBack(ezStreamThresholdCallBack aCallBack, void* aUserData);
    /// Takes the callback away; another than the registered one is ignored. Returns only when no callback
    /// runs, so that the user data may go then.
    virtual void UnregisterThresholdCallBack(ezStreamThresholdCallBack aCallBack);

    /// Size of the whole media in bytes; 0 while it is not known.
    virtual ezuint64 GetSize() = 0;
    /// True when the stream can be read.
    virtual bool IsOpened() = 0;
    /// Puts the stream at a position from the start. The stream stays where it was when it fails. A seek to
    /// the end succeeds; one past the end of media of known size is ezStreamingStatus_OutOfRange.
    virtual ezStreamingStatus Seek(const ezuint64& aPosition) = 0;

    /// Copies bytes into a buffer that takes *aSize of them.
    virtual ezStreamingStatus Read(void* aBuffer, std::size_t* aSize, int aFlag) = 0;
    /// Lends bytes: *aData receives where they are. A stream that lends nothing answers
    /// ezStreamingStatus_NotSupported, as the base does.
    virtual ezStreamingStatus LendingRead(const void** aData, std::size_t* aSize, int aFlag);
    /// True when the stream holds the media in memory of its own. The base does not.
    virtual bool HasOwnBuffer() const;
    /// True when the lending read works for a reader that uses the stream in all of these ways, a set of
    /// ezStreamAccess. The base lends nothing.
    virtual bool CanLend(int anAccess) const;

    /// Adds what the stream knows of the media to a record that is not null. The base knows nothing.
    virtual void CopyInfo(ezMediaInfo* anInfo);

    /// Gives the stream back by whoever owns it; it must not be used any more. The base destroys it.
    virtual void Release();

protected:
    ezStream() = default;
    virtual ~ezStream();

    /// Calls the callback, if one is registered. For the thread on which the bytes arrive; to be called with
    /// no lock held that an operation of the stream takes.
    void FireThreshold();

private:
    /// Held while the callback runs; recursive, so that a callback may take itself away.
    std::recursive_mutex mThresholdMutex;
    ezStreamThresholdCallBack mThresholdCallBack = nullptr;
    void* mThresholdUserData = nullptr;
};

/// Gives a stream back: for std::unique_ptr.
struct ezStreamReleaser {
    /// Releases a stream that is not null, as std::unique_ptr calls it.
    void operator()(ezStream* aStream) const { aStream->Release(); }
};

/// A stream that is owned.
using ezStreamOwner = std::unique_ptr<ezStream, ezStreamReleaser>;
