#pragma once

#include "ez/ElementaryStreamInfo.h"
#include "ez/MediaParserTypes.h"

#include "ezPlatform/base/Types.h"

class ezMediaInfo;

// clang-format off
/// The base of every parser of an elementary stream: an audio or video bit stream that is pushed in packets of any
/// size, and never pulled. A format derives from it and supplies StartParsing and ContinueParsing; the base
/// gathers the bytes that they request.
///
/// The legal order of calls:
/// 1. Construct. The status is MSS_COMPLETED, which is also that of an idle parser.
/// 2. Open. The status is now what StartParsing returned, normally MSS_IN_PROGRESS.
/// 3. AddPacket, until it returns another status than MSS_IN_PROGRESS, or as long as there are packets.
/// 4. Close, which hands the record over and frees the buffer. Give a new record (SetMediaInfo) to open again.
///
/// | state                | event                                       | next state                  |
/// |----------------------|---------------------------------------------|-----------------------------|
/// | MSS_COMPLETED (idle) | Open                                        | what StartParsing returns   |
/// | MSS_IN_PROGRESS      | a request is satisfied                      | what ContinueParsing returns|
/// | MSS_IN_PROGRESS      | packets were lost; ResetParsing             | what StartParsing returns   |
/// | MSS_IN_PROGRESS      | GetMaxReadSize() bytes pushed, no decision  | MSS_UNRECOVERABLE_ERROR     |
/// | any                  | Close, InterruptParsing                     | MSS_COMPLETED (idle)        |
///
/// docs/elementary-streams.md tells how to push packets and how to write a format. One thread at a time.
// clang-format on
class EZPARSERS_API ezElementaryStreamParser {
public:
    /// Where a parser stands, and what a step of a format came to.
    enum parsing_status_t : int {
        MSS_COMPLETED = 0,          ///< parsed; also idle
        MSS_IN_PROGRESS = 1,        ///< wants more data
        MSS_UNRECOVERABLE_ERROR = 2 ///< failed: the stream is not of this format
    };

    /// @param aName           borrowed: it outlives the parser
    /// @param aMaxReadSize    the number of bytes pushed without a decision at which the parse fails
    /// @param aEltStreamInfo  owned from now on; may be null
    /// @param aMediaInfo      owned until Close hands it over; may be null
    ezElementaryStreamParser(const char* aName, uint32 aMaxReadSize, ezElementaryStreamInfo* aEltStreamInfo,
                             ezMediaInfo* aMediaInfo);
    virtual ~ezElementaryStreamParser();

    ezElementaryStreamParser(const ezElementaryStreamParser&) = delete;
    ezElementaryStreamParser& operator=(const ezElementaryStreamParser&) = delete;

    /// Begins: discards what was gathered and counted, and calls StartParsing. GetParserStatus has the
    /// outcome.
    virtual void Open();

    /// Ends. Returns the record, which the caller owns now; null when there was none, and at a second call.
    virtual ezMediaInfo* Close();

    /// Pushes a packet of aSize bytes, borrowed for the call; a null one counts as empty. A packet may
    /// satisfy several requests, and a request may span packets. A packet of an idle or decided parser is
    /// neither read nor counted.
    /// @param afLostPackets  packets were lost before this one: the format starts anew with it
    /// @return the status after the packet
    virtual parsing_status_t AddPacket(const void* aBuffer, uint32 aSize, bool afLostPackets);

    /// Gives up: frees the buffer; the parser is idle then.
    virtual void InterruptParsing();

    /// Starts the format anew without resetting the count of pushed bytes. Only while open.
    virtual void ResetParsing(bool afFromError);

    /// Places a request, as RequestRead, RequestAppend and RequestSkip do; an appended size saturates at
    /// 0xFFFFFFFF.
    virtual void RequestReadOrSkip(uint32 aSize, bool aSkipRead, bool aAppend);

    /// Takes from a packet what the request still misses, and advances both arguments by that. Where the
    /// request misses nothing, it is the assertion "mReadRequestSize > mReadCurrentSize".
    virtual void GetReadData(const unsigned char*& aSrcBuffer, uint32& aSize);

    /// The format resets its own state and places its first request; after lost packets with afFromError.
    /// Returns the status: normally MSS_IN_PROGRESS.
    virtual parsing_status_t StartParsing(bool afFromError) = 0;

    /// The format reads the aSize bytes of a satisfied request, borrowed until it places the next one, fills
    /// GetMediaInfo(), which may be null, and places the next request. After a skip aSize is the number of
    /// bytes skipped, and the block means nothing and may be null. Returns the status.
    virtual parsing_status_t ContinueParsing(const unsigned char* aBuffer, uint32 aSize) = 0;

    /// The name that log lines and GetCandidateList show; it still belongs to whoever gave it.
    const char* GetName() const { return mName; }
    /// The number of bytes pushed without a decision at which the parse fails. 0 for an
    /// ezUndeterminedEltStreamParser, which has no limit of its own.
    uint32 GetMaxReadSize() const { return mMaxReadSize; }
    /// The current status: after Open and AddPacket their outcome.
    parsing_status_t GetParserStatus() const { return mGlobalStatus; }
    /// What was given to the constructor; owned by the parser, may be null.
    ezElementaryStreamInfo* GetEltStreamInfo() const { return mEltStreamInfo; }
    /// The record that the format fills; owned by the parser. Null when there is none, and after Close.
    ezMediaInfo* GetMediaInfo() const { return mMediaInfo; }
    /// Takes ownership of another record, which may be null, and deletes the one before.
    void SetMediaInfo(ezMediaInfo* aMediaInfo);

    /// For StartParsing and ContinueParsing: requests the next aSize bytes, in one block. Placing a request
    /// may move the block: what ContinueParsing was given is invalid then.
    void RequestRead(uint32 aSize) { RequestReadOrSkip(aSize, false, false); }
    /// The same, but aSize more bytes after those of the request before, all in one block. After a skip there
    /// are none to keep, and it is a RequestRead.
    void RequestAppend(uint32 aSize) { RequestReadOrSkip(aSize, false, true); }
    /// The same, but aSize bytes are skipped, without a copy.
    void RequestSkip(uint32 aSize) { RequestReadOrSkip(aSize, true, false); }

private:
    /// Makes the buffer hold the request. False when memory is refused.
    bool GrowBuffer();
    /// The status that a step of the format leads to.
    parsing_status_t Checked(parsing_status_t aStatus) const;
    /// Satisfies requests from a packet, and advances both arguments by what was taken.
    void TakePacket(const unsigned char*& aSrcBuffer, uint32& aSize);
    void CheckDecision(uint32 aLeftSize);

protected:
    const char* mName;                      ///< borrowed; for the log
    const uint32 mMaxReadSize;              ///< bytes without a decision at which the parse fails
    ezElementaryStreamInfo* mEltStreamInfo; ///< owned; null when none was given
    ezMediaInfo* mMediaInfo;     ///< owned; what a format fills. Null when none was given, and after Close
    uint32 mTotalReadSize = 0;   ///< bytes pushed since Open; stays at 0xFFFFFFFF
    uint32 mReadCurrentSize = 0; ///< bytes gathered or skipped for the request; never above its size
    uint32 mReadRequestSize = 0; ///< bytes of the request, including those that it appends to; 0 without one
    bool mSkipRead = false;      ///< the request is a skip
    uint32 mReadBufferSize = 0;  ///< capacity of mReadBuffer in bytes; it grows with the requests
    unsigned char* mReadBuffer = nullptr;           ///< owned, of ezRealloc; null without a block
    parsing_status_t mGlobalStatus = MSS_COMPLETED; ///< what GetParserStatus returns; a format returns a
                                                    ///< status and leaves this field to the base

private:
    bool mfBufferRefused = false; ///< the block for the latest request could not be allocated
};
