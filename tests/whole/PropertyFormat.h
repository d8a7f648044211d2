#pragma once

#include "PropertyOperation.h"

#include "support/ScriptedEltStreamParser.h"

#include <memory>
#include <string>
#include <vector>

/// What happens to the formats, in the order in which it does.
using FormatJournal = std::vector<std::string>;

/// A format of an elementary stream: it reads, then skips or reads more, and has decided.
struct FormatPlan {
    char mName = 'A';
    unsigned mFirst = 1;
    unsigned mSecond = 1;
    bool mfAppends = false; ///< the first request, which is the same where nothing was gathered
    bool mfSkips = false;   ///< the second request
    bool mfFails = false;
    unsigned mLimit = 0;

    static FormatPlan Of(char aName, unsigned aNumber);
    std::string InWords() const;
};

/// What packets make of a format: bytes counted and cut at its requests.
class FormatModel {
public:
    static constexpr int kCompleted = ezElementaryStreamParser::MSS_COMPLETED;
    static constexpr int kInProgress = ezElementaryStreamParser::MSS_IN_PROGRESS;
    static constexpr int kFailed = ezElementaryStreamParser::MSS_UNRECOVERABLE_ERROR;

    FormatModel(const FormatPlan& aPlan, FormatJournal& aJournal) : mPlan(aPlan), mJournal(&aJournal) {}

    void Open();
    /// What a packet makes of it: the status.
    int Take(const std::string& aPacket, bool afLost);
    void GiveUp() { mStatus = kCompleted; }
    void Reset();
    void Note(const std::string& aText) { mJournal->push_back(std::string(1, mPlan.mName) + " " + aText); }
    int Status() const { return mStatus; }
    char Name() const { return mPlan.mName; }

private:
    FormatPlan mPlan;
    FormatJournal* mJournal; ///< borrowed
    std::string mTaken;      ///< since its start
    unsigned mTotal = 0;     ///< since it was opened
    bool mfFirstTold = false;
    int mStatus = kCompleted;
};

/// A format that plays a plan, and notes what it was given as well.
class PlannedFormat : public ScriptedEltStreamParser {
public:
    /// The record is owned, may be null.
    PlannedFormat(const FormatPlan& aPlan, ezMediaInfo* anInfo, FormatJournal& aJournal);

    parsing_status_t ContinueParsing(const unsigned char* aBuffer, uint32 aSize) override;

private:
    FormatJournal& mOfAll;
};

/// A format on its own: opened, pushed to, given up, started anew and closed.
class FormatSubject {
public:
    FormatSubject();
    ~FormatSubject();

    static std::string Describe(const Operation& anOperation);
    void Apply(const Operation& anOperation);

private:
    void Open(const Operation& anOperation);
    void Push(const Operation& anOperation);
    void GiveUp();
    void Reset();
    void Close();
    void Compare(const std::string& aWhen);

    FormatJournal mJournal; ///< outlives the format
    FormatJournal mModelJournal;
    std::unique_ptr<PlannedFormat> mFormat;
    std::unique_ptr<FormatModel> mModel; ///< while there is a format
    bool mfOpen = false;
    bool mfRecord = false; ///< it has one to hand over
    unsigned mPackets = 0;
};
