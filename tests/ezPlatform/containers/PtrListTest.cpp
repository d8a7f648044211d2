#include "ezPlatform/containers/PtrList.h"

#include "ezPlatform/base/Memory.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace {

struct Deleter {
    void operator()(ezPtrList* aList) const { ezPtrList_Delete(aList); }
};

using List = std::unique_ptr<ezPtrList, Deleter>;

List NewList() {
    return List(ezPtrList_New());
}

/// What the free function below was called with, in order.
std::vector<void*>& Freed() {
    static std::vector<void*> freed;
    return freed;
}

void sNoteFreed(void* anItem) {
    Freed().push_back(anItem);
}

class PtrList : public testing::Test {
protected:
    void SetUp() override { Freed().clear(); }

    int mItems[4] = {};
};

} // namespace

TEST_F(PtrList, KeepsItemsInTheOrderAppended) {
    const List list = NewList();
    EXPECT_EQ(ezPtrList_GetCount(list.get()), 0U);
    EXPECT_EQ(ezPtrList_GetAt(list.get(), 0), nullptr);
    for (int* item : {&mItems[2], &mItems[0], &mItems[2]}) {
        ezPtrList_Append(list.get(), item);
    }
    ezPtrList_Append(list.get(), nullptr);
    ASSERT_EQ(ezPtrList_GetCount(list.get()), 4U);
    EXPECT_EQ(*ezPtrList_GetAt(list.get(), 0), &mItems[2]);
    EXPECT_EQ(*ezPtrList_GetAt(list.get(), 1), &mItems[0]);
    EXPECT_EQ(*ezPtrList_GetAt(list.get(), 2), &mItems[2]);
    ASSERT_NE(ezPtrList_GetAt(list.get(), 3), nullptr) << "a null item is an item";
    EXPECT_EQ(*ezPtrList_GetAt(list.get(), 3), nullptr);
    EXPECT_EQ(ezPtrList_GetAt(list.get(), 4), nullptr);
    EXPECT_EQ(ezPtrList_GetAt(list.get(), SIZE_MAX), nullptr);
}

TEST_F(PtrList, GivesTheAddressOfTheStoredPointer) {
    const List list = NewList();
    ezPtrList_Append(list.get(), &mItems[0]);
    *ezPtrList_GetAt(list.get(), 0) = &mItems[1];
    EXPECT_EQ(*ezPtrList_GetAt(list.get(), 0), &mItems[1]);
}

TEST_F(PtrList, BorrowsItsItemsWithoutAFreeFunction) {
    {
        const List list = NewList();
        ezPtrList_Append(list.get(), &mItems[0]);
        ezPtrList_Clear(list.get());
        ezPtrList_Append(list.get(), &mItems[0]);
    }
    EXPECT_TRUE(Freed().empty());
}

TEST_F(PtrList, DeletingFreesEachItemOnceInOrder) {
    ezPtrList* list = ezPtrList_New();
    ezPtrList_SetFreeFunc(list, sNoteFreed);
    ezPtrList_Append(list, &mItems[1]);
    ezPtrList_Append(list, &mItems[0]);
    EXPECT_TRUE(Freed().empty());
    ezPtrList_Delete(list);
    EXPECT_EQ(Freed(), (std::vector<void*>{&mItems[1], &mItems[0]}));
}

TEST_F(PtrList, ClearingFreesEachItemOnceAndKeepsTheList) {
    List list = NewList();
    ezPtrList_SetFreeFunc(list.get(), sNoteFreed);
    ezPtrList_Append(list.get(), &mItems[0]);
    ezPtrList_Append(list.get(), &mItems[1]);
    ezPtrList_Clear(list.get());
    EXPECT_EQ(ezPtrList_GetCount(list.get()), 0U);
    EXPECT_EQ(ezPtrList_GetAt(list.get(), 0), nullptr);
    EXPECT_EQ(Freed(), (std::vector<void*>{&mItems[0], &mItems[1]}));
    ezPtrList_Clear(list.get());
    EXPECT_EQ(Freed().size(), 2U);
    ezPtrList_Append(list.get(), &mItems[2]);
    EXPECT_EQ(ezPtrList_GetCount(list.get()), 1U);
    list.reset();
    EXPECT_EQ(Freed(), (std::vector<void*>{&mItems[0], &mItems[1], &mItems[2]})) << "it owns its items still";
}

TEST_F(PtrList, ANullFreeFunctionMakesItBorrowAgain) {
    List list = NewList();
    ezPtrList_SetFreeFunc(list.get(), sNoteFreed);
    ezPtrList_Append(list.get(), &mItems[0]);
    ezPtrList_SetFreeFunc(list.get(), nullptr);
    list.reset();
    EXPECT_TRUE(Freed().empty());
}

TEST_F(PtrList, TheFreeFunctionCoversItemsAppendedBeforeIt) {
    List list = NewList();
    ezPtrList_Append(list.get(), &mItems[0]);
    ezPtrList_SetFreeFunc(list.get(), sNoteFreed);
    list.reset();
    EXPECT_EQ(Freed(), std::vector<void*>{&mItems[0]});
}

TEST_F(PtrList, TheDefaultFreeFunctionFreesWhatOursAllocate) {
    const List list = NewList();
    ezPtrList_SetFreeFunc(list.get(), ezPtrList_DefaultFreeFunc);
    ezPtrList_Append(list.get(), ezStrdup("text"));
    ezPtrList_Append(list.get(), ezMalloc(100));
    ezPtrList_Append(list.get(), nullptr);
    EXPECT_STREQ(static_cast<const char*>(*ezPtrList_GetAt(list.get(), 0)), "text");
    ezPtrList_Clear(list.get());
    EXPECT_EQ(ezPtrList_GetCount(list.get()), 0U);
}

namespace {

ezPtrList* gLookedAt = nullptr;
std::size_t gCountSeen = 99;

void sLookAtTheList(void* /*anItem*/) {
    gCountSeen = ezPtrList_GetCount(gLookedAt);
}

} // namespace

TEST_F(PtrList, AFreeFunctionThatLooksAtTheListFindsItEmpty) {
    const List list = NewList();
    gLookedAt = list.get();
    ezPtrList_SetFreeFunc(list.get(), sLookAtTheList);
    ezPtrList_Append(list.get(), &mItems[0]);
    ezPtrList_Append(list.get(), &mItems[1]);
    ezPtrList_Clear(list.get());
    EXPECT_EQ(gCountSeen, 0U);
}

TEST_F(PtrList, ANullListIsEmptyAndTakesNothing) {
    ezPtrList_SetFreeFunc(nullptr, sNoteFreed);
    ezPtrList_Append(nullptr, &mItems[0]);
    EXPECT_EQ(ezPtrList_GetCount(nullptr), 0U);
    EXPECT_EQ(ezPtrList_GetAt(nullptr, 0), nullptr);
    ezPtrList_Clear(nullptr);
    ezPtrList_Delete(nullptr);
    EXPECT_TRUE(Freed().empty());
}

RC_GTEST_PROP(PtrListModel, IsAVector, ()) {
    Freed().clear();
    std::vector<int> pool(8);
    std::vector<void*> model;
    std::vector<void*> freed;
    List list = NewList();
    ezPtrList_SetFreeFunc(list.get(), sNoteFreed);
    const int steps = *rc::gen::inRange(0, 60);
    for (int step = 0; step < steps; ++step) {
        if (*rc::gen::inRange(0, 10) == 0) {
            ezPtrList_Clear(list.get());
            freed.insert(freed.end(), model.begin(), model.end());
            model.clear();
        } else {
            void* item = &pool[*rc::gen::inRange<std::size_t>(0, pool.size())];
            ezPtrList_Append(list.get(), item);
            model.push_back(item);
        }
        RC_ASSERT(ezPtrList_GetCount(list.get()) == model.size());
        for (std::size_t i = 0; i < model.size(); ++i) {
            RC_ASSERT((*ezPtrList_GetAt(list.get(), i) == model[i]));
        }
        RC_ASSERT((Freed() == freed));
    }
    list.reset();
    freed.insert(freed.end(), model.begin(), model.end());
    RC_ASSERT((Freed() == freed));
}
