#include "ezPlatform/media/MediaInfo.h"

#include "support/Str.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>

namespace {

/// "seconds milliseconds method", each "-" where there is none.
std::string Length(const ezMediaInfo& anInfo) {
    return Str(anInfo.GetCString("du", "-")) + " " + Str(anInfo.GetCString("dm", "-")) + " " +
           Str(anInfo.GetCString("md", "-"));
}

std::string LengthOf(std::uint64_t aMilliseconds, const char* aMethod) {
    ezMediaInfo info;
    info.SetDuration(aMilliseconds, aMethod);
    EXPECT_TRUE(info.IsNumber("du"));
    EXPECT_TRUE(info.IsNumber("dm"));
    return Length(info);
}

} // namespace

TEST(MediaInfoDuration, ExactLengthLosesItsFractionAndEstimateIsRoundedUp) {
    EXPECT_EQ(LengthOf(0, "header"), "0 0 header");
    EXPECT_EQ(LengthOf(999, "header"), "0 999 header");
    EXPECT_EQ(LengthOf(20040, "header"), "20 20040 header");
    EXPECT_EQ(LengthOf(20999, "counted"), "20 20999 counted");
    EXPECT_EQ(LengthOf(20999, ""), "20 20999 -");
    EXPECT_EQ(LengthOf(20001, "estimate: size"), "21 20001 estimate: size");
    EXPECT_EQ(LengthOf(20000, "estimate: size"), "20 20000 estimate: size");
    EXPECT_EQ(LengthOf(1, "estimate"), "1 1 estimate");
    EXPECT_EQ(LengthOf(0, "estimate"), "0 0 estimate");
    EXPECT_EQ(LengthOf(20999, "no estimate"), "20 20999 no estimate");
    EXPECT_EQ(LengthOf(UINT64_MAX, "header"), "18446744073709551 18446744073709551615 header");
    EXPECT_EQ(LengthOf(UINT64_MAX, "estimate"), "18446744073709552 18446744073709551615 estimate");
}

TEST(MediaInfoDuration, ALengthReplacesTheOneBefore) {
    ezMediaInfo info;
    info.SetDuration(20040, "header");
    info.SetDuration(7500, "counted");
    EXPECT_EQ(Length(info), "7 7500 counted");
    info.SetDuration(7900, "");
    EXPECT_EQ(Length(info), "7 7900 -") << "the method is not of this one";
}

TEST(MediaInfoDuration, OtherSecondsTakeAwayWhatToldOfTheOnesBefore) {
    ezMediaInfo info;
    const auto isLeft = [&info](const auto& aSeconds) {
        info.SetDuration(20040, "header");
        info.Set("du", aSeconds, true);
        return Length(info);
    };
    EXPECT_EQ(isLeft(21), "21 - -");
    EXPECT_EQ(isLeft(0), "0 - -");
    EXPECT_EQ(isLeft(UINT64_MAX), "18446744073709551615 - -");
    EXPECT_EQ(isLeft("21"), "21 - -");
    EXPECT_EQ(isLeft("0:00:20"), "0:00:20 - -") << "seconds that nobody can compare";
    EXPECT_EQ(isLeft(""), "- - -");
    EXPECT_EQ(isLeft(20), "20 20040 header") << "the same seconds keep what is finer";
    EXPECT_EQ(isLeft("20"), "20 20040 header");
    EXPECT_EQ(isLeft("020"), "020 20040 header");
}

TEST(MediaInfoDuration, ATextThatIsNoNumberIsTheSameOnlyAsItself) {
    ezMediaInfo info;
    info.Set("du", "0:00:20", true);
    info.Set("md", "header", true);
    info.Set("du", "0:00:20", true);
    EXPECT_EQ(Length(info), "0:00:20 - header");
    info.Set("du", 20, true);
    EXPECT_EQ(Length(info), "20 - -");
    info.Set("du", "0:00:20", true);
    info.Set("md", "header", true);
    info.Set("du", UINT64_MAX, true);
    EXPECT_EQ(Length(info), "18446744073709551615 - -") << "what reads as the largest number is none";
}

TEST(MediaInfoDuration, WhatDoesNotChangeTheSecondsLeavesTheRest) {
    ezMediaInfo info;
    info.SetDuration(20040, "header");
    info.Set("du", 21, false);
    info.Set("du", "21", false);
    info.Set("du", "", false);
    info.Set("dup", 21, true);
    info.Set("d", 21, true);
    EXPECT_EQ(Length(info), "20 20040 header");
    const std::unique_ptr<ezMediaInfo> copy(info.Duplicate());
    copy->Set("du", 3, true);
    EXPECT_EQ(Length(*copy), "3 - -");
    EXPECT_EQ(Length(info), "20 20040 header");
}

TEST(MediaInfoDuration, TheFirstSecondsMayFollowTheMethod) {
    ezMediaInfo info;
    info.Set("md", "header", true);
    info.Set("du", 20, true);
    EXPECT_EQ(Length(info), "20 - header");
}

TEST(MediaInfoDuration, TheBoundOfAnEstimateGoesWithIt) {
    ezMediaInfo info;
    const auto setBound = [&info] {
        info.SetDuration(20040, "estimate: rate");
        info.Set(kezInfo_DurationBound, 700, true);
    };
    setBound();
    info.Set("du", 21, true);
    EXPECT_EQ(info.GetUInt32("db", 0), 700U) << "the seconds are the same, rounded up";
    info.Set("du", 20, true);
    EXPECT_FALSE(info.Has("db"));
    setBound();
    info.SetDuration(20040, "header");
    EXPECT_FALSE(info.Has("db")) << "another length, of which nobody has told one";
}
