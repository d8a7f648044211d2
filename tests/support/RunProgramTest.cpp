#include "support/RunProgram.h"
#include "support/TemporaryFolder.h"
#include "support/WholeFile.h"

#include <gtest/gtest.h>

#include <csignal>

// The shell is there wherever programs are run.

TEST(RunProgram, TellsHowAProgramEndedAndWhatItWrote) {
    const ProgramResult result = RunProgram("/bin/sh", {"-c", "echo out; echo \"$0\" >&2; exit 7", "error"});
    EXPECT_EQ(result.mStatus, 7);
    EXPECT_EQ(result.mSignal, 0);
    EXPECT_EQ(result.mOut, "out\n");
    EXPECT_EQ(result.mError, "error\n");
}

TEST(RunProgram, TellsTheSignalThatEndedAProgram) {
    const ProgramResult result = RunProgram("/bin/sh", {"-c", "kill -KILL $$"});
    EXPECT_EQ(result.mStatus, -1);
    EXPECT_EQ(result.mSignal, SIGKILL);
}

TEST(RunProgram, GivesFolderEnvironmentAndOutputAsAsked) {
    const TemporaryFolder folder;
    const std::string out = folder.Write("out", "");
    ProgramOptions options;
    options.mFolder = folder.Path("");
    options.mOutTo = out;
    options.mEnvironment = {"EZ_RUN=there", "PWD"};
    const ProgramResult result = RunProgram("/bin/sh", {"-c", "echo $EZ_RUN; ls; cat"}, options);
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mOut, "");
    EXPECT_EQ(ReadWholeFile(out), "there\nout\n");
}

TEST(RunProgram, SplitsATextIntoLines) {
    EXPECT_EQ(LinesOf("a\n\nb\n"), (std::vector<std::string>{"a", "", "b"}));
}
