#pragma once

#include "ez/MediaParserStream.h"

#include "ezPlatform/base/Condition.h"

class ezStream;

/// Callback by which a stream tells its adapter, aUserData, that more has arrived.
EZPARSERS_API void sStreamThresholdCallBack(void* aUserData);

/// Media that arrive over a network, or from any other ezStream, as the input of parsers: read exactly like a
/// local file. A reader that has caught up with the arriving bytes waits until the stream fires its threshold
/// callback; there is no time-out here.
///
/// The legal order of calls:
/// 1. The host opens or starts the stream, which is at its start, and constructs the adapter on it.
/// 2. Open. It fetches the first 8 KiB, and so may wait, asks for the size, and tells whether the stream is
///    usable. No read opens by itself: without Open the size is not known before the first read.
/// 3. Seeks, reads and CopyInfo, from one thread.
/// 4. Close, or destruction, after which no callback comes any more. An owned stream is released by it.
/// A stream that is not owned outlives its adapter, or at least its Close; one adapter at a time on a stream.
///
/// The stream's thread meets the parsing thread in ThresholdReached only. docs/parser-streams.md has the
/// rest: seeks while the size is not known, errors of the stream, reads after Close.
class EZPARSERS_API ezStreamMediaParserStream : public ezMediaParserStream {
public:
    /// @param aStream      null: there is nothing to read
    /// @param afOwnStream  Close and destruction release the stream
    ezStreamMediaParserStream(ezStream* aStream, bool afOwnStream);
    ~ezStreamMediaParserStream() override;

    bool Open() override;
    /// A second call, without an Open in between, does not unregister the callback again: the stream may be
    /// gone by then, or another adapter's.
    void Close() override;
    void CopyInfo(ezMediaInfo* anInfo) override;

protected:
    bool MediaSeek(const ezuint64& anOffset, bool afSeekImmediate) override;
    ezFileOffset MediaRead(void* aBuffer, std::size_t aSize) override;

public:
    /// Wakes a reader that waits. May be called from any thread.
    void ThresholdReached();

protected:
    /// Makes the stream stand where the next read must start. False when it cannot.
    bool StreamSeek();

private:
    void Register();
    void Unregister();
    void ReadOneByteAndReturn();
    bool IsLending() const;
    ezFileOffset BorrowingRead(void* aBuffer, std::size_t aSize);
    ezFileOffset CopyingRead(void* aBuffer, std::size_t aSize);
    /// Waits for the stream. False where nothing would end the wait.
    bool WaitForData();

protected:
    ezStream* mStream;      ///< null when none was given, and when Close has released it
    ezuint64 mSeekPos;      ///< where the next read must start
    ezuint64 mStreamPos;    ///< where the stream stands
    ezCondition mCondition; ///< what ThresholdReached signals and a reader waits for
    bool mfOwnStream;       ///< Close and destruction release the stream

private:
    bool mfRegistered = false;
};
