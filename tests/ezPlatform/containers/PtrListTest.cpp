#include "ezPlatform/containers/PtrList.h"

#include "ezPlatform/base/Owned.h"

#include "ezPlatform/base/Memory.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <list>
#include <vector>

namespace {

using List = ezOwned<ezPtrList_Delete>;

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

// ---- nodes ----

namespace {

std::vector<void*> Walked(const List& aList) {
    std::vector<void*> items;
    for (ezPtrListNode* node = ezPtrList_GetFirst(aList.get()); node != nullptr;
         node = ezPtrList_GetNext(aList.get(), node)) {
        items.push_back(ezPtrListNode_GetData(node));
    }
    return items;
}

/// The items as their indices give them, and nothing after them.
std::vector<void*> Indexed(const List& aList) {
    std::vector<void*> items;
    for (std::size_t i = 0; i < ezPtrList_GetCount(aList.get()); ++i) {
        items.push_back(*ezPtrList_GetAt(aList.get(), i));
    }
    EXPECT_EQ(ezPtrList_GetAt(aList.get(), items.size()), nullptr);
    return items;
}

ezPtrListNode* NodeAt(const List& aList, std::size_t anIndex) {
    ezPtrListNode* node = ezPtrList_GetFirst(aList.get());
    for (std::size_t i = 0; i < anIndex; ++i) {
        node = ezPtrList_GetNext(aList.get(), node);
    }
    return node;
}

class PtrListNodes : public PtrList {
protected:
    void* Item(std::size_t anIndex) { return &mPool[anIndex]; }
    void AppendItems(std::size_t aFirst, std::size_t aBehindLast) {
        for (std::size_t i = aFirst; i < aBehindLast; ++i) {
            ezPtrList_Append(mList.get(), Item(i));
        }
    }
    void Delete(std::size_t anIndex) { ezPtrList_DeleteNode(mList.get(), NodeAt(mList, anIndex)); }
    void ExpectItems(const std::vector<std::size_t>& aItems) {
        std::vector<void*> items;
        for (const std::size_t item : aItems) {
            items.push_back(Item(item));
        }
        EXPECT_EQ(Walked(mList), items);
        EXPECT_EQ(Indexed(mList), items);
    }

    int mPool[40] = {};
    const List mList = NewList();
};

} // namespace

TEST_F(PtrListNodes, AWalkMeetsEveryItemInOrder) {
    EXPECT_EQ(ezPtrList_GetFirst(mList.get()), nullptr);
    for (std::size_t count = 1; count <= 40; ++count) {
        AppendItems(count - 1, count);
        const std::vector<void*> items = Walked(mList);
        ASSERT_EQ(items.size(), count);
        for (std::size_t i = 0; i < count; ++i) {
            ASSERT_EQ(items[i], Item(i));
        }
    }
}

TEST_F(PtrListNodes, ANullItemIsAnItemOfTheWalk) {
    ezPtrList_Append(mList.get(), nullptr);
    ezPtrList_Append(mList.get(), Item(1));
    EXPECT_EQ(Walked(mList), (std::vector<void*>{nullptr, Item(1)}));
}

TEST_F(PtrListNodes, NothingHasNoNodes) {
    AppendItems(0, 1);
    EXPECT_EQ(ezPtrList_GetFirst(nullptr), nullptr);
    EXPECT_EQ(ezPtrList_GetNext(nullptr, ezPtrList_GetFirst(mList.get())), nullptr);
    EXPECT_EQ(ezPtrList_GetNext(mList.get(), nullptr), nullptr);
    EXPECT_EQ(ezPtrListNode_GetData(nullptr), nullptr);
    ezPtrList_DeleteNode(mList.get(), nullptr);
    ezPtrList_DeleteNode(nullptr, ezPtrList_GetFirst(mList.get()));
    ExpectItems({0});
}

TEST_F(PtrListNodes, DeletesTheFirstTheMiddleTheLastAndTheOnly) {
    AppendItems(0, 5);
    Delete(0);
    ExpectItems({1, 2, 3, 4});
    Delete(1);
    ExpectItems({1, 3, 4});
    Delete(2);
    ExpectItems({1, 3});
    Delete(1);
    ExpectItems({1});
    Delete(0);
    ExpectItems({});
    EXPECT_EQ(ezPtrList_GetFirst(mList.get()), nullptr);
}

TEST_F(PtrListNodes, EveryPlaceOfEveryLengthCanBeDeletedAndTheListGoesOn) {
    for (std::size_t count = 1; count <= 18; ++count) {
        for (std::size_t place = 0; place < count; ++place) {
            ezPtrList_Clear(mList.get());
            AppendItems(0, count);
            Delete(place);
            std::vector<std::size_t> expected;
            for (std::size_t i = 0; i < count; ++i) {
                if (i != place) {
                    expected.push_back(i);
                }
            }
            ExpectItems(expected);
            for (std::size_t more = 20; more < 40; ++more) {
                AppendItems(more, more + 1);
                expected.push_back(more);
            }
            ExpectItems(expected);
        }
    }
}

TEST_F(PtrListNodes, AWalkThatTookTheNextBeforehandMayDeleteWhereItStands) {
    for (const std::size_t keepEvery : {1U, 2U, 3U, 41U}) {
        ezPtrList_Clear(mList.get());
        AppendItems(0, 40);
        std::vector<void*> met;
        std::vector<std::size_t> kept;
        ezPtrListNode* next = nullptr;
        for (ezPtrListNode* node = ezPtrList_GetFirst(mList.get()); node != nullptr; node = next) {
            next = ezPtrList_GetNext(mList.get(), node);
            met.push_back(ezPtrListNode_GetData(node));
            if (met.size() % keepEvery != 0) {
                ezPtrList_DeleteNode(mList.get(), node);
            } else {
                kept.push_back(met.size() - 1);
            }
        }
        ASSERT_EQ(met.size(), 40U);
        for (std::size_t i = 0; i < met.size(); ++i) {
            EXPECT_EQ(met[i], Item(i));
        }
        ExpectItems(kept);
    }
}

TEST_F(PtrListNodes, ADeletionLeavesThePlacesAfterIt) {
    AppendItems(0, 8);
    ezPtrListNode* third = NodeAt(mList, 2);
    ezPtrListNode* last = NodeAt(mList, 7);
    Delete(0);
    Delete(0);
    EXPECT_EQ(ezPtrListNode_GetData(third), Item(2));
    EXPECT_EQ(ezPtrListNode_GetData(last), Item(7));
    EXPECT_EQ(ezPtrList_GetNext(mList.get(), last), nullptr);
    ezPtrList_DeleteNode(mList.get(), third);
    EXPECT_EQ(ezPtrListNode_GetData(last), Item(7));
    ExpectItems({3, 4, 5, 6, 7});
}

TEST_F(PtrListNodes, AQueueThatGoesOnForeverKeepsItsOrder) {
    AppendItems(0, 3);
    for (std::size_t i = 0; i < 1000; ++i) {
        ezPtrList_Append(mList.get(), Item((i + 3) % 40));
        ASSERT_EQ(ezPtrListNode_GetData(ezPtrList_GetFirst(mList.get())), Item(i % 40));
        Delete(0);
        ASSERT_EQ(ezPtrList_GetCount(mList.get()), 3U);
    }
}

TEST_F(PtrListNodes, DeletingFreesTheItemOnceAndTheRestInTheEnd) {
    {
        const List list = NewList();
        ezPtrList_SetFreeFunc(list.get(), sNoteFreed);
        for (std::size_t i = 0; i < 5; ++i) {
            ezPtrList_Append(list.get(), Item(i));
        }
        ezPtrList_DeleteNode(list.get(), NodeAt(list, 3));
        EXPECT_EQ(Freed(), std::vector<void*>{Item(3)});
        ezPtrList_DeleteNode(list.get(), NodeAt(list, 0));
        EXPECT_EQ(Freed(), (std::vector<void*>{Item(3), Item(0)}));
    }
    EXPECT_EQ(Freed(), (std::vector<void*>{Item(3), Item(0), Item(1), Item(2), Item(4)}));
}

TEST_F(PtrListNodes, ClearingFreesOnlyWhatIsLeft) {
    ezPtrList_SetFreeFunc(mList.get(), sNoteFreed);
    AppendItems(0, 2);
    Delete(0);
    Freed().clear();
    ezPtrList_Clear(mList.get());
    EXPECT_EQ(Freed(), std::vector<void*>{Item(1)});
    ExpectItems({});
}

TEST_F(PtrListNodes, TheFreeFunctionFindsTheItemOutOfTheList) {
    gLookedAt = mList.get();
    ezPtrList_SetFreeFunc(mList.get(), sLookAtTheList);
    AppendItems(0, 3);
    gCountSeen = 99;
    Delete(1);
    EXPECT_EQ(gCountSeen, 2U);
    ezPtrList_SetFreeFunc(mList.get(), nullptr);
}

namespace {

void sAppendToTheList(void* anItem) {
    ezPtrList_Append(gLookedAt, anItem);
}

} // namespace

TEST_F(PtrListNodes, TheFreeFunctionMayAppendToTheList) {
    gLookedAt = mList.get();
    ezPtrList_SetFreeFunc(mList.get(), sAppendToTheList);
    AppendItems(0, 4);
    Delete(1);
    ExpectItems({0, 2, 3, 1});
    ezPtrList_SetFreeFunc(mList.get(), nullptr);
}

RC_GTEST_PROP(PtrListModel, IsAListWhoseNodesAreDeleted, ()) {
    Freed().clear();
    std::vector<int> pool(8);
    std::list<void*> model;
    std::vector<void*> freed;
    const List list = NewList();
    ezPtrList_SetFreeFunc(list.get(), sNoteFreed);
    const int steps = *rc::gen::inRange(0, 100);
    for (int step = 0; step < steps; ++step) {
        const int verb = *rc::gen::inRange(0, 20);
        if (verb == 0) {
            ezPtrList_Clear(list.get());
            freed.insert(freed.end(), model.begin(), model.end());
            model.clear();
        } else if (verb < 9 && !model.empty()) {
            const auto place = *rc::gen::inRange<std::size_t>(0, model.size());
            ezPtrList_DeleteNode(list.get(), NodeAt(list, place));
            const auto deleted = std::next(model.begin(), static_cast<std::ptrdiff_t>(place));
            freed.push_back(*deleted);
            model.erase(deleted);
        } else {
            void* item = &pool[*rc::gen::inRange<std::size_t>(0, pool.size())];
            ezPtrList_Append(list.get(), item);
            model.push_back(item);
        }
        const std::vector<void*> expected(model.begin(), model.end());
        RC_ASSERT((Walked(list) == expected));
        RC_ASSERT((Indexed(list) == expected));
        RC_ASSERT((Freed() == freed));
    }
}
