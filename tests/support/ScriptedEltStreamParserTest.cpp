#include "support/ScriptedEltStreamParser.h"

#include "support/Record.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

TEST(ScriptedEltStreamParser, PlaysItsStepsAndNotesWhatSatisfiesThem) {
    ScriptedEltStreamParser parser(
        {EltStep::OfRead(2), EltStep::OfAppend(1), EltStep::OfSkip(3), EltStep::OfCompletion()});
    parser.Open();
    EXPECT_EQ(parser.Push("abcdefgh"), ezElementaryStreamParser::MSS_COMPLETED);
    EXPECT_EQ(parser.mSatisfied, (std::vector<ScriptedEltStreamParser::Satisfied>{
                                     {false, 2, "ab"}, {false, 3, "abc"}, {true, 3, ""}}));
    EXPECT_EQ(parser.mStarts, std::vector<bool>{false});
}

TEST(ScriptedEltStreamParser, RepeatsItsLastStep) {
    ScriptedEltStreamParser parser({EltStep::OfRead(2)});
    parser.Open();
    EXPECT_EQ(parser.Push("abcdef"), ezElementaryStreamParser::MSS_IN_PROGRESS);
    EXPECT_EQ(parser.mSatisfied.size(), 3U);
}

TEST(ScriptedEltStreamParser, PlaysItsOtherScriptAfterALoss) {
    ScriptedEltStreamParser parser({EltStep::OfRead(2), EltStep::OfCompletion()});
    parser.mScriptAfterLoss = {EltStep::OfRead(1), EltStep::OfFailure()};
    parser.Open();
    EXPECT_EQ(parser.Push("a", true), ezElementaryStreamParser::MSS_UNRECOVERABLE_ERROR);
    EXPECT_EQ(parser.mStarts, (std::vector<bool>{false, true}));
    parser.Open();
    EXPECT_EQ(parser.Push("ab"), ezElementaryStreamParser::MSS_COMPLETED);
}

TEST(ScriptedEltStreamParser, KeepsAJournalOfTheCalls) {
    std::vector<std::string> journal;
    {
        ScriptedEltStreamParser parser({EltStep::OfRead(2)}, 100, "A", new CountedMediaInfo, &journal);
        EXPECT_EQ(CountedMediaInfo::Count(), 1);
        parser.Open();
        parser.Push("a");
        parser.Push("", true);
        const Record record(parser.Close());
        EXPECT_NE(record, nullptr);
    }
    EXPECT_EQ(CountedMediaInfo::Count(), 0);
    EXPECT_EQ(journal, (std::vector<std::string>{"A opened", "A took 1", "A took 0 after a loss", "A closed",
                                                 "A deleted"}));
}
