#pragma once

#include "ez/MediaParserTypes.h"

#include "ezPlatform/base/Types.h"
#include "ezPlatform/containers/PtrList.h"
#include "ezPlatform/text/CString.h"

class ezMediaInfo;

/// Which elementary stream is parsed.
class EZPARSERS_API ezElementaryStreamInfo {
public:
    /// @param aName  lent for the life of the object
    /// @param anID   the stream's identifier in whatever carries it
    ezElementaryStreamInfo(const char* aName, uint32 anID) : mName(aName), mID(anID) {}
    virtual ~ezElementaryStreamInfo();

    /// The name as it was given, still lent by whoever gave it.
    const char* GetName() const { return mName; }
    /// The identifier as it was given; what it means is the carrier's affair.
    uint32 GetID() const { return mID; }

protected:
    const char* mName; ///< borrowed
    uint32 mID;        ///< in whatever carries the stream
};

// clang-format off
/// The base of every parser of an elementary stream: an audio or video bit stream that is pushed in packets, and
/// never pulled. A format derives from it and fills in two functions; the base gathers.
///
/// For whoever pushes, the legal order of calls:
/// 1. Construct; the status is MSS_COMPLETED, which is also that of an idle parser.
/// 2. Open. The status is now what StartParsing gave, normally MSS_IN_PROGRESS.
/// 3. AddPacket, until it returns another status than MSS_IN_PROGRESS, or as long as there are packets. A packet
///    of an idle or decided parser is neither looked at nor counted.
/// 4. Close, which hands the record over and frees the buffer. The parser may be opened again then, with a record
///    of SetMediaInfo.
///
/// | state                | event                                       | next state                  |
/// |----------------------|---------------------------------------------|-----------------------------|
/// | MSS_COMPLETED (idle) | Open                                        | what StartParsing gives     |
/// | MSS_IN_PROGRESS      | a request is satisfied                      | what ContinueParsing gives  |
/// | MSS_IN_PROGRESS      | packets were lost; ResetParsing             | what StartParsing gives     |
/// | MSS_IN_PROGRESS      | GetMaxReadSize() bytes pushed, no decision  | MSS_UNRECOVERABLE_ERROR     |
/// | any                  | Close, InterruptParsing                     | MSS_COMPLETED (idle)        |
///
// clang-format on
/// For whoever writes a format: StartParsing places the first request, ContinueParsing takes the bytes of a
/// satisfied one, fills GetMediaInfo(), which may be null, and places the next:
/// - RequestRead(n): the next n bytes, gathered in one block.
/// - RequestAppend(n): n more bytes behind those of the request before, all in one block. After a skip there
///   are none to keep, and it is a RequestRead.
/// - RequestSkip(n): n bytes are passed over, without a copy.
/// Placing a request may move the block: the bytes that ContinueParsing was given are not to be used behind
/// it. For a skip ContinueParsing gets the number of bytes passed over, and a block that means nothing and
/// may be null. A parser that stays in progress owes a request of at least one byte: none, or one of 0 bytes,
/// is a mistake of its author (an assertion) and ends the parse as failed. So does a block that cannot be
/// had. A size read from the stream is bounded by the format before it is requested.
///
/// Whatever the cuts between packets, the format sees the same requests satisfied with the same bytes, as
/// long as it decides below the limit, which counts whole packets. It places requests and nothing else:
/// opening, closing, resetting or interrupting the parser from within its two functions is a mistake.
///
/// One thread at a time.
class EZPARSERS_API ezElementaryStreamParser {
public:
    /// Where a parser stands, and what a step of a format came to.
    enum parsing_status_t : int {
        MSS_COMPLETED = 0,          ///< parsed; also idle
        MSS_IN_PROGRESS = 1,        ///< wants more data
        MSS_UNRECOVERABLE_ERROR = 2 ///< failed: the stream is not of this format
    };

    /// @param aName           lent for the life of the parser
    /// @param aMaxReadSize    bytes pushed without a decision at which the parse fails: at the number itself
    /// @param aEltStreamInfo  owned from now on; may be null
    /// @param aMediaInfo      owned until Close hands it over; may be null
    ezElementaryStreamParser(const char* aName, uint32 aMaxReadSize, ezElementaryStreamInfo* aEltStreamInfo,
                             ezMediaInfo* aMediaInfo);
    virtual ~ezElementaryStreamParser();

    ezElementaryStreamParser(const ezElementaryStreamParser&) = delete;
    ezElementaryStreamParser& operator=(const ezElementaryStreamParser&) = delete;

    /// Begins: forgets what was gathered and counted. GetParserStatus tells how it went.
    virtual void Open();

    /// Ends: the record, which the caller owns, or null where there is none (any more).
    virtual ezMediaInfo* Close();

    /// Pushes a packet of aSize bytes, lent for the call; a null one counts as empty. A packet may satisfy
    /// several requests and a request may span packets.
    /// @param afLostPackets  packets were lost before this one: the format starts anew with it
    /// @return the status behind the packet
    virtual parsing_status_t AddPacket(const void* aBuffer, uint32 aSize, bool afLostPackets);

    /// Gives up: frees the buffer and leaves the parser idle.
    virtual void InterruptParsing();

    /// Starts the format anew, without setting the count of pushed bytes back. While open only.
    virtual void ResetParsing(bool afFromError);

    /// Places a request; a size that grows past 32 bits stays at 0xFFFFFFFF.
    virtual void RequestReadOrSkip(uint32 aSize, bool aSkipRead, bool aAppend);

    /// Takes of a packet what the request still misses; both arguments move on by it. Without anything to
    /// take, the assertion "mReadRequestSize > mReadCurrentSize".
    virtual void GetReadData(const unsigned char*& aSrcBuffer, uint32& aSize);

    /// Begins the format's own state, anew after lost packets with afFromError.
    virtual parsing_status_t StartParsing(bool afFromError) = 0;

    /// Takes the aSize bytes of a satisfied request, lent until the next request is placed.
    virtual parsing_status_t ContinueParsing(const unsigned char* aBuffer, uint32 aSize) = 0;

    /// The name that log lines and GetCandidateList show, still lent by whoever gave it.
    const char* GetName() const { return mName; }
    /// Bytes pushed without a decision at which the parse fails. 0 of an ezUndeterminedEltStreamParser, which
    /// has no limit of its own.
    uint32 GetMaxReadSize() const { return mMaxReadSize; }
    /// Where the parser stands now: behind Open and AddPacket what they came to.
    parsing_status_t GetParserStatus() const { return mGlobalStatus; }
    /// Lent; null when there is none.
    ezElementaryStreamInfo* GetEltStreamInfo() const { return mEltStreamInfo; }
    /// Lent; null when there is none, and after Close.
    ezMediaInfo* GetMediaInfo() const { return mMediaInfo; }
    /// Takes another record, and deletes the one before.
    void SetMediaInfo(ezMediaInfo* aMediaInfo);

    /// For StartParsing and ContinueParsing: wants the next aSize bytes, in one block.
    void RequestRead(uint32 aSize) { RequestReadOrSkip(aSize, false, false); }
    /// The same, but aSize more bytes behind those of the request before.
    void RequestAppend(uint32 aSize) { RequestReadOrSkip(aSize, false, true); }
    /// The same, but aSize bytes are passed over.
    void RequestSkip(uint32 aSize) { RequestReadOrSkip(aSize, true, false); }

private:
    /// Makes the buffer hold the request. False when the block cannot be had.
    bool GrowBuffer();
    /// The status that a step of the format leads to.
    parsing_status_t Checked(parsing_status_t aStatus) const;
    /// Satisfies requests with a packet; both arguments move on by what was taken.
    void TakePacket(const unsigned char*& aSrcBuffer, uint32& aSize);
    void CheckDecision(uint32 aLeftSize);

protected:
    const char* mName;                      ///< borrowed; for the log
    const uint32 mMaxReadSize;              ///< bytes without a decision at which the parse fails
    ezElementaryStreamInfo* mEltStreamInfo; ///< owned; null when none was given
    ezMediaInfo* mMediaInfo;     ///< owned; what a format fills. Null when none was given, and after Close
    uint32 mTotalReadSize = 0;   ///< bytes pushed since Open; stays at 0xFFFFFFFF
    uint32 mReadCurrentSize = 0; ///< bytes gathered or passed over for the request; never above its size
    uint32 mReadRequestSize = 0; ///< bytes of the request, with those that it appends to; 0 without one
    bool mSkipRead = false;      ///< the request is a skip
    uint32 mReadBufferSize = 0;  ///< bytes that mReadBuffer takes; it grows with the requests
    unsigned char* mReadBuffer = nullptr;           ///< of ezRealloc
    parsing_status_t mGlobalStatus = MSS_COMPLETED; ///< what GetParserStatus tells; a format returns a status
                                                    ///< and leaves this one to the base

private:
    bool mfBufferRefused = false; ///< the block for the latest request could not be had
};

/// Parses an elementary stream whose format is not known: its candidates race on the same packets.
///
/// Every packet is offered to every candidate in the order in which they were added. One that fails is
/// deleted at once, and one that completes wins at once: the candidates behind it are not offered the packet,
/// and those before it stay. A candidate that has decided when it is opened, either way, is deleted too: only
/// those that want data take part.
///
/// The legal order of calls: construct, AddCandidate for each, Open, AddPacket until it returns another
/// status than MSS_IN_PROGRESS, Close for the winner's record; no packets behind Close. Without candidates,
/// or when all of them left in Open, the status stays what it was before (MSS_COMPLETED when new, or after a
/// race that was won), and Close gives null. The parser does not count bytes: each candidate keeps its own
/// limit.
///
/// Two candidates that would win within one packet are parted by their order, not by their bytes: formats
/// that can both complete on one stream make the winner depend on the packets.
///
/// InterruptParsing, ResetParsing, the requests and GetReadData, StartParsing and ContinueParsing belong to
/// the candidates; on this class each is the assertion "false" and does nothing.
class EZPARSERS_API ezUndeterminedEltStreamParser : public ezElementaryStreamParser {
public:
    /// @param aMediaInfo  owned, may be null; each candidate gets a copy of it to fill when the race opens,
    ///                    in place of the record it has
    ezUndeterminedEltStreamParser(ezElementaryStreamInfo* aEltStreamInfo, ezMediaInfo* aMediaInfo);
    ~ezUndeterminedEltStreamParser() override;

    void Open() override;
    /// The record of the winner, owned by the caller; null when nobody won, and at a second call. Only after
    /// Open: a candidate that was never opened is idle, which reads as completed.
    ezMediaInfo* Close() override;
    parsing_status_t AddPacket(const void* aBuffer, uint32 aSize, bool afLostPackets) override;

    void InterruptParsing() override;
    void ResetParsing(bool afFromError) override;
    void RequestReadOrSkip(uint32 aSize, bool aSkipRead, bool aAppend) override;
    void GetReadData(const unsigned char*& aSrcBuffer, uint32& aSize) override;
    parsing_status_t StartParsing(bool afFromError) override;
    parsing_status_t ContinueParsing(const unsigned char* aBuffer, uint32 aSize) override;

    /// Adds a candidate, once, owned from now on; null is ignored. Ends a walk. While open this is the
    /// assertion "!mIsOpen", and the candidate is deleted.
    virtual void AddCandidate(ezElementaryStreamParser* aCandidate);

    /// The candidates' names for a log: "|MP3|AAC|", or "<none>".
    ezCString GetCandidateList() const;

    /// @name A walk over the candidates, which survives the deletion of the one that it is at
    /// @{
    /// Goes to the first candidate.
    void Iter_Init();
    /// True while the walk is at a candidate: not behind the last one, nor where CheckCurCandidate has
    /// deleted the one that it was at and Iter_Next has not gone on.
    bool Iter_Test() const { return mCurNode != nullptr; }
    /// Goes to the candidate that stood behind when the walk came to this one.
    void Iter_Next();
    /// Takes the candidate of the node that the walk has come to, and the node behind it.
    void GetCandidate();
    /// @}

    /// Deletes the candidate that the walk is at unless it is in progress.
    void CheckCurCandidate();

    /// Deletes a candidate: the free function of the list.
    static void FreeCandidate(void* aCandidate);

protected:
    ezPtrList* mCandidateList;          ///< of ezElementaryStreamParser, owned, in the order added
    bool mIsOpen = false;               ///< between Open and Close
    ezPtrListNode* mCurNode = nullptr;  ///< where the walk is; null when it is at no candidate
    ezPtrListNode* mNextNode = nullptr; ///< where it goes next; taken beforehand, as mCurNode may be deleted
    ezElementaryStreamParser* mCurCandidate = nullptr; ///< that of mCurNode, lent; null with it
};
