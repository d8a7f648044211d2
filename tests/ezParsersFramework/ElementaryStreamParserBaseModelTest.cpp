#include "ez/ElementaryStreamParser.h"

#include "ezPlatform/media/MediaInfo.h"

#include "support/Catchers.h"
#include "support/Record.h"
#include "support/ScriptedEltStreamParser.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

// What a parser and a race of parsers give for packets, foretold from the flat bytes alone.

namespace {

using Parser = ezElementaryStreamParser;
using Satisfied = ScriptedEltStreamParser::Satisfied;
using Texts = std::vector<std::string>;

struct Packet {
    std::string mBytes;
    bool mfLost;
};

std::string RandomBytes(std::size_t aSize) {
    return *rc::gen::container<std::string>(aSize, rc::gen::arbitrary<char>());
}

bool OneInEight() {
    return *rc::gen::weightedElement<bool>({{7, false}, {1, true}});
}

/// Cuts a flat buffer anywhere, also into packets of nothing.
std::vector<Packet> RandomCuts(const std::string& aBytes, bool afLosses) {
    std::vector<Packet> packets;
    const std::size_t largest = *rc::gen::element<std::size_t>(1, 2, 3, 7, 16, 100, 1000);
    for (std::size_t position = 0; position < aBytes.size();) {
        if (OneInEight()) {
            packets.push_back({"", afLosses && OneInEight()});
        }
        const std::size_t size =
            std::min(*rc::gen::inRange<std::size_t>(1, largest + 1), aBytes.size() - position);
        packets.push_back({aBytes.substr(position, size), afLosses && OneInEight()});
        position += size;
    }
    return packets;
}

/// Only the steps of a format that keeps its side: requests of something, then a decision.
EltScript RandomScript() {
    EltScript script;
    const int requests = *rc::gen::inRange(1, 12);
    for (int i = 0; i < requests; ++i) {
        EltStep step;
        step.mVerb = *rc::gen::element(EltStep::Read, EltStep::Append, EltStep::Skip, EltStep::SkipAppended);
        step.mSize = *rc::gen::inRange<uint32>(1, *rc::gen::element<uint32>(2, 5, 80));
        script.push_back(step);
    }
    script.push_back(*rc::gen::arbitrary<bool>() ? EltStep::OfCompletion() : EltStep::OfFailure());
    return script;
}

/// What a script comes to on flat bytes: every request, where it ends, and the decision after the last.
struct Foretold {
    struct Request {
        std::size_t mEnd;
        Satisfied mSatisfied;
    };
    std::vector<Request> mRequests;
    Parser::parsing_status_t mDecision = Parser::MSS_IN_PROGRESS;

    std::size_t DecisionEnd() const { return mRequests.back().mEnd; }
};

/// @param aFlat  long enough for the whole script
Foretold Foretell(const EltScript& aScript, const std::string& aFlat) {
    Foretold foretold;
    std::size_t blockStart = 0;
    std::size_t end = 0;
    bool fAfterSkip = false;
    for (const EltStep& step : aScript) {
        if (step.mVerb == EltStep::Complete || step.mVerb == EltStep::Fail) {
            foretold.mDecision =
                step.mVerb == EltStep::Fail ? Parser::MSS_UNRECOVERABLE_ERROR : Parser::MSS_COMPLETED;
            return foretold;
        }
        const bool fAppended = step.mVerb == EltStep::Append || step.mVerb == EltStep::SkipAppended;
        const bool fSkip = step.mVerb == EltStep::Skip || step.mVerb == EltStep::SkipAppended;
        if (!fAppended || fAfterSkip) {
            blockStart = end;
        }
        end += step.mSize;
        const std::size_t size = end - blockStart;
        foretold.mRequests.push_back(
            {end, {fSkip, static_cast<uint32>(size), fSkip ? "" : aFlat.substr(blockStart, size)}});
        fAfterSkip = fSkip;
    }
    return foretold;
}

std::size_t SizeOf(const EltScript& aScript) {
    std::size_t size = 0;
    for (const EltStep& step : aScript) {
        size += step.mSize;
    }
    return size;
}

/// The parser's state after each packet, from the rules alone.
class Model {
public:
    Model(EltScript aScript, uint32 aLimit) : mScript(std::move(aScript)), mLimit(aLimit) {}

    void Take(const Packet& aPacket, const std::string& aFlatFromHere) {
        if (mStatus != Parser::MSS_IN_PROGRESS) {
            return;
        }
        if (aPacket.mfLost || mTotal == 0) {
            // A start at this packet; one at the very first says the same as Open.
            mForetold = Foretell(mScript, aFlatFromHere);
            mStart = mTotal;
            mNext = 0;
        }
        mTotal += aPacket.mBytes.size();
        while (mNext < mForetold.mRequests.size() && mForetold.mRequests[mNext].mEnd <= mTotal - mStart) {
            mSatisfied.push_back(mForetold.mRequests[mNext++].mSatisfied);
        }
        const bool fDecided = mNext == mForetold.mRequests.size();
        if (fDecided) {
            mStatus = mForetold.mDecision;
            mLine = std::string("ElementaryStreamParser: 'Scripted' Parsing ") +
                    (mStatus == Parser::MSS_COMPLETED ? "completed" : "failed") + " with " +
                    std::to_string(mStart + mForetold.DecisionEnd()) + " read bytes\n";
        } else if (mTotal >= mLimit) {
            mStatus = Parser::MSS_UNRECOVERABLE_ERROR;
            mLine = "ElementaryStreamParser: 'Scripted' total read size " + std::to_string(mTotal) +
                    " greater than limit " + std::to_string(mLimit) + ", assume parsing failed\n";
        }
    }

    Parser::parsing_status_t Status() const { return mStatus; }
    std::size_t Total() const { return mTotal; }
    const std::vector<Satisfied>& AllSatisfied() const { return mSatisfied; }
    Texts Lines() const { return mLine.empty() ? Texts() : Texts{mLine}; }

private:
    EltScript mScript;
    std::size_t mLimit;
    Foretold mForetold;
    std::size_t mStart = 0;
    std::size_t mNext = 0;
    std::size_t mTotal = 0;
    Parser::parsing_status_t mStatus = Parser::MSS_IN_PROGRESS;
    std::vector<Satisfied> mSatisfied;
    std::string mLine;
};

void CompareWithModel(const EltScript& aScript, uint32 aLimit, bool afLosses) {
    const std::size_t needed = SizeOf(aScript);
    const std::string flat = RandomBytes(needed + *rc::gen::inRange<std::size_t>(0, 50));
    const std::vector<Packet> packets = RandomCuts(flat, afLosses);
    const std::string padded = flat + std::string(needed, '\0'); // a late start is foretold beyond the end
    const LogCatcher log;
    ScriptedEltStreamParser parser(aScript, aLimit);
    parser.Open();
    Model model(aScript, aLimit);
    std::size_t position = 0;
    for (const Packet& packet : packets) {
        model.Take(packet, padded.substr(position));
        position += packet.mBytes.size();
        RC_ASSERT(parser.Push(packet.mBytes, packet.mfLost) == model.Status());
        RC_ASSERT(parser.TotalReadSize() == model.Total());
        RC_ASSERT(parser.mSatisfied == model.AllSatisfied());
        RC_ASSERT(log.Texts() == model.Lines());
        RC_ASSERT(parser.ReadCurrentSize() <= parser.ReadRequestSize());
        RC_ASSERT(parser.IsSkipping() || parser.ReadBufferSize() >= parser.ReadRequestSize());
    }
}

} // namespace

// A record is what the satisfied bytes make of it, so equal bytes are an equal record.
RC_GTEST_PROP(ElementaryStreamParserModel, AnyCutSatisfiesTheSameRequestsWithTheSameBytes, ()) {
    CompareWithModel(RandomScript(), 0xFFFFFFFF, false);
}

RC_GTEST_PROP(ElementaryStreamParserModel, AnyCutMeetsTheLimitAtTheEndOfAPacket, ()) {
    CompareWithModel(RandomScript(), *rc::gen::inRange<uint32>(0, 120), false);
}

RC_GTEST_PROP(ElementaryStreamParserModel, LostPacketsRestartAtTheirPacket, ()) {
    CompareWithModel(RandomScript(), *rc::gen::element<uint32>(60, 0xFFFFFFFF), true);
}

// ---- the race ----

namespace {

/// A format all of whose requests and decisions hang on the bytes that it has read, and on its own seed.
class ByteDrivenParser : public ezElementaryStreamParser {
public:
    ByteDrivenParser(const char* aName, uint32 aLimit, uint32 aSeed, bool afMayComplete)
        : ezElementaryStreamParser(aName, aLimit, nullptr, new ezMediaInfo),
          mSeed(aSeed),
          mfMayComplete(afMayComplete) {}

    parsing_status_t StartParsing(bool /*afFromError*/) override {
        mDigest = mSeed;
        RequestRead(1 + mSeed % 3);
        return MSS_IN_PROGRESS;
    }

    parsing_status_t ContinueParsing(const unsigned char* aBuffer, uint32 aSize) override {
        Mix(aSize);
        for (uint32 i = 0; !mSkipRead && i < aSize; ++i) {
            Mix(aBuffer[i]);
        }
        GetMediaInfo()->Set(kezInfo_BitRate, mDigest, true);
        const uint32 size = 1 + (mDigest >> 8) % 9;
        switch ((mDigest >> 16) % 12) {
        case 0:
            return MSS_UNRECOVERABLE_ERROR;
        case 1:
            GetMediaInfo()->Set(kezInfo_MimeType, GetName(), true);
            return mfMayComplete ? MSS_COMPLETED : MSS_UNRECOVERABLE_ERROR;
        case 2:
        case 3:
        case 4:
            RequestSkip(size);
            break;
        case 5:
        case 6:
            RequestAppend(size);
            break;
        default:
            RequestRead(size);
        }
        return MSS_IN_PROGRESS;
    }

private:
    void Mix(uint32 aValue) {
        mDigest = (mDigest ^ aValue) * UINT32_C(0x9E3779B1);
        mDigest ^= mDigest >> 15;
    }

    uint32 mSeed;
    bool mfMayComplete;
    uint32 mDigest = 0;
};

struct Runner {
    std::string mName;
    uint32 mLimit;
    uint32 mSeed;
    bool mfMayComplete;

    Parser* Make() const { return new ByteDrivenParser(mName.c_str(), mLimit, mSeed, mfMayComplete); }
};

/// What a candidate comes to when it has the bytes for itself, one at a time and without a limit.
struct Alone {
    std::size_t mEnd = SIZE_MAX; ///< bytes up to the decision
    Parser::parsing_status_t mDecision = Parser::MSS_IN_PROGRESS;
    std::string mRecord;
};

Alone RunAlone(const Runner& aRunner, const std::string& aFlat) {
    ByteDrivenParser parser(aRunner.mName.c_str(), 0xFFFFFFFF, aRunner.mSeed, aRunner.mfMayComplete);
    parser.Open();
    Alone alone;
    for (std::size_t i = 0; i < aFlat.size() && alone.mDecision == Parser::MSS_IN_PROGRESS; ++i) {
        alone.mDecision = parser.AddPacket(&aFlat[i], 1, false);
        alone.mEnd = i + 1;
    }
    const Record record(parser.Close());
    alone.mRecord = DumpRecord(record.get());
    return alone;
}

struct RaceResult {
    Parser::parsing_status_t mStatus = Parser::MSS_IN_PROGRESS;
    std::string mRecord;
    Texts mLeaving; ///< the names in the order of their removal

    bool operator==(const RaceResult& anOther) const {
        return mStatus == anOther.mStatus && mRecord == anOther.mRecord && mLeaving == anOther.mLeaving;
    }
};

std::ostream& operator<<(std::ostream& aStream, const RaceResult& aResult) {
    aStream << "status " << aResult.mStatus << ", record " << aResult.mRecord << ", leaving";
    for (const std::string& name : aResult.mLeaving) {
        aStream << " " << name;
    }
    return aStream;
}

RaceResult Race(const std::vector<Runner>& aRunners, const std::vector<Packet>& aPackets) {
    const std::string before = "ElementaryStreamParser: ezUndeterminedEltStreamParser remove candidate '";
    const LogCatcher log;
    ezUndeterminedEltStreamParser race(nullptr, nullptr);
    for (const Runner& runner : aRunners) {
        race.AddCandidate(runner.Make());
    }
    race.Open();
    RaceResult result;
    for (const Packet& packet : aPackets) {
        result.mStatus =
            race.AddPacket(packet.mBytes.data(), static_cast<uint32>(packet.mBytes.size()), false);
    }
    const Record record(race.Close());
    result.mRecord = DumpRecord(record.get());
    for (const std::string& line : log.Texts()) {
        if (line.compare(0, before.size(), before) == 0) {
            result.mLeaving.push_back(line.substr(before.size(), line.size() - before.size() - 2));
        }
    }
    return result;
}

/// The same from what each candidate does alone: packet by packet, in the order of the candidates.
RaceResult ForetellRace(const std::vector<Runner>& aRunners, const std::vector<Alone>& anAlone,
                        const std::vector<Packet>& aPackets) {
    RaceResult result;
    result.mRecord = "null\n";
    std::vector<bool> gone(aRunners.size(), false);
    std::size_t total = 0;
    for (const Packet& packet : aPackets) {
        if (result.mStatus != Parser::MSS_IN_PROGRESS) {
            break;
        }
        total += packet.mBytes.size();
        for (std::size_t i = 0; i < aRunners.size() && result.mStatus == Parser::MSS_IN_PROGRESS; ++i) {
            const bool fDecided = anAlone[i].mDecision != Parser::MSS_IN_PROGRESS && anAlone[i].mEnd <= total;
            if (gone[i]) {
                continue;
            }
            if (fDecided && anAlone[i].mDecision == Parser::MSS_COMPLETED) {
                result.mStatus = Parser::MSS_COMPLETED;
                result.mRecord = anAlone[i].mRecord;
            } else if (fDecided || total >= aRunners[i].mLimit) {
                gone[i] = true;
                result.mLeaving.push_back(aRunners[i].mName);
            }
        }
        if (result.mStatus == Parser::MSS_IN_PROGRESS && std::count(gone.begin(), gone.end(), false) == 0) {
            result.mStatus = Parser::MSS_UNRECOVERABLE_ERROR;
        }
    }
    return result;
}

std::vector<Runner> RandomRunners(bool afLimits) {
    std::vector<Runner> runners;
    const int count = *rc::gen::inRange(1, 7);
    for (int i = 0; i < count; ++i) {
        const uint32 limit = afLimits ? *rc::gen::inRange<uint32>(1, 200) : 0xFFFFFFFF;
        runners.push_back({std::string(1, static_cast<char>('A' + i)), limit, *rc::gen::arbitrary<uint32>(),
                           *rc::gen::arbitrary<bool>()});
    }
    return runners;
}

std::vector<Alone> RunAllAlone(const std::vector<Runner>& aRunners, const std::string& aFlat) {
    std::vector<Alone> alone;
    for (const Runner& runner : aRunners) {
        alone.push_back(RunAlone(runner, aFlat));
    }
    return alone;
}

void CompareRace(bool afLimits) {
    const std::string flat = RandomBytes(*rc::gen::inRange<std::size_t>(1, 300));
    const std::vector<Runner> runners = RandomRunners(afLimits);
    const std::vector<Packet> packets = RandomCuts(flat, false);
    const std::vector<Alone> alone = RunAllAlone(runners, flat);
    RC_ASSERT(Race(runners, packets) == ForetellRace(runners, alone, packets));
}

} // namespace

RC_GTEST_PROP(UndeterminedEltStreamParserModel, ARaceIsWhatItsCandidatesDoAlone, ()) {
    CompareRace(false);
}

RC_GTEST_PROP(UndeterminedEltStreamParserModel, ARaceKeepsTheLimitOfEachCandidate, ()) {
    CompareRace(true);
}

// Where two would win, or two leave, within one packet, the order of registration decides; of formats that do
// not take each other's streams there is only one that can win, and no cut changes that.
RC_GTEST_PROP(UndeterminedEltStreamParserModel, AnyCutGivesTheSameWinnerAndRecordWhenOneCanWin, ()) {
    const std::string flat = RandomBytes(*rc::gen::inRange<std::size_t>(100, 400));
    std::vector<Runner> runners = RandomRunners(false);
    const std::size_t chosen = *rc::gen::inRange<std::size_t>(0, runners.size());
    for (std::size_t i = 0; i < runners.size(); ++i) {
        runners[i].mfMayComplete = i == chosen;
    }
    const RaceResult whole = Race(runners, {{flat, false}});
    const RaceResult cut = Race(runners, RandomCuts(flat, false));
    RC_ASSERT(cut.mRecord == whole.mRecord);
    RC_ASSERT(cut.mStatus == whole.mStatus);
}
