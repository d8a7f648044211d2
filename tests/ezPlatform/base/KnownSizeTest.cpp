#include "ezPlatform/base/KnownSize.h"

#include <gtest/gtest.h>

TEST(KnownSize, ZeroIsASizeThatIsNotKnown) {
    EXPECT_EQ(ezKnownSize(0), std::nullopt);
    EXPECT_EQ(ezKnownSize(1), 1U);
    EXPECT_EQ(ezKnownSize(kezuint64_Max), kezuint64_Max); // no size is a mark
}

TEST(KnownSize, IsHandedOutAsItIsOrAsZero) {
    EXPECT_EQ(ezSizeOrZero(std::nullopt), 0U);
    EXPECT_EQ(ezSizeOrZero(0), 0U); // an empty file is not told from an unknown size outside
    EXPECT_EQ(ezSizeOrZero(1), 1U);
    EXPECT_EQ(ezSizeOrZero(kezuint64_Max), kezuint64_Max);
}
