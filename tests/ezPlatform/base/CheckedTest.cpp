#include "ezPlatform/base/Checked.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

TEST(Checked, AddGivesTheSumUpToTheLargestNumber) {
    std::uint64_t sum = 1;
    EXPECT_TRUE(ezChecked_Add(0, 0, &sum));
    EXPECT_EQ(sum, 0U);
    EXPECT_TRUE(ezChecked_Add(UINT64_MAX - 1, 1, &sum));
    EXPECT_EQ(sum, UINT64_MAX);
    EXPECT_TRUE(ezChecked_Add(0, UINT64_MAX, &sum));
    EXPECT_EQ(sum, UINT64_MAX);
    EXPECT_TRUE(ezChecked_Add(UINT32_MAX, 1, &sum));
    EXPECT_EQ(sum, 0x100000000U);
}

TEST(Checked, AddRefusesAWrapAndLeavesTheSumUntouched) {
    std::uint64_t sum = 42;
    EXPECT_FALSE(ezChecked_Add(UINT64_MAX, 1, &sum));
    EXPECT_FALSE(ezChecked_Add(1, UINT64_MAX, &sum));
    EXPECT_FALSE(ezChecked_Add(UINT64_MAX, UINT64_MAX, &sum));
    EXPECT_FALSE(ezChecked_Add(0x8000000000000000U, 0x8000000000000000U, &sum));
    EXPECT_EQ(sum, 42U);
}

RC_GTEST_PROP(CheckedModel, AddIsTheSumOrARefusal, ()) {
    const auto number = rc::gen::oneOf(rc::gen::arbitrary<std::uint64_t>(),
                                       rc::gen::map(rc::gen::inRange(0, 4), [](int aBelow) {
                                           return UINT64_MAX - static_cast<std::uint64_t>(aBelow);
                                       }));
    const std::uint64_t left = *number;
    const std::uint64_t right = *number;
    std::uint64_t sum = 42;
    const bool wraps = left + right < left;
    RC_ASSERT(ezChecked_Add(left, right, &sum) == !wraps);
    RC_ASSERT(sum == (wraps ? 42U : left + right));
}

TEST(Checked, SaturatingAddGivesTheSumUpToTheLargestNumber) {
    EXPECT_EQ(ezSaturating_Add(0, 0), 0U);
    EXPECT_EQ(ezSaturating_Add(1316, 188), 1504U);
    EXPECT_EQ(ezSaturating_Add(UINT32_MAX - 1, 1), UINT32_MAX);
    EXPECT_EQ(ezSaturating_Add(0, UINT32_MAX), UINT32_MAX);
    EXPECT_EQ(ezSaturating_Add(UINT32_MAX, 0), UINT32_MAX);
}

TEST(Checked, SaturatingAddOf64BitsStaysAtTheLargestNumber) {
    EXPECT_EQ(ezSaturating_Add64(UINT32_MAX, 1), 0x100000000U);
    EXPECT_EQ(ezSaturating_Add64(UINT64_MAX - 1, 1), UINT64_MAX);
    EXPECT_EQ(ezSaturating_Add64(UINT64_MAX - 1, 8), UINT64_MAX);
    EXPECT_EQ(ezSaturating_Add64(UINT64_MAX, UINT64_MAX), UINT64_MAX);
}

TEST(Checked, SaturatingAddStaysAtTheLargestNumber) {
    EXPECT_EQ(ezSaturating_Add(UINT32_MAX, 1), UINT32_MAX);
    EXPECT_EQ(ezSaturating_Add(1, UINT32_MAX), UINT32_MAX);
    EXPECT_EQ(ezSaturating_Add(UINT32_MAX, UINT32_MAX), UINT32_MAX);
    EXPECT_EQ(ezSaturating_Add(0x80000000U, 0x80000000U), UINT32_MAX);
}

RC_GTEST_PROP(CheckedModel, SaturatingAddIsTheSumOrTheLargestNumber, ()) {
    const auto number = rc::gen::oneOf(rc::gen::arbitrary<std::uint32_t>(),
                                       rc::gen::map(rc::gen::inRange(0, 4), [](int aBelow) {
                                           return UINT32_MAX - static_cast<std::uint32_t>(aBelow);
                                       }));
    const std::uint32_t left = *number;
    const std::uint32_t right = *number;
    const std::uint64_t sum = std::uint64_t{left} + right;
    RC_ASSERT(ezSaturating_Add(left, right) == (sum > UINT32_MAX ? UINT32_MAX : sum));
}
