#include "ezPlatform/files/CacheName.h"

#include "support/Str.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <string>
#include <strings.h>

namespace {

std::string Name(const std::string& aText) {
    return Str(ezCacheName(aText));
}

bool IsSafe(const std::string& aName) {
    return !aName.empty() && aName.size() <= 143 && aName.front() != '.' && aName.back() != '.' &&
           aName.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789_-.%") == std::string::npos;
}

TEST(CacheName, APlainTextIsItsOwnName) {
    EXPECT_EQ(Name("thumb_film-12.3_160_160_0_0_1_1_0.jpg"), "thumb_film-12.3_160_160_0_0_1_1_0.jpg");
}

TEST(CacheName, EveryOtherByteIsWrittenInDigits) {
    EXPECT_EQ(Name("a/b"), "a%2fb");
    EXPECT_EQ(Name("../../etc/passwd"), "%2e.%2f..%2fetc%2fpasswd");
    EXPECT_EQ(Name(std::string("a\0b", 3)), "a%00b");
    EXPECT_EQ(Name("100%"), "100%25");
    EXPECT_EQ(Name("Film"), "%46ilm");
    EXPECT_EQ(Name("`a{z~"), "%60a%7bz%7e");
    EXPECT_EQ(Name("\xc3\xa9\\ :\n"), "%c3%a9%5c%20%3a%0a");
}

TEST(CacheName, DotsAtTheEndsAreWrittenInDigits) {
    EXPECT_EQ(Name("."), "%2e");
    EXPECT_EQ(Name(".."), "%2e%2e");
    EXPECT_EQ(Name(".a."), "%2ea%2e");
}

TEST(CacheName, TheEmptyTextHasAName) {
    EXPECT_EQ(Name(""), "%");
}

// The digests are those that sha256sum prints.
TEST(CacheName, ALongTextIsToldByItsDigest) {
    EXPECT_EQ(Name(std::string(143, 'a')), std::string(143, 'a'));
    EXPECT_EQ(Name(std::string(144, 'a')),
              std::string(70, 'a') + "%-" +
                  "b71df3b2ce77a2e2d78f7a7b91bf8868b61be0e8a12d300b1300b140d7fada13");
    EXPECT_EQ(Name(std::string(300, 'a')),
              std::string(70, 'a') + "%-" +
                  "9835fa6bf4e20a9b9ea812506302e98982721a6cf8d2cae67af57129bf21ae90");
    EXPECT_EQ(Name(std::string(1000000, 'a')),
              std::string(70, 'a') + "%-" +
                  "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

// Around the ends of a block, where the length no longer fits into the last one.
TEST(CacheName, EveryPlaceOfTheEndInABlockIsDigestedAsTheStandardSays) {
    EXPECT_EQ(Name(std::string(182, 'b')).substr(72),
              "815f6772d085e14983a30b6978eef311af18eebba354b5e04d3d8405cce8090e");
    EXPECT_EQ(Name(std::string(183, 'b')).substr(72),
              "956abb88726ea18606d502606284fe2f79632b78d6ca63d1682400a078e47d85");
    EXPECT_EQ(Name(std::string(184, 'b')).substr(72),
              "ed8bb13627926572e7039035c6fbc71a0284a8736e3db30319b231014d0fc122");
    EXPECT_EQ(Name(std::string(191, 'b')).substr(72),
              "5ccc509e086052fee88ba9d0bfd5d4679f12d6fc5353cae1189be2c1a4e9be34");
    EXPECT_EQ(Name(std::string(192, 'b')).substr(72),
              "18ef27a5f3f49527c77890f475a20d228233a501b53ba76e16b64d75a626a76c");
    EXPECT_EQ(Name(std::string(193, 'b')).substr(72),
              "19b8f0cbf3835c34f8f73f90500074dc5aafb41aa67ac6239ba08001c4ed2b9a");
}

TEST(CacheName, TextsThatDifferHaveSafeNamesThatDifferAlsoWithoutTellingCase) {
    std::mt19937 random(3);
    std::set<std::string> texts = {"%", "%2f", "/", "a%2Fb", "a/b", "A/b", "..", "...", "%-"};
    for (int i = 0; i < 30000; ++i) {
        std::string text;
        for (std::size_t length = random() % 6; length > 0; --length) {
            text += std::string("aA./%2fF\0-", 10)[random() % 10];
        }
        texts.insert(text);
        texts.insert(std::string(150, 'x') + text);
        texts.insert(text + std::string(150, '/'));
    }
    struct NoCase {
        bool operator()(const std::string& aLeft, const std::string& aRight) const {
            return strcasecmp(aLeft.c_str(), aRight.c_str()) < 0;
        }
    };
    std::set<std::string, NoCase> names;
    for (const std::string& text : texts) {
        const std::string name = Name(text);
        EXPECT_TRUE(IsSafe(name)) << name;
        EXPECT_TRUE(names.insert(name).second) << name;
    }
}

} // namespace
