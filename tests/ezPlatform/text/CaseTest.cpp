#include "ezPlatform/text/Case.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>

namespace {

using namespace std::string_view_literals;

// Usable while the program is compiled, which also shows that no locale has a say.
static_assert(ezIsEqualNoCase("Audio/L16", "audio/l16"));
static_assert(ezStartsWithNoCase("#extm3u8", "#EXTM3U"));
static_assert(ezCompareNoCase("a", "B") < 0);

int Sign(int aNumber) {
    return (aNumber > 0) - (aNumber < 0);
}

struct Pair {
    std::string_view mLeft;
    std::string_view mRight;
    int mOrder; ///< of left and right; the other way round it is the opposite
};

constexpr Pair kPairs[] = {
    {"", "", 0},
    {"", "a", -1},
    {"AVI", "avi", 0},
    {"MPEG_ps", "mpeg_PS", 0},
    {"A", "b", -1},
    {"a", "B", -1},
    {"AB", "abc", -1},
    {"_", "A", -1}, // which lies between upper and lower case
    {"@", "`", -1}, // one before A and one before a
    {"[", "{", -1}, // one after Z and one after z
    {"z", "\xC3\x84", -1},
    {"\xC3\x84", "\xC3\xA4", -1}, // a letter with dots, in both cases
    {"\xC4\xB1", "I", 1},         // a letter without its dot, as in Turkish
    {"a\0B"sv, "A\0b"sv, 0},
    {"a\0b"sv, "a\0c"sv, -1},
};

/// Few different characters, so that texts meet in part.
std::string AnyText() {
    return *rc::gen::container<std::string>(rc::gen::element('a', 'A', 'z', 'Z', '@', '[', '\0', '\xC4'));
}

std::string LowerOf(std::string aText) {
    std::transform(aText.begin(), aText.end(), aText.begin(), ezLower);
    return aText;
}

} // namespace

TEST(Case, FoldsAToZAlone) {
    for (const Pair& pair : kPairs) {
        SCOPED_TRACE(std::string(pair.mLeft) + " and " + std::string(pair.mRight));
        EXPECT_EQ(Sign(ezCompareNoCase(pair.mLeft, pair.mRight)), pair.mOrder);
        EXPECT_EQ(Sign(ezCompareNoCase(pair.mRight, pair.mLeft)), -pair.mOrder);
        EXPECT_EQ(ezIsEqualNoCase(pair.mLeft, pair.mRight), pair.mOrder == 0);
        EXPECT_EQ(ezIsEqualNoCase(pair.mRight, pair.mLeft), pair.mOrder == 0);
    }
}

TEST(Case, ATextStartsWithEachOfItsBeginnings) {
    EXPECT_TRUE(ezStartsWithNoCase("", ""));
    EXPECT_TRUE(ezStartsWithNoCase("text", ""));
    EXPECT_TRUE(ezStartsWithNoCase("Text", "tEXT"));
    EXPECT_TRUE(ezStartsWithNoCase("#extinf:1", "#EXTINF:"));
    EXPECT_FALSE(ezStartsWithNoCase("#EXTIN", "#EXTINF:"));
    EXPECT_FALSE(ezStartsWithNoCase("", "a"));
    EXPECT_FALSE(ezStartsWithNoCase("xtext", "text"));
    EXPECT_FALSE(ezStartsWithNoCase("[", "{"));
}

RC_GTEST_PROP(CaseModel, EachComparisonIsThatOfTheLowerCase, ()) {
    const std::string left = AnyText();
    const std::string right = *rc::gen::arbitrary<bool>() ? LowerOf(left) : AnyText();
    const std::string lowerLeft = LowerOf(left);
    const std::string lowerRight = LowerOf(right);
    RC_ASSERT(Sign(ezCompareNoCase(left, right)) == Sign(lowerLeft.compare(lowerRight)));
    RC_ASSERT(ezIsEqualNoCase(left, right) == (lowerLeft == lowerRight));
    RC_ASSERT(ezStartsWithNoCase(left, right) == (lowerLeft.compare(0, right.size(), lowerRight) == 0));
}
