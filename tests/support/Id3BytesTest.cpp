#include "support/Id3Bytes.h"

#include <gtest/gtest.h>

#include <string>

using namespace std::string_literals;

TEST(NumberBytes, HaveTheirOrderAndLength) {
    EXPECT_EQ(Big(0x010203, 3), "\x01\x02\x03");
    EXPECT_EQ(Big(0x010203, 2), "\x02\x03");
    EXPECT_EQ(Big(1, 10), std::string(9, '\0') + "\x01");
    EXPECT_EQ(Big(UINT64_MAX, 8), std::string(8, '\xFF'));
    EXPECT_EQ(Little(0x010203), "\x03\x02\x01\0"s);
    EXPECT_EQ(Little(0x0102, 2), "\x02\x01");
}

TEST(Id3Bytes, SizesHaveSevenBitsAByte) {
    EXPECT_EQ(Syncsafe(0xFFFFFFF), "\x7F\x7F\x7F\x7F");
    EXPECT_EQ(Syncsafe(128), "\0\0\x01\0"s);
}

TEST(Id3Bytes, TagsAndFramesHaveTheFormOfTheirVersion) {
    EXPECT_EQ(ID3(3, 0x80, std::string(200, 'x')).substr(0, 11), "ID3\x03\0\x80\0\0\x01\x48x"s);
    EXPECT_EQ(Frame22("TT2", "body"), "TT2\0\0\x04"s + "body");
    EXPECT_EQ(Frame23("TIT2", std::string(128, 'x'), 0x40).substr(0, 11), "TIT2\0\0\0\x80\0\x40x"s);
    EXPECT_EQ(Frame24("TIT2", std::string(128, 'x'), 2).substr(0, 11), "TIT2\0\0\x01\0\0\x02x"s);
    EXPECT_EQ(Unsynchronised("a\xFF\xFF\xE0"), "a\xFF\0\xFF\0\xE0"s);
}
