#include "support/NewBlocks.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <new>

namespace {

/// By calls, which no compiler may leave out as it may a new expression.
void Ask(std::size_t aSize) {
    ::operator delete(::operator new(aSize));
}

} // namespace

TEST(NewBlocks, EveryBlockCounts) {
    const std::size_t before = NewBlocks::Count();
    Ask(1);
    Ask(100);
    const std::size_t after = NewBlocks::Count();
    EXPECT_EQ(after - before, 2U);
}

TEST(NewBlocks, TheLargestIsThatSinceTheLastReset) {
    Ask(1000000);
    EXPECT_GE(NewBlocks::Largest(), 1000000U);
    NewBlocks::ResetLargest();
    Ask(1000);
    Ask(10);
    EXPECT_EQ(NewBlocks::Largest(), 1000U);
}
