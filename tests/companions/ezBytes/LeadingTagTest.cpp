#include "ezBytes/LeadingTag.h"
#include "ezBytes/Limits.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

using namespace std::string_literals;

namespace {

std::string ID3(std::size_t aSize, unsigned aVersion = 3, unsigned aFlags = 0) {
    std::string tag = "ID3"s + static_cast<char>(aVersion) + '\0' + static_cast<char>(aFlags);
    for (unsigned shift = 28; shift != 0; shift -= 7) {
        tag += static_cast<char>(aSize >> (shift - 7) & 0x7F);
    }
    return tag + std::string(aSize, 'x');
}

std::string APE(std::size_t aSize, unsigned aFlags = 0xA0) {
    std::string tag = "APETAGEX\xD0\7\0\0"s;
    for (unsigned shift = 0; shift != 32; shift += 8) {
        tag += static_cast<char>(aSize >> shift & 0xFF);
    }
    return tag + "\1\0\0\0\0\0\0"s + static_cast<char>(aFlags) + std::string(8 + aSize, 'y');
}

std::uint64_t EndOf(const std::string& aBytes, std::uint64_t aPosition = 0) {
    BlockBytes bytes(reinterpret_cast<const unsigned char*>(aBytes.data()), aBytes.size());
    return EndOfLeadingTags(bytes, aPosition);
}

} // namespace

TEST(LeadingTag, TagsInARowAreSteppedOver) {
    EXPECT_EQ(EndOf(""), 0U);
    EXPECT_EQ(EndOf("sound"), 0U);
    EXPECT_EQ(EndOf(ID3(0) + "sound"), 10U);
    EXPECT_EQ(EndOf(ID3(300) + "sound"), 310U);
    EXPECT_EQ(EndOf(ID3(7, 4, 0x10) + std::string(10, 'f') + "sound"), 27U) << "a footer";
    EXPECT_EQ(EndOf(APE(50) + "sound"), 82U);
    EXPECT_EQ(EndOf(ID3(3) + APE(5) + ID3(200) + "sound"), 13U + 37 + 210);
    EXPECT_EQ(EndOf("1234" + ID3(3) + "sound", 4), 17U);
    EXPECT_EQ(EndOf(APE(50, 0x80) + "sound"), 0U) << "a footer is no tag before the sound";
}

TEST(LeadingTag, OneThatClaimsTheWholeFileIsNotBelieved) {
    EXPECT_EQ(EndOf(ID3(20)), 10U);
    EXPECT_EQ(EndOf(ID3(20) + "s"), 30U);
    EXPECT_EQ(EndOf(ID3(20).substr(0, 15)), 10U);
    EXPECT_EQ(EndOf(APE(20)), 32U);
    EXPECT_EQ(EndOf(ID3(4) + ID3(20)), 24U);
}

TEST(LeadingTag, AHeaderThatIsNotThereWholeIsNone) {
    EXPECT_EQ(EndOf(ID3(0).substr(0, 9)), 0U);
    EXPECT_EQ(EndOf(APE(0).substr(0, 23)), 0U);
    EXPECT_EQ(EndOf("ID3\3\0\0\0\0\0\x80 sound"s), 0U) << "a size is of seven bits a byte";
}

TEST(LeadingTag, SoManyAreSteppedOverAndNoMore) {
    std::string tags;
    for (std::uint32_t count = 0; count < kLeadingTag_MaxCount; ++count) {
        tags += ID3(5);
    }
    EXPECT_EQ(EndOf(tags + "sound"), 15U * kLeadingTag_MaxCount);
    EXPECT_EQ(EndOf(tags + ID3(5) + "sound"), 15U * kLeadingTag_MaxCount);
}
