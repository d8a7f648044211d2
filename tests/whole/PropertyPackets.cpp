#include "PropertyPackets.h"

#include "PropertyTypes.h"

#include "ez/StreamMediaParserStream.h"
#include "support/Record.h"
#include "support/Str.h"

#include <algorithm>
#include <utility>

namespace {

constexpr int kCompleted = FormatModel::kCompleted;
constexpr int kInProgress = FormatModel::kInProgress;
constexpr int kFailed = FormatModel::kFailed;

const std::size_t kLengths[] = {0, 1, 100, 8191, 8192, 8193, 30000};
const std::size_t kPackets[] = {10000, 100, 1000, 8192, 333};
const std::size_t kWindows[] = {100000, 20000, 9000, 8192};
const std::size_t kReads[] = {10000, 1000, 8192, 77};

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

std::vector<FormatPlan> PacketsSubject::CandidatesOf(const Operation& anOperation) {
    std::vector<FormatPlan> candidates;
    for (const unsigned number : {anOperation.mA, anOperation.mB, anOperation.mC}) {
        candidates.push_back(FormatPlan::Of(static_cast<char>('A' + candidates.size()), number));
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
        for (const FormatPlan& candidate : CandidatesOf(anOperation)) {
            text << " " << candidate.InWords();
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
    mRace = std::make_unique<ezUndeterminedEltStreamParser>(nullptr, new ezMediaInfo);
    for (const FormatPlan& plan : CandidatesOf(anOperation)) {
        mRace->AddCandidate(new PlannedFormat(plan, nullptr, mJournal));
        mCandidates.emplace_back(plan, mModelJournal);
        mCandidates.back().Open();
    }
    mRace->Open();
    mStatus = mCandidates.empty() ? kCompleted : kInProgress;
    mWinner = '\0';
    mPackets = 0;
    Compare("after opening a race");
}

int PacketsSubject::TakeAll(const std::string& aPacket, bool afLost) {
    for (std::size_t i = 0; i < mCandidates.size();) {
        const int status = mCandidates[i].Take(aPacket, afLost);
        if (status == kCompleted) {
            mWinner = mCandidates[i].Name();
            Met("a race is won");
            return kCompleted;
        }
        if (status == kInProgress) {
            ++i;
            continue;
        }
        mCandidates[i].Note("deleted");
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
    for (FormatModel& candidate : mCandidates) {
        candidate.Note("deleted");
    }
    mCandidates.clear();
    Compare("after a race is gone");
}

std::string PacketsSubject::ModelCandidates() const {
    std::string names;
    for (const FormatModel& candidate : mCandidates) {
        names += std::string(1, candidate.Name()) + "|";
    }
    return names.empty() ? "<none>" : "|" + names;
}

void PacketsSubject::Compare(const std::string& aWhen) {
    if (mRace != nullptr) {
        Agree("the candidates " + aWhen, Str(mRace->GetCandidateList()), ModelCandidates());
    }
    Agree("what the candidates met with " + aWhen, mJournal, mModelJournal);
    mJournal.clear();
    mModelJournal.clear();
}
