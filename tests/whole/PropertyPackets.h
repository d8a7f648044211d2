#pragma once

#include "PropertyFormat.h"
#include "PropertyOperation.h"

#include "ezLiveStreams/FeedStream.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class ezUndeterminedEltStreamParser;

/// A file that a thread brings in packets of one size.
class FedStream : public ezFeedStream {
public:
    /// @param aFailingAt  fails after so many bytes, where it is not longer
    FedStream(std::string aContent, std::size_t aPacket, std::size_t aWindow, std::string aName,
              std::size_t aFailingAt = static_cast<std::size_t>(-1));

    ezCString GetExtension() const override;
    ezCString GetURI() const override { return mName.c_str(); }

protected:
    ~FedStream() override { Stop(); }
    void Feed(ezFeedBuffer& aBuffer) override;
    void Interrupt() override {}

private:
    std::string mContent;
    std::size_t mPacket;
    std::string mName;
    std::size_t mFailingAt;
};

/// The bytes of a file: letters, in an order that depends on a number.
std::string LettersOf(std::size_t aLength, unsigned aNumber);

/// Media that are pushed: into a stream that is read, and into formats that race on them.
class PacketsSubject {
public:
    PacketsSubject();
    ~PacketsSubject();

    static std::string Describe(const Operation& anOperation);
    void Apply(const Operation& anOperation);

private:
    static std::vector<FormatPlan> CandidatesOf(const Operation& anOperation);

    void FeedMedia(const Operation& anOperation);
    void OpenRace(const Operation& anOperation);
    void PushPacket(const Operation& anOperation);
    void CloseRace();
    /// What a packet makes of the race: the status.
    int TakeAll(const std::string& aPacket, bool afLost);
    void EndRace();
    void Compare(const std::string& aWhen);

    std::string ModelCandidates() const;

    FormatJournal mJournal; ///< outlives the race
    FormatJournal mModelJournal;
    std::unique_ptr<ezUndeterminedEltStreamParser> mRace;
    std::vector<FormatModel> mCandidates; ///< that are left
    int mStatus = 0;
    char mWinner = '\0';
    unsigned mPackets = 0;
};
