#include "support/ReplacedSystem.h"

#include <gtest/gtest.h>

TEST(ReplacedSystem, IsInForceWhileItLives) {
    const auto real = ezSystem_Real().mFSync;
    {
        const ReplacedSystem system(WithoutSync);
        EXPECT_NE(ezSystem().mFSync, real);
        EXPECT_EQ(ezSystem().mFSync(-1), 0);
        EXPECT_EQ(ezSystem().mClose, ezSystem_Real().mClose) << "the others are the real ones";
    }
    EXPECT_EQ(ezSystem().mFSync, real);
}
