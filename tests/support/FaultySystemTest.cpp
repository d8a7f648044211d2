#include "support/FaultySystem.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace {

/// Opens and reads a file of four bytes twice, three bytes at most each time; tells what each call gave.
std::string ReadTwice(const std::vector<Fault>& aFaults, bool* afStruck) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("file", "abcd");
    const FaultySystem system(aFaults);
    const int file = ezSystem().mOpen(path.c_str(), O_RDONLY, 0);
    std::string told = file < 0 ? "closed" : "open";
    for (int i = 0; i < 2 && file >= 0; ++i) {
        char bytes[3];
        const ssize_t count = ezSystem().mPRead(file, bytes, sizeof bytes, 0);
        told += " " + (count < 0 ? "errno " + std::to_string(errno) : std::to_string(count));
    }
    if (file >= 0) {
        told += ezSystem().mClose(file) == 0 ? "" : " not closed";
    }
    *afStruck = system.HasStruck();
    return told;
}

} // namespace

TEST(FaultySystem, SweepMakesEachCallFailInTurn) {
    FaultManner manner;
    manner.mError = EIO;
    manner.mCall = SystemCall::PRead;
    const std::string failed = "errno " + std::to_string(EIO);
    EXPECT_EQ(SweepFaults(manner, ReadTwice), "1: open " + failed + " 3\n2: open 3 " + failed + "\n");
    manner.mfForGood = true;
    EXPECT_EQ(SweepFaults(manner, ReadTwice),
              "1: open " + failed + " " + failed + "\n2: open 3 " + failed + "\n");
    manner.mMaximum = 2;
    EXPECT_EQ(SweepFaults(manner, ReadTwice), "1: open 2 " + failed + "\n2: open 3 2\n");
    manner.mCall = SystemCall::FSync;
    EXPECT_EQ(SweepFaults(manner, ReadTwice), "");
}

TEST(FaultySystem, OutcomesOfEveryKindAreSwept) {
    const std::string failed = "errno " + std::to_string(EIO);
    ExpectOutcomes(ReadTwice, {{SystemCall::Open, "1: closed\n", "1: closed\n"},
                               {SystemCall::Close, "1: open 3 3 not closed\n", "1: open 3 3 not closed\n"},
                               {SystemCall::PRead, "1: open " + failed + " 3\n2: open 3 " + failed + "\n",
                                "1: open " + failed + " " + failed + "\n2: open 3 " + failed + "\n"}});
}

TEST(FaultySystem, InterruptionsComeBeforeCallsThatComeShort) {
    bool fStruck = false;
    EXPECT_EQ(ReadTwice({{SystemCall::PRead, 1, Fault::kForGood, EINTR, Fault::kWhole, true},
                         {SystemCall::PRead, 1, Fault::kForGood, 0, 1, false}},
                        &fStruck),
              "open errno " + std::to_string(EINTR) + " 1");
    EXPECT_TRUE(fStruck);
}

TEST(FaultySystem, StandingTroubleStrikesInEveryRunAndEndsNoSweep) {
    Fault busy;
    busy.mCall = SystemCall::Close;
    busy.mTimes = Fault::kForGood;
    busy.mError = EIO;
    FaultManner manner;
    manner.mCall = SystemCall::PRead;
    manner.mError = ENXIO;
    const std::string failed = "errno " + std::to_string(ENXIO);
    EXPECT_EQ(SweepFaults(manner, Under(busy, ReadTwice)),
              "1: open " + failed + " 3 not closed\n2: open 3 " + failed + " not closed\n");
    // Of one kind with the sweep's, it strikes where that does not.
    busy.mCall = SystemCall::PRead;
    const std::string stood = "errno " + std::to_string(EIO);
    EXPECT_EQ(SweepFaults(manner, Under(busy, ReadTwice)),
              "1: open " + failed + " " + stood + "\n2: open " + stood + " " + failed + "\n");
}

TEST(FaultySystem, CountsCallsAndDescriptors) {
    const FaultySystem system;
    const std::size_t before = OpenDescriptors();
    const int file = ezSystem().mOpen("/dev/null", O_RDONLY, 0);
    EXPECT_EQ(OpenDescriptors(), before + 1);
    ezSystem().mClose(file);
    EXPECT_EQ(OpenDescriptors(), before);
    EXPECT_EQ(CallsOf(system), "open 1, close 1");
    EXPECT_FALSE(system.HasStruck());
}
