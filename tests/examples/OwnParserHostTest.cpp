#include "support/RunProgram.h"
#include "support/TemporaryFolder.h"
#include "support/WholeFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

/// What the host says of files, and what it advertises after that.
std::vector<std::string> LinesOfHost(std::vector<std::string> aFiles) {
    aFiles.insert(aFiles.begin(), EZ_SAMPLES);
    const ProgramResult result = RunProgram(EZ_OWN_PARSER_HOST, aFiles);
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mError, "");
    return LinesOf(result.mOut);
}

} // namespace

TEST(OwnParserHost, IdentifiesASampleByItsOwnParserAndTheOthersByTheFormats) {
    const std::string bell = EZ_SAMPLES "/music/door-bell.wav";
    const std::string walk = EZ_SAMPLES "/music/morning-walk.mp3";
    const std::vector<std::string> lines = LinesOfHost({bell, walk});
    ASSERT_GE(lines.size(), 60U);
    EXPECT_EQ(lines[0], bell + ": ac=1, ar=128000, br=128000, cn=item.audioItem.musicTrack, ea=128000, "
                               "eb=128000, ev=0, fe=wav, fs=35348, ma=128000, mb=128000, mt=audio/wav, "
                               "mv=0, sf=8000, ta=1");
    EXPECT_NE(lines[1].find(", ca=MP3,"), std::string::npos) << lines[1];
    EXPECT_EQ(lines[2], "advertised: http-get:*:audio/wav:*"); // of its own parser, which comes first
    EXPECT_EQ(std::count(lines.begin(), lines.end(), lines[2]), 1);
}

TEST(OwnParserHost, RefusesWhatIsNoWaveFileAndWhatIsNotThere) {
    const TemporaryFolder folder;
    const std::string fake = folder.Write("fake.wav", "RIFX not a wave file at all, whatever its name says");
    const std::string brief = folder.Write("short.wav", "RIFF");
    const std::string unknown = folder.Write("letter.txt", "hello");
    std::vector<std::string> lines = LinesOfHost({fake, brief, unknown, folder.Path("none.wav")});
    ASSERT_GE(lines.size(), 4U);
    lines.resize(4);
    // Announced from the extension alone, without the facts that the parser would have read.
    EXPECT_EQ(lines,
              (std::vector<std::string>{fake + ": cn=item.audioItem.musicTrack, fe=wav, fs=51, mt=audio/wav",
                                        brief + ": cn=item.audioItem.musicTrack, fe=wav, fs=4, mt=audio/wav",
                                        unknown + ": not recognised ",
                                        folder.Path("none.wav") + ": not recognised " +
                                            folder.Path("none.wav") + ": not found"}));
}

TEST(OwnParserHost, SaysWhatIsWrongWithItsConfiguration) {
    const TemporaryFolder folder;
    const ProgramResult result =
        RunProgram(EZ_OWN_PARSER_HOST, {folder.GetPath(), EZ_SAMPLES "/music/door-bell.wav"});
    EXPECT_EQ(result.mStatus, 1);
    EXPECT_EQ(result.mOut, EZ_SAMPLES "/music/door-bell.wav: not recognised no media types: " +
                               folder.Path("mediaCTRLMediaTypes.ini") + ": not found\n");
}

TEST(OwnParserHost, StaysUnderSixtyLines) {
    EXPECT_LT(LinesOf(ReadWholeFile(EZ_SOURCES "/examples/own-parser-host/main.cpp")).size(), 60U);
}
