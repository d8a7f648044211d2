#include "support/ScriptedSystem.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <string>

namespace {

class Scripted : public testing::Test {
protected:
    Scripted() : mPath(mFolder.Write("digits", "0123456789")) {}

    int Open() const { return ezSystem().mOpen(mPath.c_str(), O_RDONLY | O_CLOEXEC, 0); }

    TemporaryFolder mFolder;
    std::string mPath;
};

} // namespace

TEST_F(Scripted, WithoutOutcomesTheRealCallsAreMadeAndCounted) {
    const ScriptedSystem system;
    const int file = Open();
    ASSERT_GE(file, 0);
    struct stat status = {};
    EXPECT_EQ(ezSystem().mStat(mPath.c_str(), &status), 0);
    EXPECT_EQ(status.st_size, 10);
    status = {};
    EXPECT_EQ(ezSystem().mFStat(file, &status), 0);
    EXPECT_EQ(status.st_size, 10);
    char buffer[8] = {};
    EXPECT_EQ(ezSystem().mPRead(file, buffer, 3, 4), 3);
    EXPECT_STREQ(buffer, "456");
    EXPECT_EQ(ezSystem().mPRead(file, buffer, 2, 0), 2);
    void* block = ezSystem().mAllocate(10);
    EXPECT_NE(block, nullptr);
    std::free(block);
    EXPECT_EQ(ezSystem().mClose(file), 0);

    const ScriptedSystem::Counts& counts = system.GetCounts();
    EXPECT_EQ(counts.mOpen, 1U);
    EXPECT_EQ(counts.mStat, 1U);
    EXPECT_EQ(counts.mFStat, 1U);
    EXPECT_EQ(counts.mPRead, 2U);
    EXPECT_EQ(counts.mLargestPRead, 3U);
    EXPECT_EQ(counts.mClose, 1U);
    EXPECT_EQ(counts.mAllocate, 1U);
    EXPECT_EQ(counts.All(), 6U) << "taking memory is no system call";
}

TEST_F(Scripted, CountsStartAgainAfterAReset) {
    ScriptedSystem system;
    const int file = Open();
    ASSERT_GE(file, 0);
    char byte = 0;
    ezSystem().mPRead(file, &byte, 1, 0);
    system.ResetCounts();
    EXPECT_EQ(system.GetCounts().All(), 0U);
    EXPECT_EQ(system.GetCounts().mLargestPRead, 0U);
    ezSystem().mClose(file);
    EXPECT_EQ(system.GetCounts().All(), 1U);
}

TEST_F(Scripted, OutcomesAreTakenInOrderThenTheRealCallsGoOn) {
    ScriptedSystem system;
    const int file = Open();
    ASSERT_GE(file, 0);
    system.mPReadOutcomes = {{EINTR}, {0, 2}, {EIO}, {0, 0}};
    char buffer[8] = {};
    EXPECT_EQ(ezSystem().mPRead(file, buffer, 5, 0), -1);
    EXPECT_EQ(errno, EINTR);
    EXPECT_EQ(ezSystem().mPRead(file, buffer, 5, 0), 2);
    EXPECT_STREQ(buffer, "01");
    EXPECT_EQ(ezSystem().mPRead(file, buffer, 5, 0), -1);
    EXPECT_EQ(errno, EIO);
    EXPECT_EQ(ezSystem().mPRead(file, buffer, 5, 0), 0);
    EXPECT_EQ(ezSystem().mPRead(file, buffer, 5, 0), 5);
    EXPECT_STREQ(buffer, "01234");
    EXPECT_EQ(system.GetCounts().mPRead, 5U);
    EXPECT_EQ(system.GetCounts().mLargestPRead, 5U) << "what was asked, not what was given";
    ezSystem().mClose(file);
}

TEST_F(Scripted, EachCallHasOutcomesOfItsOwn) {
    ScriptedSystem system;
    system.mOpenOutcomes = {{EMFILE}};
    EXPECT_EQ(Open(), -1);
    EXPECT_EQ(errno, EMFILE);
    const int file = Open();
    ASSERT_GE(file, 0);

    struct stat status = {};
    system.mStatOutcomes = {{ELOOP}};
    system.mFStatOutcomes = {{EIO}};
    EXPECT_EQ(ezSystem().mStat(mPath.c_str(), &status), -1);
    EXPECT_EQ(errno, ELOOP);
    EXPECT_EQ(ezSystem().mFStat(file, &status), -1);
    EXPECT_EQ(errno, EIO);
    EXPECT_EQ(ezSystem().mStat(mPath.c_str(), &status), 0);
    EXPECT_EQ(ezSystem().mFStat(file, &status), 0);

    system.mAllocateOutcomes = {{ENOMEM}};
    EXPECT_EQ(ezSystem().mAllocate(1), nullptr);
    void* block = ezSystem().mAllocate(1);
    EXPECT_NE(block, nullptr);
    std::free(block);
    ezSystem().mClose(file);
    EXPECT_EQ(system.GetCounts().mOpen, 2U);
    EXPECT_EQ(system.GetCounts().mAllocate, 2U);
}

TEST_F(Scripted, TheRealCallsAreBackAfterwards) {
    {
        const ScriptedSystem system;
        EXPECT_NE(&ezSystem(), &ezSystem_Real());
    }
    EXPECT_EQ(&ezSystem(), &ezSystem_Real());
    const int file = Open();
    EXPECT_GE(file, 0);
    ezSystem().mClose(file);
}
