#include "support/RunProgram.h"
#include "support/TemporaryFolder.h"
#include "support/WholeFile.h"

#include <gtest/gtest.h>

#include <string>

TEST(MinimalHost, IdentifiesASampleByItsOwnParserAndTheMediaTypesFile) {
    const std::string bell = EZ_SAMPLES "/music/door-bell.wav";
    const std::string walk = EZ_SAMPLES "/music/morning-walk.mp3";
    const ProgramResult result = RunProgram(EZ_MINIMAL_HOST, {EZ_SAMPLES, bell, walk});
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mError, "");
    EXPECT_EQ(
        result.mOut,
        bell +
            ": ac=1, ar=128000, br=128000, cn=item.audioItem.musicTrack, ea=128000, eb=128000, ev=0, fe=wav, "
            "fs=35348, ma=128000, mb=128000, mt=audio/wav, mv=0, sf=8000, ta=1\n" +
            walk + ": cn=item.audioItem.musicTrack, fe=mp3, fs=32309, mt=audio/mpeg\n" +
            "advertised: audio/wav:*\n");
}

TEST(MinimalHost, RefusesWhatIsNoWaveFileAndWhatIsNotThere) {
    const TemporaryFolder folder;
    const std::string fake = folder.Write("fake.wav", "RIFX not a wave file at all, whatever its name says");
    const std::string brief = folder.Write("short.wav", "RIFF");
    const std::string unknown = folder.Write("letter.txt", "hello");
    const ProgramResult result =
        RunProgram(EZ_MINIMAL_HOST, {EZ_SAMPLES, fake, brief, unknown, folder.Path("none.wav")});
    EXPECT_EQ(result.mStatus, 0);
    // Announced from the extension alone, without the facts that the parser would have read.
    EXPECT_EQ(result.mOut, fake + ": cn=item.audioItem.musicTrack, fe=wav, fs=51, mt=audio/wav\n" + brief +
                               ": cn=item.audioItem.musicTrack, fe=wav, fs=4, mt=audio/wav\n" + unknown +
                               ": not recognised\n" + folder.Path("none.wav") +
                               ": not recognised\nadvertised: audio/wav:*\n");
}

TEST(MinimalHost, StaysUnderSixtyLines) {
    EXPECT_LT(LinesOf(ReadWholeFile(EZ_SOURCES "/examples/minimal-host/main.cpp")).size(), 60U);
}

TEST(MinimalHost, IsQuotedInTheReadmeAsItIs) {
    const std::string quoted =
        "```cpp\n" + ReadWholeFile(EZ_SOURCES "/examples/minimal-host/main.cpp") + "```\n";
    EXPECT_NE(ReadWholeFile(EZ_SOURCES "/README.md").find(quoted), std::string::npos);
}
