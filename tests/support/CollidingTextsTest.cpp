#include "support/CollidingTexts.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>

TEST(CollidingTexts, AreDifferentAndOfOneHashOfTheCppLibrary) {
    const std::vector<std::string> texts = CollidingTexts(300);
    EXPECT_EQ(std::set<std::string>(texts.begin(), texts.end()).size(), 300U);
    EXPECT_EQ(texts.front().size(), 9U * 16);
#if defined(__GLIBCXX__) && defined(__LP64__) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
    std::set<std::size_t> hashes;
    for (const std::string& text : texts) {
        hashes.insert(std::hash<std::string>()(text));
    }
    EXPECT_EQ(hashes.size(), 1U);
#endif
}
