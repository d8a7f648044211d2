#include "ezPlatform/base/Owned.h"

#include "support/ScriptedSystem.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>

namespace {

/// A class in the manner of the platform's: made and deleted by free functions.
struct Counted {
    int mNumber = 0;
};

int sDeleted = 0;

Counted* Counted_New(int aNumber) {
    return new Counted{aNumber};
}

void Counted_Delete(Counted* anObject) {
    sDeleted += anObject->mNumber;
    delete anObject;
}

} // namespace

TEST(Owned, APointerWithTheDeleterIsAsLargeAsOneWithout) {
    static_assert(sizeof(ezOwnedText) == sizeof(char*));
    static_assert(sizeof(ezOwned<Counted_Delete>) == sizeof(Counted*));
    static_assert(std::is_same_v<ezOwned<Counted_Delete>::element_type, Counted>);
    EXPECT_EQ(ezOwnedText(), nullptr);
}

// Whether the blocks are given back is seen by the sanitizer.
TEST(Owned, TextsAndBlocksAreFreed) {
    const ezOwnedText text(ezStrdup("text"));
    EXPECT_EQ(std::string(text.get()), "text");
    const ezFreed<std::uint32_t> numbers(static_cast<std::uint32_t*>(ezMalloc(8)));
    ASSERT_NE(numbers, nullptr);
    const ezFreed<void> bytes(ezMalloc(8));
    EXPECT_NE(bytes, nullptr);
    const ezOwnedText none(ezStrdup(nullptr));
    EXPECT_EQ(none, nullptr);
}

TEST(Owned, AnObjectIsDeletedByItsOwnFunctionOnce) {
    sDeleted = 0;
    {
        const ezOwned<Counted_Delete> first(Counted_New(1));
        ezOwned<Counted_Delete> second(Counted_New(10));
        const ezOwned<Counted_Delete> moved = std::move(second);
        const ezOwned<Counted_Delete> none;
        EXPECT_EQ(sDeleted, 0);
    }
    EXPECT_EQ(sDeleted, 11);
    ezOwned<Counted_Delete> released(Counted_New(100));
    Counted* const handedOver = released.release();
    released.reset();
    EXPECT_EQ(sDeleted, 11);
    Counted_Delete(handedOver);
}

TEST(Owned, AResizedBlockKeepsItsContent) {
    ezOwnedText text;
    ASSERT_TRUE(ezFreed_Resize(text, 4));
    text.get()[0] = 'a';
    ASSERT_TRUE(ezFreed_Resize(text, 10000000));
    EXPECT_EQ(text.get()[0], 'a');
    text.get()[9999999] = 'z';
    ASSERT_TRUE(ezFreed_Resize(text, 1));
    EXPECT_EQ(text.get()[0], 'a');
}

TEST(Owned, ABlockThatCannotBeResizedStaysAsItWas) {
    ezOwnedText text(ezStrdup("text"));
    const char* const before = text.get();
    EXPECT_FALSE(ezFreed_Resize(text, SIZE_MAX - 64));
    EXPECT_EQ(text.get(), before);
    EXPECT_EQ(std::string(text.get()), "text");
}
