#include "Announce.h"

#include "InputPipe.h"
#include "support/WholeFile.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

namespace {

using Json = nlohmann::json;
using Words = std::vector<std::string>;

Json RaceOf(const ProgramResult& aResult) {
    EXPECT_EQ(aResult.mError, "");
    return Json::parse(aResult.mOut);
}

std::string Sample(const std::string& aName) {
    return EZ_SAMPLES "/" + aName;
}

} // namespace

TEST(ElementaryStreams, EverySampleIsWonByItsFormatHoweverItIsCut) {
    const std::vector<std::pair<std::string, std::string>> winners = {
        {"elementary/harbour-light.h264", "H264"},     {"elementary/harbour-light.h265", "H265"},
        {"elementary/harbour-light.m1v", "MPEGVideo"}, {"elementary/harbour-light.m2v", "MPEGVideo"},
        {"elementary/six-corners.ac3", "AC3"},         {"elementary/slow-clock.mp2", "MPEGAudio"},
        {"music/morning-walk.mp3", "MPEGAudio"},       {"music/evening-train.aac", "ADTS"},
        {"conformance/B-AAC_A-1.adts", "ADTS"}};
    for (const auto& winner : winners) {
        Json facts;
        for (const char* size : {"188", "1316", "odd", "1"}) {
            const ProgramResult result = RunTool({"--es", "--json", "--packet", size, Sample(winner.first)});
            EXPECT_EQ(result.mStatus, 0) << winner.first;
            const Json race = RaceOf(result);
            EXPECT_EQ(race["winner"], winner.second) << winner.first << " " << size;
            EXPECT_FALSE(race["facts"].empty());
            facts = facts.is_null() ? race["facts"] : facts;
            EXPECT_EQ(race["facts"], facts) << winner.first << " " << size;
        }
    }
}

TEST(ElementaryStreams, PacketsOf188BytesAreTheDefault) {
    const std::string path = Sample("music/morning-walk.mp3");
    const ProgramResult result = RunTool({"--es", "--json", path});
    EXPECT_EQ(result.mOut, RunTool({"--es", "--json", "--packet", "188", path}).mOut);
    EXPECT_EQ(RaceOf(result)["pushed"].get<unsigned>() % 188, 0U);
    EXPECT_NE(result.mOut, RunTool({"--es", "--json", "--packet", "1316", path}).mOut);
}

TEST(ElementaryStreams, ThroughAPipeTheRaceIsTheSame) {
    const std::string path = Sample("elementary/six-corners.ac3");
    const InputPipe pipe(WritingSingleBytes(ReadWholeFile(path)));
    ProgramOptions options;
    options.mIn = pipe.GetReader();
    EXPECT_EQ(RunTool({"--es", "--json", "--name", path, "-"}, options).mOut,
              RunTool({"--es", "--json", path}).mOut);
}

TEST(ElementaryStreams, LinesTellWhoWonAndWhatItIs) {
    const std::string path = Sample("music/morning-walk.mp3");
    const ProgramResult result = RunTool({"--es", path, path});
    EXPECT_EQ(result.mStatus, 0);
    const std::string pushed =
        std::to_string(RaceOf(RunTool({"--es", "--json", path}))["pushed"].get<unsigned>());
    const std::string block = path + "\n  won  MPEGAudio  at byte " + pushed +
                              "\n  audio tracks    1\n  audio codec     MP3\n  audio bit rate  48 kbit/s\n"
                              "  sampling rate   44.1 kHz\n  channels        2\n";
    EXPECT_EQ(result.mOut, block + "\n" + block);
}

TEST(ElementaryStreams, WhoLeavesIsNamedWithTheByte) {
    const InputPipe pipe(Writing(std::string(3'000'000, 'x')));
    ProgramOptions options;
    options.mIn = pipe.GetReader();
    const ProgramResult result = RunTool({"--es", "--json", "-"}, options);
    EXPECT_EQ(result.mStatus, 1);
    const Json race = RaceOf(result);
    EXPECT_TRUE(race["winner"].is_null());
    EXPECT_TRUE(race["undecided"].empty());
    EXPECT_TRUE(race["facts"].empty());
    ASSERT_EQ(race["left"].size(), 9U);
    for (const Json& departure : race["left"]) {
        EXPECT_LE(departure["at"].get<unsigned>(), race["pushed"].get<unsigned>());
    }
    EXPECT_EQ(race["left"].back()["at"], race["pushed"]);
    EXPECT_LT(race["pushed"].get<unsigned>(), 3'000'000U); // the limits end the race, not the stream
}

TEST(ElementaryStreams, AStreamThatEndsBeforeADecisionHasNoWinner) {
    const InputPipe pipe(Writing("x"));
    ProgramOptions options;
    options.mIn = pipe.GetReader();
    const ProgramResult result = RunTool({"--es", "-"}, options);
    EXPECT_EQ(result.mStatus, 1);
    EXPECT_EQ(result.mError, "");
    EXPECT_EQ(result.mOut, "-\n"
                           "  undecided  H264       at byte 1\n"
                           "  undecided  H265       at byte 1\n"
                           "  undecided  MPEGVideo  at byte 1\n"
                           "  undecided  VC1        at byte 1\n"
                           "  undecided  MPEG4      at byte 1\n"
                           "  undecided  AC3        at byte 1\n"
                           "  undecided  EAC3       at byte 1\n"
                           "  undecided  ADTS       at byte 1\n"
                           "  undecided  MPEGAudio  at byte 1\n"
                           "  nobody won\n");
}

TEST(ElementaryStreams, WhatCannotBeReadIsAnError) {
    const ProgramResult result = RunTool({"--es", Sample("music"), Sample("none"), "-"});
    EXPECT_EQ(result.mStatus, 1);
    EXPECT_EQ(result.mOut, "");
    EXPECT_EQ(result.mError, "ezannounce: " + Sample("music") + ": not a regular file\n" +
                                 "ezannounce: " + Sample("none") + ": No such file or directory\n" +
                                 "ezannounce: -: there is no data\n");
}
