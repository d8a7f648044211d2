#include "ezPlatform/text/Conversions.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstdint>
#include <cstdio>
#include <string>

namespace {

constexpr uint32 kUntouched = 4711;

/// The seconds of a duration; a text of what went wrong otherwise.
std::string Seconds(const std::string& aText) {
    uint32 seconds = kUntouched;
    const int result = ezConvert_dlnadurationstrtouint32(aText.c_str(), &seconds, 0);
    if (result == 0) {
        return std::to_string(seconds);
    }
    EXPECT_EQ(result, -1) << aText;
    EXPECT_EQ(seconds, kUntouched) << aText << ": a failure writes nothing";
    return "refused";
}

} // namespace

TEST(Conversions, ADurationIsGivenInWholeSeconds) {
    EXPECT_EQ(Seconds("0:00:00"), "0");
    EXPECT_EQ(Seconds("0:03:20.000"), "200");
    EXPECT_EQ(Seconds("1:50:00.0"), "6600");
    EXPECT_EQ(Seconds("00:04:05"), "245");
    EXPECT_EQ(Seconds("100:00:00"), "360000");
    EXPECT_EQ(Seconds("0:59:59"), "3599");
    EXPECT_EQ(Seconds("0000000000000000000000000:00:07"), "7");
}

TEST(Conversions, TheFractionOfADurationIsDropped) {
    EXPECT_EQ(Seconds("0:00:10.1/3"), "10");
    EXPECT_EQ(Seconds("0:00:10.0/1"), "10");
    EXPECT_EQ(Seconds("0:00:01.123456789"), "1");
    EXPECT_EQ(Seconds("0:00:01.999"), "1");
    EXPECT_EQ(Seconds("0:00:01." + std::string(1000, '9')), "1");
    EXPECT_EQ(Seconds("0:00:10."), "10");
    EXPECT_EQ(Seconds("0:00:10.02/3"), "10");
    EXPECT_EQ(Seconds("0:00:10.1/" + std::string(30, '9')), "10");
    EXPECT_EQ(Seconds("0:00:10." + std::string(30, '8') + "/" + std::string(30, '9')), "10");
}

TEST(Conversions, ADurationAboveADayDoesNotWrap) {
    EXPECT_EQ(Seconds("24:00:00"), "86400");
    EXPECT_EQ(Seconds("49:30:01"), "178201");
    EXPECT_EQ(Seconds("1193046:28:15"), "4294967295");
}

TEST(Conversions, ADurationBeyond32BitsIsRefused) {
    EXPECT_EQ(Seconds("1193046:28:16"), "refused");
    EXPECT_EQ(Seconds("1193046:29:00"), "refused");
    EXPECT_EQ(Seconds("1193047:00:00"), "refused");
    EXPECT_EQ(Seconds("5124095576030431:00:00"), "refused") << "wraps 64 bits of seconds to a small number";
    EXPECT_EQ(Seconds("18446744073709551616:00:00"), "refused");
    EXPECT_EQ(Seconds(std::string(1000, '9') + ":00:00"), "refused");
}

TEST(Conversions, ASignedDurationIsRefused) {
    EXPECT_EQ(Seconds("-0:00:01.5"), "refused");
    EXPECT_EQ(Seconds("+0:00:01"), "refused");
    EXPECT_EQ(Seconds("0:-1:01"), "refused");
    EXPECT_EQ(Seconds("0:00:+1"), "refused");
}

TEST(Conversions, MinutesAndSecondsAreTwoDigitsBelow60) {
    EXPECT_EQ(Seconds("0:03:60"), "refused");
    EXPECT_EQ(Seconds("0:60:00"), "refused");
    EXPECT_EQ(Seconds("0:99:00"), "refused");
    EXPECT_EQ(Seconds("0:3:20"), "refused");
    EXPECT_EQ(Seconds("0:03:2"), "refused");
    EXPECT_EQ(Seconds("0:003:20"), "refused");
    EXPECT_EQ(Seconds("0:03:020"), "refused");
}

TEST(Conversions, ADurationHasThreeParts) {
    EXPECT_EQ(Seconds("8:17.493"), "refused");
    EXPECT_EQ(Seconds("1:50:00:000"), "refused");
    EXPECT_EQ(Seconds("200"), "refused");
    EXPECT_EQ(Seconds("::"), "refused");
    EXPECT_EQ(Seconds(":08:17.0"), "refused");
    EXPECT_EQ(Seconds("0::17"), "refused");
    EXPECT_EQ(Seconds("0:08:"), "refused");
}

TEST(Conversions, AMalformedFractionOfADurationIsRefused) {
    EXPECT_EQ(Seconds("0:00:10.3/3"), "refused");
    EXPECT_EQ(Seconds("0:00:10.4/3"), "refused");
    EXPECT_EQ(Seconds("0:00:10.1/0"), "refused");
    EXPECT_EQ(Seconds("0:00:10.0/0"), "refused");
    EXPECT_EQ(Seconds("0:00:10.03/3"), "refused");
    EXPECT_EQ(Seconds("0:00:10.10/9"), "refused");
    EXPECT_EQ(Seconds("0:00:10./3"), "refused");
    EXPECT_EQ(Seconds("0:00:10.1/"), "refused");
    EXPECT_EQ(Seconds("0:00:10./"), "refused");
    EXPECT_EQ(Seconds("0:00:10.a/9"), "refused");
    EXPECT_EQ(Seconds("0:00:10.1/2/3"), "refused");
    EXPECT_EQ(Seconds("0:00:10.5.5"), "refused");
    EXPECT_EQ(Seconds("0:00:10.5s"), "refused");
    EXPECT_EQ(Seconds("0:03:20,5"), "refused");
}

TEST(Conversions, OtherTextsAreNoDuration) {
    EXPECT_EQ(Seconds(""), "refused");
    EXPECT_EQ(Seconds("."), "refused");
    EXPECT_EQ(Seconds("PT3M20S"), "refused");
    EXPECT_EQ(Seconds("P1D02:30:23"), "refused");
    EXPECT_EQ(Seconds("NOT_IMPLEMENTED"), "refused");
    EXPECT_EQ(Seconds("0:00:10 "), "refused");
    EXPECT_EQ(Seconds(" 0:00:10"), "refused");
    EXPECT_EQ(Seconds("0:00:10\n"), "refused");
    EXPECT_EQ(Seconds("0:0a:10"), "refused");
    EXPECT_EQ(Seconds("0x1:00:10"), "refused");
    EXPECT_EQ(Seconds("0:00:\xEF\xBC\x91\xEF\xBC\x91"), "refused") << "digits are ASCII";
}

TEST(Conversions, ANullTextOrResultIsRefused) {
    uint32 seconds = kUntouched;
    EXPECT_EQ(ezConvert_dlnadurationstrtouint32(nullptr, &seconds, 0), -1);
    EXPECT_EQ(seconds, kUntouched);
    EXPECT_EQ(ezConvert_dlnadurationstrtouint32("0:00:01", nullptr, 0), -1);
}

RC_GTEST_PROP(ConversionsModel, EveryDurationReadsBack, (uint32 aSeconds)) {
    char text[64];
    std::snprintf(text, sizeof text, "%lu:%02lu:%02lu.%03d", static_cast<unsigned long>(aSeconds / 3600),
                  static_cast<unsigned long>(aSeconds / 60 % 60), static_cast<unsigned long>(aSeconds % 60),
                  *rc::gen::inRange(0, 1000));
    uint32 seconds = 0;
    RC_ASSERT(ezConvert_dlnadurationstrtouint32(text, &seconds, 0) == 0);
    RC_ASSERT(seconds == aSeconds);
}
