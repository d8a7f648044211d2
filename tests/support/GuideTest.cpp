#include "support/Guide.h"

#include <gtest/gtest.h>

TEST(Guide, BlocksAreThoseOfOneLanguage) {
    const std::string guide =
        "text\n```cpp\nint a;\n\nint b;\n```\n\n```text\nno\n```\n```cpp\n```\nend ```cpp\n";
    EXPECT_EQ(GuideBlocks(guide, "cpp"), (std::vector<std::string>{"int a;\n\nint b;\n", ""}));
    EXPECT_EQ(GuideBlocks(guide, "text"), (std::vector<std::string>{"no\n"}));
    EXPECT_EQ(GuideBlocks("a\n```cpp\nopen", "cpp"), (std::vector<std::string>{"open"}));
}

TEST(Guide, BlockIsFoundAsWholeLines) {
    const std::vector<std::string> texts = {"int a;\nint b;\n", "  int a;\n", "int b;\nint a;\n"};
    EXPECT_EQ(CountOfTextsWith(texts, "int a;\n"), 2U);
    EXPECT_EQ(CountOfTextsWith(texts, "int a;\nint b;\n"), 1U);
    EXPECT_EQ(CountOfTextsWith(texts, "int c;\n"), 0U);
}

TEST(Guide, TableIsTheOneOfTheHeadings) {
    const std::string guide = "| a | b |\n|---|---|\n| 1 | `two`, `3` |\n||  |\ntext | 4 | 5 |\n"
                              "| a |\n|---|\n| other |\n\n| a |\tb |\n|---|---|\n| no | no |\n";
    using Rows = std::vector<std::vector<std::string>>;
    EXPECT_EQ(GuideTable(guide, {"a", "b"}), (Rows{{"1", "`two`, `3`"}, {"", ""}}));
    EXPECT_EQ(GuideTable(guide, {"a"}), (Rows{{"other"}}));
    EXPECT_EQ(GuideTable(guide, {"b", "a"}), Rows());
}

TEST(Guide, NamesOfACellStandInBackquotes) {
    EXPECT_EQ(GuideNames("`two`, or `3`"), (std::vector<std::string>{"two", "3"}));
    EXPECT_EQ(GuideNames("any"), std::vector<std::string>());
    EXPECT_EQ(GuideNames("`open"), (std::vector<std::string>{"open"}));
}
