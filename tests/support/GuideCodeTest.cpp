#include "support/GuideCode.h"

namespace {

using Texts = std::vector<std::string>;

const std::string kSource = "int One() {\n    return 1;\n}\nint Two() {\n    return 2;\n}\n";

} // namespace

TEST(GuideCode, BlocksAreThoseOfTheLanguageAlone) {
    EXPECT_EQ(
        CodeBlocksOf("# Guide\n```cpp\nint a;\n\nint b;\n```\n\n```\nno code\n```\n```cpp\nint c;\n```"),
        (Texts{"int a;\n\nint b;\n", "int c;\n"}));
    EXPECT_EQ(CodeBlocksOf("```cpp\nfirst line\n```\n"), Texts{"first line\n"});
    EXPECT_EQ(CodeBlocksOf("```cmake\nproject(x)\n```\n    ```cpp\nindented\n```\n"), Texts{});
    EXPECT_EQ(CodeBlocksOf("```cpp\n```\n"), Texts{""});
    EXPECT_EQ(CodeBlocksOf("```cpp\nnever ends\n"), Texts{""});
}

TEST(GuideCode, BlockStandsInASourceWithItsWholeLines) {
    EXPECT_TRUE(EveryCodeBlockStandsIn("```cpp\n" + kSource + "```\n", {kSource}));
    EXPECT_TRUE(EveryCodeBlockStandsIn("```cpp\n    return 1;\n}\n```\n", {"", kSource}));
    EXPECT_FALSE(EveryCodeBlockStandsIn("```cpp\nreturn 1;\n```\n", {kSource}));
    EXPECT_FALSE(EveryCodeBlockStandsIn("```cpp\n    return 1;\n```\n", {"    return 1; // once\n"}));
    EXPECT_FALSE(EveryCodeBlockStandsIn("```cpp\n    return 2;\n    return 1;\n```\n", {kSource}));
}

TEST(GuideCode, BlockThatStandsNowhereIsShown) {
    const testing::AssertionResult result =
        EveryCodeBlockStandsIn("```cpp\nint One() {\n```\n```cpp\nint Three() {\n```\n", {kSource});
    EXPECT_FALSE(result);
    EXPECT_STREQ(result.message(), "in none of the sources:\nint Three() {\n\n");
}

TEST(GuideCode, GuideWithoutCodeOrWithABrokenBlockFails) {
    EXPECT_FALSE(EveryCodeBlockStandsIn("no code", {kSource}));
    EXPECT_FALSE(EveryCodeBlockStandsIn("```cpp\n```\n", {kSource}));
    EXPECT_FALSE(EveryCodeBlockStandsIn("```cpp\nint One() {\n", {kSource}));
    EXPECT_FALSE(EveryCodeBlockStandsIn("```cpp\nint One() {\n```\n", {}));
}
