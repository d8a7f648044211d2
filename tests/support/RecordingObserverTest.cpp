#include "support/RecordingObserver.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

using Lines = std::vector<std::string>;

TEST(RecordingObserver, WritesEachCallAndIndentsItByThePairsAroundIt) {
    RecordingObserver observer;
    Lines called;
    observer.mOnCall = [&](const std::string& anOperation) { called.push_back(anOperation); };
    observer.RequestBegan(ezParseRequest::Adjust, nullptr);
    observer.PassBegan(ezParsePass::Failed);
    observer.TypeBegan("t");
    observer.MediaMapperChanged("br", nullptr, "7");
    observer.TypeEnded("t", ezTypeResult::TriedBefore);
    observer.PassEnded(ezParsePass::Failed, true);
    observer.RequestEnded(ezParseRequest::Adjust, nullptr);
    EXPECT_EQ(observer.Text(), "RequestBegan Adjust -\n"
                               "  PassBegan Failed\n"
                               "    TypeBegan t\n"
                               "      MediaMapperChanged br - 7\n"
                               "    TypeEnded t TriedBefore\n"
                               "  PassEnded Failed answered\n"
                               "RequestEnded Adjust -\n");
    EXPECT_EQ(observer.LinesOf({"PassBegan", "TypeEnded"}),
              (Lines{"PassBegan Failed", "TypeEnded t TriedBefore"}));
    EXPECT_EQ(called, (Lines{"RequestBegan", "PassBegan", "TypeBegan", "MediaMapperChanged", "TypeEnded",
                             "PassEnded", "RequestEnded"}));
    observer.Clear();
    EXPECT_EQ(observer.Lines(), Lines());
}

TEST(RecordingObserver, PairThatEndsOtherwiseThanItBeganFailsTheTest) {
    RecordingObserver observer;
    observer.TypeBegan("t");
    EXPECT_NONFATAL_FAILURE(observer.TypeEnded("u", ezTypeResult::NoParser), "Type u ended within Type t");
    EXPECT_NONFATAL_FAILURE(observer.PassEnded(ezParsePass::Failed, false),
                            "Pass Failed ended within Type t");
    observer.TypeEnded("t", ezTypeResult::NoParser);
    EXPECT_NONFATAL_FAILURE(observer.TypeEnded("t", ezTypeResult::NoParser), "Type t ended within nothing");
}

TEST(RecordingObserver, PairThatNeverEndsFailsTheTest) {
    auto observer = std::make_unique<RecordingObserver>();
    observer->TypeBegan("t");
    EXPECT_NONFATAL_FAILURE(observer.reset(), "still within Type t");
}
