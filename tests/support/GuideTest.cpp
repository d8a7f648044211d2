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
