#include "PropertyPackets.h"

#include "PropertyTypes.h"

#include "ez/StreamMediaParserStream.h"
#include "support/Record.h"
#include "support/ScriptedEltStreamParser.h"

#include <algorithm>
#include <utility>

namespace {

constexpr int kCompleted = ezElementaryStreamParser::MSS_COMPLETED;
constexpr int kInProgress = ezElementaryStreamParser::MSS_IN_PROGRESS;
constexpr int kFailed = ezElementaryStreamParser::MSS_UNRECOVERABLE_ERROR;

const std::size_t kLengths[] = {0, 1, 100, 8191, 8192, 8193, 30000};
const std::size_t kPackets[] = {10000, 100, 1000, 8192, 333};
const std::size_t kWindows[] = {100000, 20000, 9000, 8192};
const std::size_t kReads[] = {10000, 1000, 8192, 77};

/// A format of a race, which notes what it was given as well.
class RacingParser : public ScriptedEltStreamParser {
public:
    RacingParser(const EltScript& aScript, unsigned aLimit, const char* aName,
                 std::vector<std::string>& aJournal)
        : ScriptedEltStreamParser(aScript, aLimit, aName, nullptr, &aJournal), mOfAll(aJournal) {}

    parsing_status_t ContinueParsing(const unsigned char* aBuffer, uint32 aSize) override {
        mOfAll.push_back(GetName() + (IsSkipping() ? " passed over " + std::to_string(aSize)
                                                   : " got " + std::string(aBuffer, aBuffer + aSize)));
        return ScriptedEltStreamParser::ContinueParsing(aBuffer, aSize);
    }

private:
    std::vector<std::string>& mOfAll;
};

/// All of a stream; false where a read failed.
bool ReadThrough(ezMediaParserStream& aStream, std::size_t aPiece, std::string* aBytes) {
    std::string piece(aPiece, '\0');
    while (true) {
        std::size_t count = aPiece;
        if (!aStream.Read(&count, piece.data())) {
            return false;
        }
        if (count == 0) {
            return true;
        }
        aBytes->append(piece, 0, count);
    }
}

} // namespace

std::string LettersOf(std::size_t aLength, unsigned aNumber) {
    std::string letters(aLength, 'A');
    for (std::size_t i = 0; i < aLength; ++i) {
        letters[i] = static_cast<char>('A' + ((i * 7 + i / 5 + aNumber) % 4));
    }
    return letters;
}

FedStream::FedStream(std::string aContent, std::size_t aPacket, std::size_t aWindow, std::string aName,
                     std::size_t aFailingAt)
    : ezFeedStream({{aWindow, std::max(aWindow, std::size_t{1} << 20)}, true}),
      mContent(std::move(aContent)),
      mPacket(aPacket),
      mName(std::move(aName)),
      mFailingAt(aFailingAt) {
    Start();
}

ezCString FedStream::GetExtension() const {
    return NameParts(mName).mExtension.c_str();
}

void FedStream::Feed(ezFeedBuffer& aBuffer) {
    const std::size_t length = std::min(mContent.size(), mFailingAt);
    for (std::size_t at = 0; at < length; at += mPacket) {
        const std::size_t count = std::min(mPacket, length - at);
        if (aBuffer.Append(mContent.data() + at, count) != ezFeedBuffer::Push::Taken) {
            return;
        }
    }
    if (length < mContent.size()) {
        aBuffer.Fail(ezStreamingStatus_ReadError, "the source is gone");
    } else {
        aBuffer.End();
    }
}

PacketsSubject::PacketsSubject() = default;
PacketsSubject::~PacketsSubject() = default;

std::vector<PacketsSubject::Candidate> PacketsSubject::CandidatesOf(const Operation& anOperation) {
    std::vector<Candidate> candidates;
    for (const unsigned number : {anOperation.mA, anOperation.mB, anOperation.mC}) {
        Candidate candidate;
        candidate.mName = static_cast<char>('A' + candidates.size());
        candidate.mFirst = 1 + number % 6;
        candidate.mSecond = 1 + number / 6 % 5;
        candidate.mfSkips = number / 30 % 2 != 0;
        candidate.mfFails = number / 60 % 2 != 0;
        candidate.mLimit = number / 120 % 2 != 0 ? 6 : 1000;
        candidates.push_back(candidate);
    }
    candidates.resize(anOperation.mD % 4);
    return candidates;
}

std::string PacketsSubject::Describe(const Operation& anOperation) {
    std::ostringstream text;
    switch (anOperation.mVerb) {
    case Verb::FeedMedia:
        text << "feed a media of " << Chosen(kLengths, anOperation.mA) << " bytes in packets of "
             << Chosen(kPackets, anOperation.mB) << " through a window of "
             << Chosen(kWindows, anOperation.mC) << ", read in pieces of "
             << Chosen(kReads, anOperation.mC / 4)
             << (anOperation.mD % 4 == 3 ? ", the source failing half way" : "");
        break;
    case Verb::OpenRace:
        text << "open a race of";
        for (const Candidate& candidate : CandidatesOf(anOperation)) {
            text << " " << candidate.mName << " (" << candidate.mFirst << " bytes, then " << candidate.mSecond
                 << (candidate.mfSkips ? " passed over" : " more") << (candidate.mfFails ? ", fails" : "")
                 << ", limit " << candidate.mLimit << ")";
        }
        break;
    case Verb::PushPacket:
        text << "push " << anOperation.mA % 8 << " bytes" << (anOperation.mB % 6 == 5 ? " after a loss" : "");
        break;
    default:
        text << "close the race";
        break;
    }
    return text.str();
}

void PacketsSubject::Apply(const Operation& anOperation) {
    switch (anOperation.mVerb) {
    case Verb::FeedMedia:
        FeedMedia(anOperation);
        break;
    case Verb::OpenRace:
        OpenRace(anOperation);
        break;
    case Verb::PushPacket:
        PushPacket(anOperation);
        break;
    default:
        CloseRace();
        break;
    }
}

void PacketsSubject::FeedMedia(const Operation& anOperation) {
    const std::string content = LettersOf(Chosen(kLengths, anOperation.mA), anOperation.mD);
    const bool fFails = anOperation.mD % 4 == 3 && !content.empty();
    const std::size_t failingAt = fFails ? content.size() / 2 : static_cast<std::size_t>(-1);
    auto* fed = new FedStream(content, Chosen(kPackets, anOperation.mB), Chosen(kWindows, anOperation.mC),
                              "live.aaa", failingAt);
    ezStreamMediaParserStream stream(fed, true);
    std::string bytes;
    const bool fOpened = stream.Open();
    const bool fRead = ReadThrough(stream, Chosen(kReads, anOperation.mC / 4), &bytes);
    if (!fFails) {
        Agree("the fed media opens", fOpened, true);
        Agree("the fed media is read to its end", fRead, true);
        Agree("bytes that were fed and are read: number", bytes.size(), content.size());
        Agree("bytes that were fed and are read", bytes == content, true);
        Met("a fed media is read to its end");
    } else {
        Agree("bytes before the failure", bytes == content.substr(0, std::min(bytes.size(), failingAt)),
              true);
        Agree("the failure was met", fed->HasFailed(), true);
        Met("a fed media fails");
    }
}

void PacketsSubject::OpenRace(const Operation& anOperation) {
    EndRace();
    mCandidates = CandidatesOf(anOperation);
    mRace = std::make_unique<ezUndeterminedEltStreamParser>(nullptr, new ezMediaInfo);
    static const char* const kNames[] = {"A", "B", "C"};
    for (const Candidate& candidate : mCandidates) {
        const EltScript script = {EltStep::OfRead(candidate.mFirst),
                                  candidate.mfSkips ? EltStep::OfSkip(candidate.mSecond)
                                                    : EltStep::OfAppend(candidate.mSecond),
                                  candidate.mfFails ? EltStep::OfFailure() : EltStep::OfCompletion()};
        mRace->AddCandidate(
            new RacingParser(script, candidate.mLimit, kNames[candidate.mName - 'A'], mJournal));
        mModelJournal.push_back(std::string(1, candidate.mName) + " opened");
    }
    mRace->Open();
    mStatus = mCandidates.empty() ? kCompleted : kInProgress;
    mWinner = '\0';
    mPackets = 0;
    Compare("after opening a race");
}

int PacketsSubject::Take(Candidate& aCandidate, const std::string& aPacket, bool afLost) {
    const std::string name(1, aCandidate.mName);
    mModelJournal.push_back(name + " took " + std::to_string(aPacket.size()) +
                            (afLost ? " after a loss" : ""));
    if (afLost) {
        aCandidate.mTaken.clear();
        aCandidate.mfFirstTold = false;
    }
    aCandidate.mTaken += aPacket;
    aCandidate.mTotal += static_cast<unsigned>(aPacket.size());
    const unsigned whole = aCandidate.mFirst + aCandidate.mSecond;
    if (!aCandidate.mfFirstTold && aCandidate.mTaken.size() >= aCandidate.mFirst) {
        aCandidate.mfFirstTold = true;
        mModelJournal.push_back(name + " got " + aCandidate.mTaken.substr(0, aCandidate.mFirst));
    }
    if (aCandidate.mTaken.size() < whole) {
        return aCandidate.mTotal >= aCandidate.mLimit ? kFailed : kInProgress;
    }
    mModelJournal.push_back(name + (aCandidate.mfSkips ? " passed over " + std::to_string(aCandidate.mSecond)
                                                       : " got " + aCandidate.mTaken.substr(0, whole)));
    return aCandidate.mfFails ? kFailed : kCompleted;
}

int PacketsSubject::TakeAll(const std::string& aPacket, bool afLost) {
    for (std::size_t i = 0; i < mCandidates.size();) {
        const int status = Take(mCandidates[i], aPacket, afLost);
        if (status == kCompleted) {
            mWinner = mCandidates[i].mName;
            Met("a race is won");
            return kCompleted;
        }
        if (status == kInProgress) {
            ++i;
            continue;
        }
        mModelJournal.push_back(std::string(1, mCandidates[i].mName) + " deleted");
        mCandidates.erase(mCandidates.begin() + static_cast<std::ptrdiff_t>(i));
        Met("a candidate leaves a race");
    }
    return mCandidates.empty() ? kFailed : kInProgress;
}

void PacketsSubject::PushPacket(const Operation& anOperation) {
    if (mRace == nullptr) {
        return;
    }
    const std::string packet = LettersOf(anOperation.mA % 8, mPackets++);
    const bool fLost = anOperation.mB % 6 == 5;
    const int status = mRace->AddPacket(packet.data(), static_cast<uint32>(packet.size()), fLost);
    if (mStatus == kInProgress) {
        mStatus = TakeAll(packet, fLost);
        Met(mStatus == kFailed ? "a race is lost by all" : "a packet is raced on");
    }
    Agree("the status of the race", static_cast<int>(status), mStatus);
    Compare("after a packet");
}

void PacketsSubject::CloseRace() {
    if (mRace == nullptr) {
        return;
    }
    const Record record(mRace->Close());
    if (mWinner != '\0') {
        mModelJournal.push_back(std::string(1, mWinner) + " closed");
    }
    Agree("the race has a record", record != nullptr, mWinner != '\0');
    Compare("after closing a race");
    EndRace();
}

void PacketsSubject::EndRace() {
    mRace.reset();
    for (const Candidate& candidate : mCandidates) {
        mModelJournal.push_back(std::string(1, candidate.mName) + " deleted");
    }
    mCandidates.clear();
    Compare("after a race is gone");
}

void PacketsSubject::Compare(const std::string& aWhen) {
    Agree("what the candidates met with " + aWhen, mJournal, mModelJournal);
    mJournal.clear();
    mModelJournal.clear();
}
