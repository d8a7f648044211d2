#include "support/Guide.h"
#include "support/RunProgram.h"
#include "support/TemporaryFolder.h"
#include "support/WholeFile.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

const std::string kSource = ReadWholeFile(EZ_SOURCES "/examples/parallel-host/main.cpp");

/// Reads a pipe: a little, then, after something was done, the rest.
std::string ReadAround(const std::string& aPipe, const std::function<void()>& aBetween) {
    const int pipe = open(aPipe.c_str(), O_RDONLY | O_CLOEXEC);
    std::string text(1024, '\0');
    ssize_t count = read(pipe, text.data(), text.size());
    text.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    aBetween();
    std::string piece(64 * 1024, '\0');
    while ((count = read(pipe, piece.data(), piece.size())) > 0) {
        text.append(piece, 0, static_cast<std::size_t>(count));
    }
    close(pipe);
    return text;
}

} // namespace

TEST(ParallelHost, TellsWhatTheFilesBelowAFolderAre) {
    const ProgramResult result = RunProgram(EZ_PARALLEL_HOST, {EZ_SAMPLES "/music", EZ_SAMPLES});
    EXPECT_EQ(result.mStatus, 0);
    const std::vector<std::string> lines = LinesOf(result.mOut);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), EZ_SAMPLES "/music/morning-walk.mp3: audio/mpeg"), 1);
    const std::vector<std::string> said = LinesOf(result.mError);
    ASSERT_GE(said.size(), 2U);
    EXPECT_EQ(said.back().rfind(std::to_string(lines.size()) + " recognised, ", 0), 0U) << said.back();
    EXPECT_NE(said.back().find(", 0 cancelled"), std::string::npos);
}

TEST(ParallelHost, SaysWhyItIsNotReady) {
    const TemporaryFolder folder;
    const ProgramResult result = RunProgram(EZ_PARALLEL_HOST, {folder.GetPath(), folder.GetPath()});
    EXPECT_EQ(result.mStatus, 2);
    EXPECT_EQ(result.mError.rfind("parallel-host: no media types: ", 0), 0U) << result.mError;
}

TEST(ParallelHost, SaysWhichFolderItCannotWalk) {
    const ProgramResult result = RunProgram(EZ_PARALLEL_HOST, {"/nowhere", EZ_SAMPLES});
    EXPECT_EQ(result.mStatus, 1);
    EXPECT_NE(result.mError.find("parallel-host: /nowhere: No such file or directory\n"), std::string::npos)
        << result.mError;
    EXPECT_EQ(RunProgram(EZ_PARALLEL_HOST, {}).mError, "usage: parallel-host FOLDER [CONFIG_FOLDER]\n");
}

TEST(ParallelHost, IsEndedByControlC) {
    constexpr int kFiles = 4'000; // whose lines are more than a pipe takes
    const TemporaryFolder folder;
    const std::string walk = ReadWholeFile(EZ_SAMPLES "/music/morning-walk.mp3").substr(0, 4'096);
    const std::string first = folder.Write("media/0.mp3", walk);
    for (int i = 1; i < kFiles; ++i) {
        ASSERT_EQ(link(first.c_str(), folder.Path("media/" + std::to_string(i) + ".mp3").c_str()), 0);
    }
    const std::string pipe = folder.Path("out");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    std::string out;
    std::thread reader;
    ProgramOptions options;
    options.mOutTo = pipe;
    options.mWhenStarted = [&](pid_t aProcess) {
        reader = std::thread(
            [&out, &pipe, aProcess] { out = ReadAround(pipe, [aProcess] { kill(aProcess, SIGINT); }); });
    };
    const ProgramResult result = RunProgram(EZ_PARALLEL_HOST, {folder.Path("media"), EZ_SAMPLES}, options);
    reader.join();
    EXPECT_EQ(result.mStatus, 130);
    EXPECT_EQ(result.mSignal, 0);
    EXPECT_LT(LinesOf(out).size(), static_cast<std::size_t>(kFiles));
    EXPECT_NE(result.mError.find(" recognised, "), std::string::npos) << result.mError;
}

TEST(ParallelHost, IsQuotedInTheGuideAsItIs) {
    const std::vector<std::string> blocks =
        GuideBlocks(ReadWholeFile(EZ_SOURCES "/docs/parsing-in-parallel.md"), "cpp");
    ASSERT_EQ(blocks.size(), 2U);
    EXPECT_NE(kSource.find(blocks[0]), std::string::npos);
    EXPECT_NE(ReadWholeFile(EZ_SOURCES "/tests/companions/ezHosting/HostPoolTest.cpp").find(blocks[1]),
              std::string::npos);
}
