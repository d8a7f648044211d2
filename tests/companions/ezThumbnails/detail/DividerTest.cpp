#include "ezThumbnails/detail/Divider.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

/// The dividends of a quotient begin at a multiple of the divisor. A quotient that is estimated by one
/// inverse never falls when the dividend grows: right at both ends of all of them, it is right at every
/// dividend.
bool IsExact(std::uint32_t aDivisor) {
    const Divider divider(aDivisor);
    for (std::uint64_t quotient = 0; quotient < 256; ++quotient) {
        const std::uint64_t first = quotient * aDivisor;
        if (divider.Divide(first) != quotient || divider.Divide(first + aDivisor - 1) != quotient) {
            return false;
        }
    }
    return true;
}

TEST(Divider, EveryDividendOfASmallDivisorIsDividedExactly) {
    for (std::uint32_t divisor = 1; divisor <= 600; ++divisor) {
        const Divider divider(divisor);
        for (std::uint32_t dividend = 0; dividend < 256 * divisor; ++dividend) {
            ASSERT_EQ(divider.Divide(dividend), dividend / divisor) << dividend << " / " << divisor;
        }
    }
}

TEST(Divider, QuotientsBeginAndEndWhereTheyShouldForDivisorsOfEverySize) {
    for (std::uint32_t divisor = 1; divisor <= 20000; ++divisor) {
        ASSERT_TRUE(IsExact(divisor)) << divisor;
    }
    for (unsigned bits = 1; bits < 32; ++bits) {
        const std::uint32_t power = std::uint32_t{1} << bits;
        for (std::uint32_t near = 0; near <= 300; ++near) {
            ASSERT_TRUE(IsExact(power + near)) << power + near;
            ASSERT_TRUE(near >= power || IsExact(power - near)) << power - near;
        }
    }
    std::uint32_t state = 5;
    for (int i = 0; i < 20000; ++i) {
        state = state * 1664525U + 1013904223U;
        const std::uint32_t divisor = (state >> state % 24) | 1U;
        ASSERT_TRUE(IsExact(divisor)) << divisor;
    }
    EXPECT_TRUE(IsExact(65535U * 65535U)); // the largest picture
    EXPECT_TRUE(IsExact(UINT32_MAX));
}

} // namespace
