#include "ezPlatform/containers/DataBuffer.h"

#include "support/ScriptedSystem.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <type_traits>

TEST(DataBuffer, HoldsAsManyBytesAsWereAskedFor) {
    for (const std::size_t size : {std::size_t{1}, std::size_t{8192}, std::size_t{3000000}}) {
        const ezDataBuffer buffer(size);
        EXPECT_EQ(buffer.GetSize(), size);
        ASSERT_NE(buffer.data(), nullptr);
        std::memset(buffer.data(), 0x5A, size);
        EXPECT_EQ(static_cast<unsigned char*>(buffer.data())[size - 1], 0x5A);
    }
}

TEST(DataBuffer, OfNoBytesIsEmpty) {
    const ScriptedSystem system;
    const ezDataBuffer buffer(0);
    EXPECT_EQ(buffer.data(), nullptr);
    EXPECT_EQ(buffer.GetSize(), 0U);
    EXPECT_EQ(system.GetCounts().mAllocate, 0U);
}

TEST(DataBuffer, IsEmptyWhereTheBytesCannotBeHad) {
    ScriptedSystem system;
    system.mAllocateOutcomes = {{ENOMEM}};
    const ezDataBuffer refused(100);
    EXPECT_EQ(refused.data(), nullptr);
    EXPECT_EQ(refused.GetSize(), 0U);
    const ezDataBuffer next(100);
    EXPECT_NE(next.data(), nullptr);
    EXPECT_EQ(next.GetSize(), 100U);
}

TEST(DataBuffer, AnAbsurdSizeIsAnOrdinaryFailure) {
    for (const std::size_t size : {SIZE_MAX - 64, SIZE_MAX}) {
        const ezDataBuffer buffer(size);
        EXPECT_EQ(buffer.data(), nullptr);
        EXPECT_EQ(buffer.GetSize(), 0U);
    }
}

TEST(DataBuffer, IsNotCopied) {
    EXPECT_FALSE(std::is_copy_constructible<ezDataBuffer>::value);
    EXPECT_FALSE(std::is_copy_assignable<ezDataBuffer>::value);
}
