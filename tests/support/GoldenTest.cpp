#include "support/Golden.h"

#include "support/TemporaryFolder.h"
#include "support/WholeFile.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace {

/// Whether texts are recorded, whatever the run of the tests was asked for.
class Recording {
public:
    explicit Recording(bool afRecord) { Ask(afRecord, "1"); }
    ~Recording() { Ask(mfBefore, mBefore); }
    Recording(const Recording&) = delete;
    Recording& operator=(const Recording&) = delete;

private:
    static constexpr const char* kVariable = "EZ_UPDATE_GOLDEN";

    static void Ask(bool afRecord, const std::string& aValue) {
        EXPECT_EQ(afRecord ? ::setenv(kVariable, aValue.c_str(), 1) : ::unsetenv(kVariable), 0);
    }

    bool mfBefore = std::getenv(kVariable) != nullptr;
    std::string mBefore = mfBefore ? std::getenv(kVariable) : "";
};

} // namespace

TEST(Golden, TextIsWrittenOverWhatStandsWhenItIsToBeRecorded) {
    const Recording recording(true);
    const TemporaryFolder folder;
    ExpectRecorded(folder.Path("a/b.expected"), "one\n");
    EXPECT_EQ(ContentAt(folder.Path("a/b.expected")), "one\n");
    ExpectRecorded(folder.Path("a/b.expected"), "");
    EXPECT_EQ(ContentAt(folder.Path("a/b.expected")), "");
}

TEST(Golden, TextIsComparedAndNothingWrittenOtherwise) {
    const Recording recording(false);
    const TemporaryFolder folder;
    const std::string path = folder.Path("b.expected");
    EXPECT_NONFATAL_FAILURE(ExpectRecorded(path, ""), "b.expected");
    EXPECT_EQ(ContentAt(path), "<none>");
    folder.Write("b.expected", "one\n");
    ExpectRecorded(path, "one\n");
    EXPECT_NONFATAL_FAILURE(ExpectRecorded(path, "two\n"), "EZ_UPDATE_GOLDEN=1 records what is found");
    EXPECT_EQ(ContentAt(path), "one\n");
}

TEST(Golden, FileThatNobodyAsksForIsFound) {
    const TemporaryFolder folder;
    folder.Write("b.expected", "");
    folder.Write("README.md", "");
    ExpectNoOtherRecords(folder.GetPath(), {folder.Path("b.expected")});
    EXPECT_NONFATAL_FAILURE(ExpectNoOtherRecords(folder.GetPath(), {}), "b.expected");
}
