#include "support/WholeFile.h"
#include "support/Samples.h"
#include "support/TemporaryFolder.h"
#include "support/WorkingDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>
#include <string>

TEST(WholeFile, IsReadByteForByte) {
    const TemporaryFolder folder;
    const std::string bytes("a\0\r\n\xFF", 5);
    EXPECT_EQ(ReadWholeFile(folder.Write("file", bytes)), bytes);
    EXPECT_EQ(ContentAt(folder.Path("file")), bytes);
}

TEST(WholeFile, OneThatIsMissingIsToldApartWhereAsked) {
    const TemporaryFolder folder;
    EXPECT_EQ(ReadWholeFile(folder.Path("none")), "");
    EXPECT_EQ(ContentAt(folder.Path("none")), "<none>");
    EXPECT_EQ(ContentAt(folder.Write("empty", "")), "");
}

TEST(Samples, OneThatIsMissingIsNotPassedOver) {
    EXPECT_EQ(ReadSample("pictures/harbour.png").substr(1, 3), "PNG");
    EXPECT_THROW(ReadSample("pictures/none.png"), std::runtime_error);
}

TEST(WorkingDirectory, IsPutBackInTheEnd) {
    const TemporaryFolder folder;
    const std::filesystem::path before = std::filesystem::current_path();
    {
        const WorkingDirectory inside(folder.GetPath());
        EXPECT_TRUE(std::filesystem::equivalent(".", folder.GetPath()));
    }
    EXPECT_EQ(std::filesystem::current_path(), before);
}
