#pragma once

#include "ez/MediaParserStream.h"

#include "ezPlatform/base/Condition.h"

class ezStream;

/// Callback by which a stream tells its adapter, aUserData, that more has arrived.
EZPARSERS_API void sStreamThresholdCallBack(void* aUserData);

/// A media that arrives over a network, or from any other ezStream, as the input of parsers: read exactly
/// like a local file. A reader that has caught up with the arrival waits until the stream fires its threshold
/// callback.
///
/// The legal order of calls:
/// 1. The host opens or starts the stream, which stands at its start, and constructs the adapter on it.
/// 2. Open. It fetches the first 8 KiB, and so may wait, asks for the size, and tells whether the stream is
///    usable. No read opens by itself: without Open the size is not known before the first read.
/// 3. Seeks, reads and CopyInfo, from one thread.
/// 4. Close, or destruction, after which no callback comes any more. An owned stream is released by it.
///    A stream that is not owned is still read after Close, but nothing wakes a reader then: a read that
///    finds nothing gives 0 bytes. Open registers the callback again.
/// A stream that is not owned outlives its adapter, or at least its Close; one adapter at a time on a stream.
///
/// Seeks are lazy, as for a file, but a size of 0 is one that is not known yet, and any lazy seek is accepted
/// then; the size becomes known by a read at the latest when the stream knows it. Open reads one
/// byte: where Tell stands, or from the start of the media where that fills its buffer. It keeps what Tell
/// says and the buffer, but the stream itself is put back to its start: seek before reading on. Where it
/// cannot be put back, reads before the place where it stands are answered from the buffer or fail; they
/// never give other bytes.
///
/// An error of the stream is -1 on the way that lends, and the stream's own count, by contract 0, on the way
/// that copies; a seek that the stream refuses makes the next read give 0 bytes. There is no time-out here: a
/// stream that neither brings data nor tells of its end or of an error keeps the reader waiting, and a stream
/// that has a time-out reports it as an error. A stream that gives less than was asked before its end breaks
/// the contract of ezStream, and leaves the buffer of the start that short.
///
/// Without a stream (null, or released by Close) opens, seeks and reads of the source answer false or 0, and
/// CopyInfo adds what the adapter itself still knows.
///
/// One thread parses. The stream's thread meets it in ThresholdReached only.
class EZPARSERS_API ezStreamMediaParserStream : public ezMediaParserStream {
public:
    /// @param aStream      null is a media that cannot be read
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
