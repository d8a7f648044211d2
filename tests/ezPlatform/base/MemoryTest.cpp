#include "ezPlatform/base/Memory.h"

#include "support/ScriptedSystem.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdint>
#include <cstring>
#include <string>
#include <sys/resource.h>
#include <unistd.h>

// A refused block is an ordinary failure here, also under the sanitizer, which would end the process by
// itself.
extern "C" __attribute__((visibility("default"))) const char* __asan_default_options();
extern "C" const char* __asan_default_options() {
    return "allocator_may_return_null=1";
}

TEST(Memory, ABlockHoldsWhatWasAskedFor) {
    for (const std::size_t size : {std::size_t{1}, std::size_t{4096}, std::size_t{10000000}}) {
        void* block = ezMalloc(size);
        ASSERT_NE(block, nullptr);
        std::memset(block, 0xA5, size);
        EXPECT_EQ(static_cast<unsigned char*>(block)[size - 1], 0xA5);
        ezFree(block);
    }
}

TEST(Memory, ABlockThatCannotBeHadIsNull) {
    EXPECT_EQ(ezMalloc(SIZE_MAX - 64), nullptr);
}

TEST(Memory, ARefusalOfTheSystemIsNullAndTheNextBlockIsHad) {
    ScriptedSystem system;
    system.mAllocateOutcomes = {{ENOMEM}};
    EXPECT_EQ(ezMalloc(16), nullptr);
    void* block = ezMalloc(16);
    EXPECT_NE(block, nullptr);
    EXPECT_EQ(system.GetCounts().mAllocate, 2U);
    ezFree(block);
}

TEST(Memory, FreeIgnoresNull) {
    ezFree(nullptr);
    ScriptedSystem system;
    ezFree(nullptr);
    EXPECT_EQ(system.GetCounts().mAllocate, 0U);
}

TEST(Memory, StrdupCopiesTheText) {
    std::string text = "title\xC3\xA9";
    char* copy = ezStrdup(text.c_str());
    ASSERT_NE(copy, nullptr);
    EXPECT_NE(copy, text.c_str());
    text[0] = 'x';
    EXPECT_STREQ(copy, "title\xC3\xA9");
    ezFree(copy);

    char* empty = ezStrdup("");
    ASSERT_NE(empty, nullptr);
    EXPECT_STREQ(empty, "");
    ezFree(empty);
}

TEST(Memory, StrdupOfNullIsNull) {
    EXPECT_EQ(ezStrdup(nullptr), nullptr);
}

TEST(Memory, ReallocOfNullIsANewBlock) {
    void* block = ezRealloc(nullptr, 100);
    ASSERT_NE(block, nullptr);
    std::memset(block, 0xA5, 100);
    ezFree(block);
}

TEST(Memory, ReallocKeepsTheContent) {
    void* block = ezMalloc(10);
    ASSERT_NE(block, nullptr);
    std::memcpy(block, "0123456789", 10);
    block = ezRealloc(block, 10000000);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(std::memcmp(block, "0123456789", 10), 0);
    static_cast<char*>(block)[9999999] = 'x';
    block = ezRealloc(block, 4);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(std::memcmp(block, "0123", 4), 0);
    ezFree(block);
}

TEST(Memory, AReallocThatCannotBeHadIsNullAndLeavesTheBlock) {
    void* block = ezMalloc(10);
    ASSERT_NE(block, nullptr);
    std::memcpy(block, "0123456789", 10);
    EXPECT_EQ(ezRealloc(block, SIZE_MAX - 64), nullptr);
    EXPECT_EQ(std::memcmp(block, "0123456789", 10), 0);
    ScriptedSystem system;
    system.mAllocateOutcomes = {{ENOMEM}};
    EXPECT_EQ(ezRealloc(block, 20), nullptr);
    EXPECT_EQ(std::memcmp(block, "0123456789", 10), 0);
    block = ezRealloc(block, 20);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(std::memcmp(block, "0123456789", 10), 0);
    EXPECT_EQ(system.GetCounts().mAllocate, 2U);
    ezFree(block);
}

#ifndef EZ_EMULATED // the emulator takes memory of its own and keeps no such limit
namespace {

void CopyWithoutMoreMemory(const std::string& aText) {
    struct rlimit none = {};
    setrlimit(RLIMIT_AS, &none);
    ezStrdup(aText.c_str());
    _exit(0);
}

} // namespace

TEST(MemoryDeathTest, ATextThatCannotBeCopiedEndsTheProcess) {
    const std::string text(64 << 20, 'x');
    EXPECT_EXIT(CopyWithoutMoreMemory(text), testing::KilledBySignal(SIGABRT), "");
}
#endif
