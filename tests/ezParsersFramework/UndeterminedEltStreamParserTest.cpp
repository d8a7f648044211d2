#include "ez/ElementaryStreamParser.h"

#include "ezPlatform/media/MediaInfo.h"

#include "support/Catchers.h"
#include "support/Record.h"
#include "support/ScriptedEltStreamParser.h"
#include "support/Str.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using Parser = ezElementaryStreamParser;
using Race = ezUndeterminedEltStreamParser;
using Texts = std::vector<std::string>;

const char* const kOpenAssertion = "!mIsOpen @ ElementaryStreamParser";
const char* const kFalseAssertion = "false @ ElementaryStreamParser";

std::string RemovedLine(const char* aName) {
    return std::string("ElementaryStreamParser: ezUndeterminedEltStreamParser remove candidate '") + aName +
           "'\n";
}

std::string RemainingLine(const char* aNames) {
    return std::string("ElementaryStreamParser: ezUndeterminedEltStreamParser remaining candidates ") +
           aNames + "\n";
}

std::string EndLine(const char* aHow) {
    return std::string("ElementaryStreamParser: ezUndeterminedEltStreamParser'Undetermined' Parsing ") +
           aHow + "\n"; // no blank before the name
}

std::string OwnLine(const char* aName, const char* aHow, int aCount) {
    return std::string("ElementaryStreamParser: '") + aName + "' Parsing " + aHow + " with " +
           std::to_string(aCount) + " read bytes\n";
}

EltScript DecidingAfter(uint32 aSize, const EltStep& aDecision) {
    return {EltStep::OfRead(aSize), aDecision};
}

EltScript WinningAfter(uint32 aSize) {
    return DecidingAfter(aSize, EltStep::OfCompletion());
}

EltScript LosingAfter(uint32 aSize) {
    return DecidingAfter(aSize, EltStep::OfFailure());
}

EltScript WaitingForMore() {
    return {EltStep::OfRead(1000000)};
}

ezMediaInfo* InfoOf(const char* aTitle) {
    ezMediaInfo* info = new CountedMediaInfo;
    info->Set(kezInfo_ClassName, aTitle, true);
    return info;
}

/// A race whose candidates keep one journal.
class JournalledRace {
public:
    explicit JournalledRace(ezMediaInfo* aTemplate = nullptr)
        : mRace(std::make_unique<Race>(nullptr, aTemplate)) {}

    ScriptedEltStreamParser* Add(const char* aName, EltScript aScript, ezMediaInfo* anInfo = nullptr,
                                 uint32 aLimit = 0xFFFFFFFF) {
        auto* candidate = new ScriptedEltStreamParser(std::move(aScript), aLimit, aName, anInfo, &mJournal);
        mRace->AddCandidate(candidate);
        return candidate;
    }

    Parser::parsing_status_t Push(std::size_t aSize, bool afLost = false) {
        const std::string bytes(aSize, 'x');
        return mRace->AddPacket(bytes.data(), static_cast<uint32>(aSize), afLost);
    }

    Race* operator->() const { return mRace.get(); }
    std::string Candidates() const { return Str(mRace->GetCandidateList()); }
    Texts TakeJournal() { return std::exchange(mJournal, Texts()); }
    void End() { mRace.reset(); }

private:
    Texts mJournal;
    std::unique_ptr<Race> mRace;
};

} // namespace

// ---- what stands where ----

TEST(UndeterminedEltStreamParser, BeginsIdleWithoutCandidatesAndLimit) {
    auto* streamInfo = new ezElementaryStreamInfo("audio", 7);
    auto* mediaInfo = new CountedMediaInfo;
    {
        const Race race(streamInfo, mediaInfo);
        EXPECT_STREQ(race.GetName(), "Undetermined");
        EXPECT_EQ(race.GetMaxReadSize(), 0U);
        EXPECT_EQ(race.GetEltStreamInfo(), streamInfo);
        EXPECT_EQ(race.GetMediaInfo(), mediaInfo);
        EXPECT_EQ(race.GetParserStatus(), Parser::MSS_COMPLETED);
        EXPECT_EQ(Str(race.GetCandidateList()), "<none>");
        EXPECT_FALSE(race.Iter_Test());
    }
    EXPECT_EQ(CountedMediaInfo::Count(), 0);
}

TEST(UndeterminedEltStreamParser, NamesItsCandidatesInTheirOrder) {
    JournalledRace race;
    race.Add("A", WaitingForMore());
    EXPECT_EQ(race.Candidates(), "|A|");
    race.Add("B", WaitingForMore());
    race.Add("C", WaitingForMore());
    EXPECT_EQ(race.Candidates(), "|A|B|C|");
}

TEST(UndeterminedEltStreamParser, DestructionDeletesTheCandidatesThatAreLeft) {
    JournalledRace race;
    race.Add("A", WaitingForMore());
    race.Add("B", WaitingForMore());
    race->Open();
    race.TakeJournal();
    race.End();
    EXPECT_EQ(race.TakeJournal(), (Texts{"A deleted", "B deleted"}));
}

TEST(UndeterminedEltStreamParser, ANullCandidateIsIgnored) {
    JournalledRace race;
    race->AddCandidate(nullptr);
    EXPECT_EQ(race.Candidates(), "<none>");
}

TEST(UndeterminedEltStreamParser, ACandidateOfferedWhileOpenIsRefusedAndDeleted) {
    JournalledRace race;
    race.Add("A", WaitingForMore());
    race->Open();
    race.TakeJournal();
    const AssertCatcher assertions;
    race.Add("B", WaitingForMore());
    EXPECT_EQ(assertions.Failures(), AssertCatcher::Noted({kOpenAssertion}));
    EXPECT_EQ(race.TakeJournal(), Texts{"B deleted"});
    EXPECT_EQ(race.Candidates(), "|A|");
    EXPECT_EQ(race->Close(), nullptr);
    race.Add("C", WaitingForMore()); // closed: welcome
    EXPECT_EQ(race.Candidates(), "|A|C|");
    EXPECT_EQ(assertions.Failures(), AssertCatcher::Noted({kOpenAssertion}));
}

TEST(UndeterminedEltStreamParser, SixOperationsAreTheCandidatesOwn) {
    JournalledRace race;
    race.Add("A", WaitingForMore());
    race->Open();
    race.TakeJournal();
    const AssertCatcher assertions;
    Texts expected;
    const auto expectOneMore = [&](const char* anOperation) {
        expected.push_back(kFalseAssertion);
        EXPECT_EQ(assertions.Failures(), AssertCatcher::Noted(expected)) << anOperation;
        EXPECT_EQ(race->GetParserStatus(), Parser::MSS_IN_PROGRESS) << anOperation;
    };
    race->InterruptParsing();
    expectOneMore("InterruptParsing");
    race->ResetParsing(true);
    expectOneMore("ResetParsing");
    race->RequestReadOrSkip(10, false, false);
    expectOneMore("RequestReadOrSkip");
    const unsigned char byte = 0;
    const unsigned char* source = &byte;
    uint32 size = 1;
    race->GetReadData(source, size);
    expectOneMore("GetReadData");
    EXPECT_EQ(source, &byte);
    EXPECT_EQ(size, 1U);
    EXPECT_EQ(race->StartParsing(false), Parser::MSS_UNRECOVERABLE_ERROR);
    expectOneMore("StartParsing");
    EXPECT_EQ(race->ContinueParsing(&byte, 1), Parser::MSS_UNRECOVERABLE_ERROR);
    expectOneMore("ContinueParsing");
    race->RequestRead(1);
    expectOneMore("RequestRead");
    EXPECT_EQ(race.TakeJournal(), Texts());
    EXPECT_EQ(race.Push(10), Parser::MSS_IN_PROGRESS);
}

TEST(UndeterminedEltStreamParser, OpenCloseAndPacketsUseNoneOfTheSix) {
    const AssertCatcher assertions;
    {
        JournalledRace race;
        race.Add("A", WinningAfter(4));
        race->Open();
        race.Push(2);
        race.Push(2, true);
        race.Push(2);
        const Record record(race->Close());
    }
    EXPECT_TRUE(assertions.Failures().empty());
}

// ---- opening ----

TEST(UndeterminedEltStreamParser, WithoutCandidatesNothingHappens) {
    LogCatcher log;
    JournalledRace race;
    race->Open();
    EXPECT_EQ(race->GetParserStatus(), Parser::MSS_COMPLETED);
    EXPECT_EQ(race.Push(100), Parser::MSS_COMPLETED);
    EXPECT_EQ(race->Close(), nullptr);
    EXPECT_TRUE(log.Lines().empty());
}

TEST(UndeterminedEltStreamParser, CandidatesThatDecideAtOnceLeaveEitherWay) {
    LogCatcher log;
    JournalledRace race;
    race.Add("Quick", {EltStep::OfCompletion()});
    race.Add("Stays", WaitingForMore());
    race.Add("Broken", {EltStep::OfFailure()});
    race->Open();
    EXPECT_EQ(race.TakeJournal(),
              (Texts{"Quick opened", "Quick deleted", "Stays opened", "Broken opened", "Broken deleted"}));
    EXPECT_EQ(race->GetParserStatus(), Parser::MSS_IN_PROGRESS);
    EXPECT_EQ(race.Candidates(), "|Stays|");
    EXPECT_EQ(log.Texts(), (Texts{RemovedLine("Quick"), RemovedLine("Broken")}));
    EXPECT_EQ(log.Lines()[0].mLevel, EZLOGLEVEL_DEBUG);
    EXPECT_EQ(log.Lines()[0].mModule, EZLOG_M_PARSERS);
}

TEST(UndeterminedEltStreamParser, WhenAllLeaveAtTheOpeningTheStatusStays) {
    JournalledRace race;
    race.Add("Quick", {EltStep::OfCompletion()}, InfoOf("quick"));
    race.Add("Broken", {EltStep::OfFailure()});
    race->Open();
    EXPECT_EQ(race->GetParserStatus(), Parser::MSS_COMPLETED); // not a failure
    LogCatcher log;
    EXPECT_EQ(race.Push(100), Parser::MSS_COMPLETED);
    EXPECT_EQ(race->Close(), nullptr);
    EXPECT_TRUE(log.Lines().empty());
    EXPECT_EQ(CountedMediaInfo::Count(), 0);
}

TEST(UndeterminedEltStreamParser, EveryCandidateGetsItsOwnCopyOfTheTemplate) {
    ezMediaInfo* model = InfoOf("model");
    JournalledRace race(model);
    auto* first = race.Add("A", WaitingForMore(), InfoOf("A's own"));
    auto* second = race.Add("B", WaitingForMore());
    EXPECT_EQ(CountedMediaInfo::Count(), 2);
    race->Open();
    EXPECT_EQ(CountedMediaInfo::Count(), 1); // A's own has gone, and the copies are plain records
    EXPECT_EQ(DumpRecord(first->GetMediaInfo()), DumpRecord(model));
    EXPECT_EQ(DumpRecord(second->GetMediaInfo()), DumpRecord(model));
    EXPECT_NE(first->GetMediaInfo(), second->GetMediaInfo());
    EXPECT_NE(first->GetMediaInfo(), model);
    EXPECT_EQ(race->GetMediaInfo(), model);
    race.End();
    EXPECT_EQ(CountedMediaInfo::Count(), 0);
}

TEST(UndeterminedEltStreamParser, TheCopyIsThereWhenTheCandidateStarts) {
    class LookingParser : public ScriptedEltStreamParser {
    public:
        using ScriptedEltStreamParser::ScriptedEltStreamParser;
        parsing_status_t StartParsing(bool afFromError) override {
            mSeen = DumpRecord(GetMediaInfo());
            return ScriptedEltStreamParser::StartParsing(afFromError);
        }
        std::string mSeen;
    };
    Race race(nullptr, InfoOf("model"));
    auto* candidate = new LookingParser(WaitingForMore());
    race.AddCandidate(candidate);
    race.Open();
    EXPECT_EQ(candidate->mSeen, DumpRecord(race.GetMediaInfo()));
}

TEST(UndeterminedEltStreamParser, WithoutATemplateCandidatesKeepTheirRecords) {
    JournalledRace race;
    ezMediaInfo* own = InfoOf("own");
    auto* candidate = race.Add("A", WinningAfter(1), own);
    race->Open();
    EXPECT_EQ(candidate->GetMediaInfo(), own);
    EXPECT_EQ(race.Push(1), Parser::MSS_COMPLETED);
    const Record record(race->Close());
    EXPECT_EQ(record.get(), own);
}

// ---- packets ----

TEST(UndeterminedEltStreamParser, EveryCandidateSeesTheWholePacket) {
    JournalledRace race;
    auto* first = race.Add("A", {EltStep::OfRead(3)});
    auto* second = race.Add("B", {EltStep::OfSkip(2), EltStep::OfRead(4)});
    race->Open();
    race.TakeJournal();
    EXPECT_EQ(race->AddPacket("abcdef", 6, false), Parser::MSS_IN_PROGRESS);
    EXPECT_EQ(race.TakeJournal(), (Texts{"A took 6", "B took 6"}));
    EXPECT_EQ(first->mSatisfied,
              (std::vector<ScriptedEltStreamParser::Satisfied>{{false, 3, "abc"}, {false, 3, "def"}}));
    EXPECT_EQ(second->mSatisfied,
              (std::vector<ScriptedEltStreamParser::Satisfied>{{true, 2, ""}, {false, 4, "cdef"}}));
}

TEST(UndeterminedEltStreamParser, OfTwoThatCompleteOnAPacketTheFirstWinsAndTheSecondNeverSeesIt) {
    LogCatcher log;
    JournalledRace race;
    race.Add("First", WinningAfter(8), InfoOf("first"));
    race.Add("Second", WinningAfter(4), InfoOf("second"));
    race->Open();
    race.TakeJournal();
    EXPECT_EQ(race.Push(10), Parser::MSS_COMPLETED);
    EXPECT_EQ(race.TakeJournal(), Texts{"First took 10"});
    EXPECT_EQ(log.Texts(), (Texts{OwnLine("First", "completed", 8), EndLine("completed")}));
    EXPECT_EQ(log.Lines()[1].mLevel, EZLOGLEVEL_DEBUG);
    EXPECT_EQ(log.Lines()[1].mModule, EZLOG_M_PARSERS);
    EXPECT_EQ(race.Candidates(), "|First|Second|");
    const Record record(race->Close());
    EXPECT_EQ(Str(record->GetCString(kezInfo_ClassName, "")), "first");
}

TEST(UndeterminedEltStreamParser, ALaterCandidateWinsOverAnEarlierOneInProgress) {
    JournalledRace race;
    race.Add("Patient", WaitingForMore(), InfoOf("patient"));
    race.Add("Winner", WinningAfter(4), InfoOf("winner"));
    race.Add("Behind", WinningAfter(4), InfoOf("behind"));
    race->Open();
    race.TakeJournal();
    EXPECT_EQ(race.Push(10), Parser::MSS_COMPLETED);
    EXPECT_EQ(race.TakeJournal(), (Texts{"Patient took 10", "Winner took 10"}));
    EXPECT_EQ(race.Candidates(), "|Patient|Winner|Behind|");
    const Record record(race->Close());
    EXPECT_EQ(Str(record->GetCString(kezInfo_ClassName, "")), "winner");
    EXPECT_EQ(race.TakeJournal(), Texts{"Winner closed"}); // those in progress are left alone
}

TEST(UndeterminedEltStreamParser, ALoserIsDeletedAtOnceAndTheRestGoesOn) {
    LogCatcher log;
    JournalledRace race;
    race.Add("MP3", WaitingForMore());
    race.Add("DTS", LosingAfter(4));
    race.Add("AAC", WaitingForMore());
    race->Open();
    race.TakeJournal();
    EXPECT_EQ(race.Push(3), Parser::MSS_IN_PROGRESS);
    EXPECT_TRUE(log.Lines().empty()); // none has left
    race.TakeJournal();
    EXPECT_EQ(race.Push(3), Parser::MSS_IN_PROGRESS);
    EXPECT_EQ(race.TakeJournal(), (Texts{"MP3 took 3", "DTS took 3", "DTS deleted", "AAC took 3"}));
    EXPECT_EQ(log.Texts(),
              (Texts{OwnLine("DTS", "failed", 4), RemovedLine("DTS"), RemainingLine("|MP3|AAC|")}));
    EXPECT_EQ(log.Lines()[2].mLevel, EZLOGLEVEL_DEBUG);
    EXPECT_EQ(log.Lines()[2].mModule, EZLOG_M_PARSERS);
}

TEST(UndeterminedEltStreamParser, TheFirstAndTheLastMayLeaveOnOnePacket) {
    JournalledRace race;
    race.Add("A", LosingAfter(1));
    race.Add("B", LosingAfter(1));
    race.Add("C", WaitingForMore());
    race.Add("D", LosingAfter(1));
    race->Open();
    race.TakeJournal();
    EXPECT_EQ(race.Push(1), Parser::MSS_IN_PROGRESS);
    EXPECT_EQ(race.TakeJournal(),
              (Texts{"A took 1", "A deleted", "B took 1", "B deleted", "C took 1", "D took 1", "D deleted"}));
    EXPECT_EQ(race.Candidates(), "|C|");
}

TEST(UndeterminedEltStreamParser, WhenTheLastOneGoesTheRaceFails) {
    LogCatcher log;
    JournalledRace race;
    race.Add("MP3", LosingAfter(4));
    race.Add("AAC", LosingAfter(4));
    race->Open();
    EXPECT_EQ(race.Push(4), Parser::MSS_UNRECOVERABLE_ERROR);
    EXPECT_EQ(log.Texts(),
              (Texts{OwnLine("MP3", "failed", 4), RemovedLine("MP3"), OwnLine("AAC", "failed", 4),
                     RemovedLine("AAC"), RemainingLine("<none>"), EndLine("failed")}));
    log.Clear();
    EXPECT_EQ(race.Push(4), Parser::MSS_UNRECOVERABLE_ERROR);
    EXPECT_TRUE(log.Lines().empty());
    EXPECT_EQ(race->Close(), nullptr);
}

TEST(UndeterminedEltStreamParser, ALoserAndAWinnerOnOnePacketAreBothLogged) {
    LogCatcher log;
    JournalledRace race;
    race.Add("MP3", LosingAfter(4));
    race.Add("AAC", WinningAfter(6));
    race->Open();
    EXPECT_EQ(race.Push(10), Parser::MSS_COMPLETED);
    EXPECT_EQ(log.Texts(),
              (Texts{OwnLine("MP3", "failed", 4), RemovedLine("MP3"), OwnLine("AAC", "completed", 6),
                     RemainingLine("|AAC|"), EndLine("completed")}));
}

TEST(UndeterminedEltStreamParser, EachCandidateKeepsItsOwnLimit) {
    LogCatcher log;
    JournalledRace race;
    race.Add("Short", WaitingForMore(), nullptr, 10);
    race.Add("Long", WaitingForMore(), nullptr, 20);
    race->Open();
    EXPECT_EQ(race.Push(10), Parser::MSS_IN_PROGRESS);
    EXPECT_EQ(race.Candidates(), "|Long|");
    EXPECT_TRUE(log.Has("ElementaryStreamParser: 'Short' total read size 10 greater than limit 10, assume "
                        "parsing failed\n"));
    EXPECT_EQ(race.Push(10), Parser::MSS_UNRECOVERABLE_ERROR);
}

TEST(UndeterminedEltStreamParser, TheRaceItselfNeitherCountsNorGathers) {
    class BareRace : public Race {
    public:
        using Race::Race;
        bool HasNothing() const {
            return mTotalReadSize == 0 && mReadCurrentSize == 0 && mReadRequestSize == 0 && !mSkipRead &&
                   mReadBufferSize == 0 && mReadBuffer == nullptr;
        }
    };
    BareRace race(nullptr, nullptr);
    race.AddCandidate(new ScriptedEltStreamParser(WaitingForMore()));
    race.Open();
    EXPECT_EQ(race.AddPacket("abc", 3, false), Parser::MSS_IN_PROGRESS); // beyond its own limit of 0
    EXPECT_TRUE(race.HasNothing());
}

TEST(UndeterminedEltStreamParser, EmptyAndNullPacketsAreOfferedToo) {
    JournalledRace race;
    race.Add("A", WaitingForMore());
    race->Open();
    race.TakeJournal();
    EXPECT_EQ(race.Push(0), Parser::MSS_IN_PROGRESS);
    EXPECT_EQ(race->AddPacket(nullptr, 100, false), Parser::MSS_IN_PROGRESS);
    EXPECT_EQ(race.TakeJournal(), (Texts{"A took 0", "A took 100"}));
}

TEST(UndeterminedEltStreamParser, LostPacketsReachEverySurvivor) {
    JournalledRace race;
    auto* first = race.Add("A", WaitingForMore());
    race.Add("B", LosingAfter(2));
    auto* third = race.Add("C", WinningAfter(10));
    race->Open();
    race.Push(4);
    race.TakeJournal();
    EXPECT_EQ(race.Push(6, true), Parser::MSS_IN_PROGRESS); // C has lost its four
    EXPECT_EQ(race.TakeJournal(), (Texts{"A took 6 after a loss", "C took 6 after a loss"}));
    EXPECT_EQ(first->mStarts, (std::vector<bool>{false, true}));
    EXPECT_EQ(third->mStarts, (std::vector<bool>{false, true}));
    EXPECT_EQ(first->TotalReadSize(), 10U);
    EXPECT_EQ(race.Push(4), Parser::MSS_COMPLETED);
}

TEST(UndeterminedEltStreamParser, ARestartMayDecideTheRace) {
    JournalledRace race;
    race.Add("A", WaitingForMore())->mScriptAfterLoss = {EltStep::OfFailure()};
    race.Add("B", WaitingForMore())->mScriptAfterLoss = {EltStep::OfCompletion()};
    race->Open();
    const AssertCatcher assertions;
    EXPECT_EQ(race.Push(6, true), Parser::MSS_COMPLETED);
    EXPECT_EQ(race.Candidates(), "|B|");
    EXPECT_TRUE(assertions.Failures().empty());
}

TEST(UndeterminedEltStreamParser, NoLineBelowItsLevel) {
    LogCatcher log(EZLOGLEVEL_DEBUG);
    JournalledRace race;
    race.Add("A", {EltStep::OfFailure()});
    race.Add("B", LosingAfter(1));
    race->Open();
    EXPECT_EQ(race.Push(1), Parser::MSS_UNRECOVERABLE_ERROR);
    EXPECT_TRUE(log.Lines().empty());
}

// ---- closing ----

TEST(UndeterminedEltStreamParser, ASecondCloseGivesNull) {
    JournalledRace race(InfoOf("model"));
    race.Add("A", WinningAfter(4));
    race->Open();
    race.Push(4);
    const Record record(race->Close());
    EXPECT_NE(record, nullptr);
    EXPECT_EQ(race->Close(), nullptr);
}

TEST(UndeterminedEltStreamParser, CloseBeforeOpenTakesTheFirstCandidateBecauseIdleReadsAsCompleted) {
    JournalledRace race;
    race.Add("A", WaitingForMore(), InfoOf("never opened"));
    race.Add("B", WaitingForMore(), InfoOf("never opened either"));
    const Record record(race->Close());
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(Str(record->GetCString(kezInfo_ClassName, "")), "never opened");
}

TEST(UndeterminedEltStreamParser, CloseBeforeADecisionGivesNullAndKeepsTheCandidates) {
    JournalledRace race(InfoOf("model"));
    race.Add("A", WaitingForMore());
    race.Add("B", WaitingForMore());
    race->Open();
    race.Push(4);
    race.TakeJournal();
    EXPECT_EQ(race->Close(), nullptr);
    EXPECT_EQ(race.TakeJournal(), Texts());
    EXPECT_EQ(race.Candidates(), "|A|B|");
}

TEST(UndeterminedEltStreamParser, CloseTakesNoRecordOfOneThatFailedOutsideTheRace) {
    JournalledRace race;
    auto* candidate = race.Add("A", LosingAfter(4), InfoOf("lost"));
    race->Open();
    EXPECT_EQ(candidate->Push("abcd"), Parser::MSS_UNRECOVERABLE_ERROR);
    EXPECT_EQ(race->Close(), nullptr);
    EXPECT_NE(candidate->GetMediaInfo(), nullptr);
}

TEST(UndeterminedEltStreamParser, TheTemplateIsNotHandedOut) {
    ezMediaInfo* model = InfoOf("model");
    JournalledRace race(model);
    race.Add("A", WinningAfter(4));
    race->Open();
    race.Push(4);
    const Record record(race->Close());
    EXPECT_NE(record.get(), model);
    EXPECT_EQ(DumpRecord(record.get()), DumpRecord(model));
    EXPECT_EQ(race->GetMediaInfo(), model);
}

TEST(UndeterminedEltStreamParser, TheWinnersRecordOutlivesTheRace) {
    Record record;
    {
        JournalledRace race;
        race.Add("A", WinningAfter(4), InfoOf("won"));
        race->Open();
        race.Push(4);
        record.reset(race->Close());
    }
    EXPECT_EQ(Str(record->GetCString(kezInfo_ClassName, "")), "won");
}

TEST(UndeterminedEltStreamParser, ARaceCanBeRunAgainByThoseWhoAreLeft) {
    JournalledRace race(InfoOf("model"));
    race.Add("Loser", LosingAfter(2));
    race.Add("Winner", WinningAfter(4));
    race.Add("Other", WinningAfter(8));
    race->Open();
    EXPECT_EQ(race.Push(4), Parser::MSS_COMPLETED);
    const Record first(race->Close());
    race.Add("Late", WinningAfter(2));
    race.TakeJournal();
    race->Open();
    EXPECT_EQ(race->GetParserStatus(), Parser::MSS_IN_PROGRESS);
    EXPECT_EQ(race.TakeJournal(), (Texts{"Winner opened", "Other opened", "Late opened"}));
    EXPECT_EQ(race.Push(3), Parser::MSS_COMPLETED);
    EXPECT_EQ(race.TakeJournal(), (Texts{"Winner took 3", "Other took 3", "Late took 3"}));
    const Record second(race->Close());
    EXPECT_EQ(DumpRecord(second.get()), DumpRecord(race->GetMediaInfo()));
}

TEST(UndeterminedEltStreamParser, AFailedRaceOpenedAgainWithoutCandidatesStaysFailed) {
    JournalledRace race;
    race.Add("A", LosingAfter(1));
    race->Open();
    EXPECT_EQ(race.Push(1), Parser::MSS_UNRECOVERABLE_ERROR);
    EXPECT_EQ(race->Close(), nullptr);
    race->Open();
    EXPECT_EQ(race->GetParserStatus(), Parser::MSS_UNRECOVERABLE_ERROR); // as it was
    EXPECT_EQ(race->Close(), nullptr);
    race.Add("B", WinningAfter(1), InfoOf("won"));
    race->Open();
    EXPECT_EQ(race.Push(1), Parser::MSS_COMPLETED);
    const Record record(race->Close());
    EXPECT_NE(record, nullptr);
}

TEST(UndeterminedEltStreamParser, AWonRaceOpenedAgainWithoutCandidatesStaysCompleted) {
    JournalledRace race;
    race.Add("A", {EltStep::OfRead(1), EltStep::OfCompletion()}, InfoOf("won"));
    race->Open();
    ASSERT_EQ(race.Push(1), Parser::MSS_COMPLETED);
    const Record record(race->Close());
    race->Iter_Init();
    race->CheckCurCandidate(); // the winner is idle now, and goes
    race->Open();
    EXPECT_EQ(race->GetParserStatus(), Parser::MSS_COMPLETED); // as it was: no failure yet
    EXPECT_EQ(race->Close(), nullptr);
}

// ---- the walk ----

TEST(UndeterminedEltStreamParser, AddingACandidateEndsAWalk) {
    JournalledRace race;
    for (const char* name : {"A", "B", "C", "D"}) {
        race.Add(name, WaitingForMore());
    }
    race->Iter_Init();
    race->Iter_Next();
    race.Add("E", WaitingForMore()); // the nodes move
    EXPECT_FALSE(race->Iter_Test());
    race->Iter_Next();
    EXPECT_FALSE(race->Iter_Test());
    race->CheckCurCandidate();
    EXPECT_EQ(race.Candidates(), "|A|B|C|D|E|");
}

TEST(UndeterminedEltStreamParser, AWalkSurvivesTheDeletionOfTheOneItIsAt) {
    class WalkingRace : public Race {
    public:
        using Race::Race;
        const char* Current() const { return mCurCandidate != nullptr ? mCurCandidate->GetName() : ""; }
    };
    WalkingRace race(nullptr, nullptr);
    for (const char* name : {"A", "B", "C"}) {
        race.AddCandidate(new ScriptedEltStreamParser(WaitingForMore(), 1000, name));
    }
    race.Open();
    Texts visited;
    for (race.Iter_Init(); race.Iter_Test(); race.Iter_Next()) {
        visited.push_back(race.Current());
        race.CheckCurCandidate(); // all are in progress
    }
    EXPECT_EQ(visited, (Texts{"A", "B", "C"}));
    EXPECT_EQ(Str(race.GetCandidateList()), "|A|B|C|");
    EXPECT_STREQ(race.Current(), "");
    race.CheckCurCandidate(); // at the end: nothing to look at

    race.Iter_Init();
    race.Iter_Next();
    EXPECT_STREQ(race.Current(), "B");
}

TEST(UndeterminedEltStreamParser, CheckCurCandidateRemovesWhoeverIsNotInProgress) {
    JournalledRace race;
    race.Add("A", WaitingForMore()); // idle: not opened yet
    race.Add("B", WaitingForMore());
    race->Iter_Init();
    race->CheckCurCandidate();
    EXPECT_EQ(race.TakeJournal(), Texts{"A deleted"});
    race->CheckCurCandidate(); // it has gone already
    race->Iter_Next();
    EXPECT_TRUE(race->Iter_Test());
    race->CheckCurCandidate();
    EXPECT_EQ(race.TakeJournal(), Texts{"B deleted"});
    race->Iter_Next();
    EXPECT_FALSE(race->Iter_Test());
}

TEST(UndeterminedEltStreamParser, FreeCandidateDeletesThroughTheVirtualDestructor) {
    Texts journal;
    Race::FreeCandidate(new ScriptedEltStreamParser(WaitingForMore(), 1000, "A", nullptr, &journal));
    EXPECT_EQ(journal, Texts{"A deleted"});
    Race::FreeCandidate(nullptr);
}
