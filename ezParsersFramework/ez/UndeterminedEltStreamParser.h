#pragma once

#include "ez/ElementaryStreamParserBase.h"
#include "ez/MediaParserTypes.h"

#include "ezPlatform/base/Types.h"
#include "ezPlatform/containers/PtrList.h"
#include "ezPlatform/text/CString.h"

class ezMediaInfo;

/// Parses an elementary stream whose format is not known: candidates, one a format, race on the same packets.
///
/// Every packet is offered to every candidate, in the order in which they were added. One that fails is
/// deleted at once; the first that completes wins, and those after it are not offered that packet. A
/// candidate that has decided when it is opened, either way, takes no part and is deleted.
///
/// The legal order of calls: construct, AddCandidate for each, Open, AddPacket until it returns another
/// status than MSS_IN_PROGRESS, Close for the winner's record; no packets after Close. Without candidates, or
/// when all of them left in Open, the status stays what it was before (MSS_COMPLETED when new, or after a
/// race that was won), and Close returns null. docs/elementary-streams.md has more. One thread at a time.
class EZPARSERS_API ezUndeterminedEltStreamParser : public ezElementaryStreamParser {
public:
    /// @param aEltStreamInfo  owned from now on; may be null
    /// @param aMediaInfo      owned from now on, may be null; when the race opens, each candidate gets a copy
    ///                        of it to fill, in place of the record that it has
    ezUndeterminedEltStreamParser(ezElementaryStreamInfo* aEltStreamInfo, ezMediaInfo* aMediaInfo);
    ~ezUndeterminedEltStreamParser() override;

    void Open() override;
    /// The record of the winner, owned by the caller; null when no candidate won, and at a second call. Only
    /// after Open: a candidate that was never opened is idle, which reads as completed.
    ezMediaInfo* Close() override;
    parsing_status_t AddPacket(const void* aBuffer, uint32 aSize, bool afLostPackets) override;

    /// @name Belong to the candidates: on this class each is the assertion "false" and does nothing
    /// @{
    void InterruptParsing() override;
    void ResetParsing(bool afFromError) override;
    void RequestReadOrSkip(uint32 aSize, bool aSkipRead, bool aAppend) override;
    void GetReadData(const unsigned char*& aSrcBuffer, uint32& aSize) override;
    parsing_status_t StartParsing(bool afFromError) override;
    parsing_status_t ContinueParsing(const unsigned char* aBuffer, uint32 aSize) override;
    /// @}

    /// Adds a candidate, owned from now on; add each once. Null is ignored. Ends a walk. While open this is
    /// the assertion "!mIsOpen", and the candidate is deleted.
    virtual void AddCandidate(ezElementaryStreamParser* aCandidate);

    /// The candidates' names for a log: "|MP3|AAC|", or "<none>".
    ezCString GetCandidateList() const;

    /// @name A walk over the candidates, which survives the deletion of the one that it is at
    /// @{
    /// Goes to the first candidate.
    void Iter_Init();
    /// True while the walk is at a candidate: false past the last one, and between the deletion of a
    /// candidate by CheckCurCandidate and the next Iter_Next.
    bool Iter_Test() const { return mCurNode != nullptr; }
    /// Goes to the candidate that was the next when the walk came to this one.
    void Iter_Next();
    /// Notes the candidate of the node that the walk has come to, and the node after it.
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
    ezElementaryStreamParser* mCurCandidate =
        nullptr; ///< that of mCurNode, owned by the list; null without a node
};
