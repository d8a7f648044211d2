#include "ezPlatform/base/UInt64.h"

#include "ezPlatform/text/CString.h"
#include "support/Catchers.h"
#include "support/IntegerTypes.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace {

const char* const kNegative = "aValue >= 0 @ UInt64";
const char* const kZeroDivisor = "aValue != 0 @ UInt64";

template <typename Integer>
class UInt64OfType : public testing::Test {};

} // namespace

TYPED_TEST_SUITE(UInt64OfType, IntegerTypes, IntegerTypeNames);

TYPED_TEST(UInt64OfType, HoldsEveryValueThatIsNotNegative) {
    const AssertCatcher assertions;
    const TypeParam largest = std::numeric_limits<TypeParam>::max();
    EXPECT_EQ(ezuint64(TypeParam{0}).ToUInt64(), 0U);
    EXPECT_EQ(ezuint64(TypeParam{1}).ToUInt64(), 1U);
    EXPECT_EQ(ezuint64(largest).ToUInt64(), static_cast<std::uint64_t>(largest));
    ezuint64 assigned = 5;
    assigned = largest;
    EXPECT_EQ(assigned.ToUInt64(), static_cast<std::uint64_t>(largest));
    EXPECT_TRUE(assertions.Failures().empty());
}

TYPED_TEST(UInt64OfType, TakesANegativeValueForACallersMistakeAndIsThen0) {
    if constexpr (std::is_signed<TypeParam>::value) {
        const AssertCatcher assertions;
        EXPECT_EQ(ezuint64(static_cast<TypeParam>(-1)).ToUInt64(), 0U);
        EXPECT_EQ(ezuint64(std::numeric_limits<TypeParam>::min()).ToUInt64(), 0U);
        ezuint64 assigned = 5;
        assigned = static_cast<TypeParam>(-1);
        EXPECT_EQ(assigned.ToUInt64(), 0U);
        EXPECT_EQ(assertions.Failures(), AssertCatcher::Noted({kNegative, kNegative, kNegative}));
    } else {
        const AssertCatcher assertions;
        EXPECT_EQ(ezuint64(static_cast<TypeParam>(-1)).ToUInt64(), std::numeric_limits<TypeParam>::max());
        EXPECT_TRUE(assertions.Failures().empty());
    }
}

TYPED_TEST(UInt64OfType, MixesWithOperatorsInBothOrders) {
    const ezuint64 ten = 10;
    const TypeParam three = 3;
    EXPECT_EQ((ten + three).ToUInt64(), 13U);
    EXPECT_EQ((three + ten).ToUInt64(), 13U);
    EXPECT_EQ((ten - three).ToUInt64(), 7U);
    EXPECT_EQ((three - ten).ToUInt64(), UINT64_MAX - 6);
    EXPECT_EQ((ten * three).ToUInt64(), 30U);
    EXPECT_EQ((three * ten).ToUInt64(), 30U);
    EXPECT_EQ((ten / three).ToUInt64(), 3U);
    EXPECT_EQ((three / ten).ToUInt64(), 0U);

    EXPECT_FALSE(ten == three);
    EXPECT_FALSE(three == ten);
    EXPECT_TRUE(ten != three);
    EXPECT_TRUE(three != ten);
    EXPECT_FALSE(ten < three);
    EXPECT_TRUE(three < ten);
    EXPECT_FALSE(ten <= three);
    EXPECT_TRUE(three <= ten);
    EXPECT_TRUE(ten > three);
    EXPECT_FALSE(three > ten);
    EXPECT_TRUE(ten >= three);
    EXPECT_FALSE(three >= ten);
    EXPECT_TRUE(ezuint64(3) == three);
    EXPECT_TRUE(three <= ezuint64(3));
    EXPECT_TRUE(three >= ezuint64(3));

    ezuint64 sum = 10;
    sum += three;
    EXPECT_EQ(sum.ToUInt64(), 13U);
    sum -= three;
    sum -= three;
    EXPECT_EQ(sum.ToUInt64(), 7U);
}

TEST(UInt64, Is0WhenMadeOfNothing) {
    EXPECT_EQ(ezuint64().ToUInt64(), 0U);
}

TEST(UInt64, ANegativeOperandIsACallersMistakeToo) {
    const AssertCatcher assertions;
    ezuint64 position = 10;
    position += -4;
    EXPECT_EQ(position.ToUInt64(), 10U) << "moving back is subtracting";
    EXPECT_TRUE(position > -1);
    EXPECT_EQ(assertions.Failures(), AssertCatcher::Noted({kNegative, kNegative}));
}

TEST(UInt64, ArithmeticWraps) {
    const ezuint64 largest = UINT64_MAX;
    EXPECT_EQ((largest + 1).ToUInt64(), 0U);
    EXPECT_EQ((largest + largest).ToUInt64(), UINT64_MAX - 1);
    EXPECT_EQ((ezuint64(0) - 1).ToUInt64(), UINT64_MAX);
    EXPECT_EQ((largest * 2).ToUInt64(), UINT64_MAX - 1);
    ezuint64 value = UINT64_MAX;
    value += 2;
    EXPECT_EQ(value.ToUInt64(), 1U);
    value -= 3;
    EXPECT_EQ(value.ToUInt64(), UINT64_MAX - 1);
}

TEST(UInt64, DividingBy0IsACallersMistakeAndGives0) {
    const AssertCatcher assertions;
    EXPECT_EQ((ezuint64(10) / 0).ToUInt64(), 0U);
    EXPECT_EQ((10 / ezuint64(0)).ToUInt64(), 0U);
    EXPECT_EQ((ezuint64(0) / ezuint64()).ToUInt64(), 0U);
    EXPECT_EQ(assertions.Failures(), AssertCatcher::Noted({kZeroDivisor, kZeroDivisor, kZeroDivisor}));
}

TEST(UInt64, DividesTheWholeRange) {
    EXPECT_EQ((ezuint64(UINT64_MAX) / 1).ToUInt64(), UINT64_MAX);
    EXPECT_EQ((ezuint64(UINT64_MAX) / UINT64_MAX).ToUInt64(), 1U);
    EXPECT_EQ((ezuint64(UINT64_MAX) / 2).ToUInt64(), static_cast<std::uint64_t>(INT64_MAX));
}

TEST(UInt64, ToUInt32Saturates) {
    EXPECT_EQ(ezuint64(0).ToUInt32(), 0U);
    EXPECT_EQ(ezuint64(UINT32_MAX - 1).ToUInt32(), UINT32_MAX - 1);
    EXPECT_EQ(ezuint64(UINT32_MAX).ToUInt32(), UINT32_MAX);
    EXPECT_EQ(ezuint64(0x100000000).ToUInt32(), UINT32_MAX);
    EXPECT_EQ(ezuint64(0x100000005).ToUInt32(), UINT32_MAX);
    EXPECT_EQ(ezuint64(UINT64_MAX).ToUInt32(), UINT32_MAX);
}

TEST(UInt64, ToFileOffsetRefusesWhatNoFileReaches) {
    EXPECT_EQ(ezuint64(0).ToFileOffset(), 0);
    EXPECT_EQ(ezuint64(INT64_MAX).ToFileOffset(), INT64_MAX);
    EXPECT_EQ((ezuint64(INT64_MAX) + 1).ToFileOffset(), -1);
    EXPECT_EQ((ezuint64(INT64_MAX) + 2).ToFileOffset(), -1);
    EXPECT_EQ(ezuint64(UINT64_MAX - 5).ToFileOffset(), -1);
    EXPECT_EQ(ezuint64(UINT64_MAX).ToFileOffset(), -1);
}

TEST(UInt64, TheLargestIsAllOnes) {
    EXPECT_EQ(ezuint64(kezuint64_Max).ToUInt64(), UINT64_MAX);
    EXPECT_TRUE(ezuint64(UINT64_MAX) == kezuint64_Max);
    EXPECT_TRUE(ezuint64(UINT64_MAX - 1) < kezuint64_Max);
}

TEST(UInt64, IsWrittenInDecimal) {
    EXPECT_EQ(ezuint64(0).ToCString(), "0");
    EXPECT_EQ(ezuint64(1234).ToCString(), "1234");
    EXPECT_EQ(ezuint64(UINT32_MAX).ToCString(), "4294967295");
    EXPECT_EQ(ezuint64(UINT64_MAX).ToCString(), "18446744073709551615");
}

RC_GTEST_PROP(UInt64Model, IsTheBuiltInType, (std::uint64_t aLeft, std::uint64_t aRight)) {
    const ezuint64 left = aLeft;
    const ezuint64 right = aRight;
    RC_ASSERT((left + right).ToUInt64() == aLeft + aRight);
    RC_ASSERT((left - right).ToUInt64() == aLeft - aRight);
    RC_ASSERT((left * right).ToUInt64() == aLeft * aRight);
    if (aRight != 0) {
        RC_ASSERT((left / right).ToUInt64() == aLeft / aRight);
    }
    RC_ASSERT((left == right) == (aLeft == aRight));
    RC_ASSERT((left != right) == (aLeft != aRight));
    RC_ASSERT((left < right) == (aLeft < aRight));
    RC_ASSERT((left <= right) == (aLeft <= aRight));
    RC_ASSERT((left > right) == (aLeft > aRight));
    RC_ASSERT((left >= right) == (aLeft >= aRight));
}
