#include "ezFormats/codecs/VP6Video.h"

#include "companions/ezFormats/codecs/VideoFactsText.h"
#include "companions/ezFormats/elementary/EltStreamKit.h"

#include <gtest/gtest.h>

namespace {

std::string VP6(const std::string& aFrame) {
    return Text(VP6Video_Read(Data(aFrame), aFrame.size()));
}

} // namespace

TEST(VP6Video, TellsTheSizeOfAKeyFrame) {
    const std::string end = " progressive cd=8 4:2:0";
    EXPECT_EQ(VP6(Hex({0x78, 0x46, 10, 13, 9, 12})), "VP6 192x144" + end)
        << "what is shown, not what is coded";
    EXPECT_EQ(VP6(Hex({0x78, 0x36, 10, 12, 10, 12})), "VP6 192x160" + end);
    EXPECT_EQ(VP6(Hex({0x78, 0x47, 10, 12, 10, 12})), "VP6 192x160 interlaced cd=8 4:2:0");
    EXPECT_EQ(VP6(Hex({0x79, 0x46, 1, 2, 10, 12, 10, 12})), "VP6 192x160" + end) << "a second partition";
    EXPECT_EQ(VP6(Hex({0x78, 0x30, 1, 2, 10, 12, 10, 12})), "VP6 192x160" + end)
        << "so has the simple profile";
}

TEST(VP6Video, WhatIsNoKeyFrameTellsNothing) {
    EXPECT_EQ(VP6(Hex({0xF8, 0x46, 10, 12, 10, 12})), "nothing");
    EXPECT_EQ(VP6(Hex({0x78, 0x2E, 10, 12, 10, 12})), "nothing") << "version 5";
    EXPECT_EQ(VP6(Hex({0x78, 0x4E, 10, 12, 10, 12})), "nothing") << "version 9";
    EXPECT_EQ(VP6(Hex({0x78, 0x46, 10, 12, 0, 12})), "nothing");
    EXPECT_EQ(VP6(Hex({0x78, 0x46, 10, 12, 10, 0})), "nothing");
    EXPECT_EQ(VP6(Hex({0x78, 0x46, 10, 12, 10})), "nothing");
    EXPECT_EQ(VP6(""), "nothing");
}
