#include "ezPlatform/containers/Array.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace {

struct Item {
    int mKey = 0;
    int mFreed = 0; ///< how often the free function was run on it
};

void sFree(void* anItem) {
    ++static_cast<Item*>(anItem)->mFreed;
}

int sByKey(const void* aLeft, const void* aRight) {
    return static_cast<const Item*>(aLeft)->mKey - static_cast<const Item*>(aRight)->mKey;
}

int sByKeyDescending(const void* aLeft, const void* aRight) {
    return sByKey(aRight, aLeft);
}

/// Any value that is not 0 is a match.
int sHasKey(const void* anItem, const void* aKey) {
    return static_cast<const Item*>(anItem)->mKey == *static_cast<const int*>(aKey) ? -5 : 0;
}

class Array : public testing::Test {
protected:
    Array() : mItems{{3}, {1}, {2}} {
        for (Item& item : mItems) {
            ezArray_Append(mArray, &item);
        }
    }
    ~Array() override { Delete(); }

    void Delete() {
        ezArray_Delete(mArray);
        mArray = nullptr;
    }
    std::vector<int> Keys() const {
        std::vector<int> keys;
        for (std::size_t i = 0; i < ezArray_GetCount(mArray); ++i) {
            keys.push_back(static_cast<Item*>(ezArray_At(mArray, i))->mKey);
        }
        return keys;
    }
    std::vector<int> Freed() const { return {mItems[0].mFreed, mItems[1].mFreed, mItems[2].mFreed}; }

    ezArray* mArray = ezArray_New();
    std::vector<Item> mItems;
};

const Item* ItemAt(const ezArray* anArray, std::size_t anIndex) {
    return static_cast<const Item*>(ezArray_At(anArray, anIndex));
}

using Numbers = std::vector<int>;

} // namespace

TEST_F(Array, IsEmptyAtFirst) {
    ezArray* array = ezArray_New();
    EXPECT_EQ(ezArray_GetCount(array), 0U);
    EXPECT_EQ(ezArray_At(array, 0), nullptr);
    ezArray_Sort(array);
    ezArray_Delete(array);
}

TEST_F(Array, KeepsTheOrderAppendedAndEndsAtItsCount) {
    EXPECT_EQ(ezArray_GetCount(mArray), 3U);
    EXPECT_EQ(Keys(), Numbers({3, 1, 2}));
    EXPECT_EQ(ezArray_At(mArray, 3), nullptr);
    EXPECT_EQ(ezArray_At(mArray, SIZE_MAX), nullptr);
}

TEST_F(Array, BorrowsItsItemsWithoutAFreeFunction) {
    Item other;
    EXPECT_TRUE(ezArray_SetAt(mArray, 0, &other));
    EXPECT_TRUE(ezArray_Remove(mArray, 1));
    Delete();
    EXPECT_EQ(Freed(), Numbers({0, 0, 0}));
    EXPECT_EQ(other.mFreed, 0);
}

TEST_F(Array, DeletingFreesEveryItemOnce) {
    ezArray_SetFreeFunc(mArray, sFree);
    Delete();
    EXPECT_EQ(Freed(), Numbers({1, 1, 1}));
}

TEST_F(Array, SetAtFreesTheItemThatStoodThereOnce) {
    ezArray_SetFreeFunc(mArray, sFree);
    Item other = {9};
    EXPECT_TRUE(ezArray_SetAt(mArray, 1, &other));
    EXPECT_EQ(Keys(), Numbers({3, 9, 2}));
    EXPECT_EQ(Freed(), Numbers({0, 1, 0}));
    Delete();
    EXPECT_EQ(Freed(), Numbers({1, 1, 1}));
    EXPECT_EQ(other.mFreed, 1);
}

TEST_F(Array, SetAtOfTheItemThatStandsThereFreesNothing) {
    ezArray_SetFreeFunc(mArray, sFree);
    EXPECT_TRUE(ezArray_SetAt(mArray, 1, &mItems[1]));
    EXPECT_EQ(Freed(), Numbers({0, 0, 0}));
    Delete();
    EXPECT_EQ(Freed(), Numbers({1, 1, 1}));
}

TEST_F(Array, RemoveFreesWhatLeavesOnceAndClosesTheGap) {
    ezArray_SetFreeFunc(mArray, sFree);
    EXPECT_TRUE(ezArray_Remove(mArray, 0));
    EXPECT_EQ(Keys(), Numbers({1, 2}));
    EXPECT_EQ(Freed(), Numbers({1, 0, 0}));
    Delete();
    EXPECT_EQ(Freed(), Numbers({1, 1, 1}));
}

TEST_F(Array, AfterTheEndNothingIsSetOrRemoved) {
    ezArray_SetFreeFunc(mArray, sFree);
    Item other;
    for (const std::size_t index : {std::size_t{3}, SIZE_MAX}) {
        EXPECT_FALSE(ezArray_SetAt(mArray, index, &other));
        EXPECT_FALSE(ezArray_Remove(mArray, index));
    }
    EXPECT_EQ(Keys(), Numbers({3, 1, 2}));
    EXPECT_EQ(Freed(), Numbers({0, 0, 0}));
    EXPECT_EQ(other.mFreed, 0);
}

TEST_F(Array, SortsByTheSortFunctionInForce) {
    ezArray_SetSortFunc(mArray, sByKey);
    EXPECT_EQ(Keys(), Numbers({3, 1, 2})) << "only when it is told to";
    ezArray_Sort(mArray);
    EXPECT_EQ(Keys(), Numbers({1, 2, 3}));
    ezArray_SetSortFunc(mArray, sByKeyDescending);
    ezArray_Sort(mArray);
    EXPECT_EQ(Keys(), Numbers({3, 2, 1}));
}

TEST_F(Array, WithoutASortFunctionTheOrderStays) {
    ezArray_Sort(mArray);
    EXPECT_EQ(Keys(), Numbers({3, 1, 2}));
}

TEST_F(Array, SortingManyItemsThatCompareEqualKeepsTheirOrder) {
    std::vector<Item> items(1000);
    ezArray* array = ezArray_New();
    for (std::size_t i = 0; i < items.size(); ++i) {
        items[i].mKey = static_cast<int>(i % 3);
        ezArray_Append(array, &items[i]);
    }
    ezArray_SetSortFunc(array, sByKey);
    ezArray_Sort(array);
    for (std::size_t i = 1; i < items.size(); ++i) {
        const Item* left = static_cast<const Item*>(ezArray_At(array, i - 1));
        const Item* right = static_cast<const Item*>(ezArray_At(array, i));
        EXPECT_TRUE(left->mKey < right->mKey || (left->mKey == right->mKey && left < right)) << i;
    }
    ezArray_Delete(array);
}

TEST_F(Array, SearchGivesTheFirstThatAnswersOrMinus1) {
    Item another = {2};
    ezArray_Append(mArray, &another);
    int key = 2;
    EXPECT_EQ(ezArray_Search(mArray, &key, sHasKey), 2);
    key = 3;
    EXPECT_EQ(ezArray_Search(mArray, &key, sHasKey), 0);
    key = 4;
    EXPECT_EQ(ezArray_Search(mArray, &key, sHasKey), -1);
}

TEST_F(Array, ANullArrayIsEmptyAndTakesNothing) {
    Item item;
    ezArray_Append(nullptr, &item);
    EXPECT_EQ(ezArray_GetCount(nullptr), 0U);
    EXPECT_EQ(ezArray_At(nullptr, 0), nullptr);
    EXPECT_FALSE(ezArray_SetAt(nullptr, 0, &item));
    EXPECT_FALSE(ezArray_Remove(nullptr, 0));
    ezArray_SetFreeFunc(nullptr, sFree);
    ezArray_SetSortFunc(nullptr, sByKey);
    ezArray_Sort(nullptr);
    EXPECT_EQ(ezArray_Search(nullptr, &item, sHasKey), -1);
    ezArray_Delete(nullptr);
}

RC_GTEST_PROP(ArrayModel, IsAVectorThatFreesWhatLeavesItOnce, ()) {
    std::vector<std::unique_ptr<Item>> owned;
    std::vector<Item*> model;
    std::vector<Item*> left;
    ezArray* array = ezArray_New();
    ezArray_SetFreeFunc(array, sFree);
    ezArray_SetSortFunc(array, sByKey);
    const auto make = [&] {
        owned.push_back(std::make_unique<Item>());
        owned.back()->mKey = *rc::gen::inRange(0, 4);
        return owned.back().get();
    };
    const int steps = *rc::gen::inRange(0, 60);
    for (int step = 0; step < steps; ++step) {
        const std::size_t index = *rc::gen::inRange<std::size_t>(0, model.size() + 2);
        const bool fInside = index < model.size();
        switch (*rc::gen::weightedElement<int>({{4, 0}, {1, 1}, {1, 2}, {1, 3}, {1, 4}})) {
        case 0:
            model.push_back(make());
            ezArray_Append(array, model.back());
            break;
        case 1: {
            Item* item = make();
            RC_ASSERT(ezArray_SetAt(array, index, item) == fInside);
            if (fInside) {
                left.push_back(model[index]);
                model[index] = item;
            }
            break;
        }
        case 2:
            RC_ASSERT(ezArray_Remove(array, index) == fInside);
            if (fInside) {
                left.push_back(model[index]);
                model.erase(model.begin() + static_cast<std::ptrdiff_t>(index));
            }
            break;
        case 3:
            ezArray_Sort(array);
            std::stable_sort(model.begin(), model.end(), [](const Item* aLeft, const Item* aRight) {
                return aLeft->mKey < aRight->mKey;
            });
            break;
        default: {
            const int key = *rc::gen::inRange(0, 5);
            const auto found = std::find_if(model.begin(), model.end(),
                                            [&](const Item* anItem) { return anItem->mKey == key; });
            RC_ASSERT(ezArray_Search(array, &key, sHasKey) ==
                      (found == model.end() ? -1 : found - model.begin()));
        }
        }
        RC_ASSERT(ezArray_GetCount(array) == model.size());
        for (std::size_t i = 0; i < model.size(); ++i) {
            RC_ASSERT(ItemAt(array, i) == model[i]);
            RC_ASSERT(model[i]->mFreed == 0);
        }
        RC_ASSERT(ItemAt(array, model.size()) == nullptr);
        for (const Item* item : left) {
            RC_ASSERT(item->mFreed == 1);
        }
    }
    ezArray_Delete(array);
    for (const Item* item : model) {
        RC_ASSERT(item->mFreed == 1);
    }
    for (const Item* item : left) {
        RC_ASSERT(item->mFreed == 1);
    }
}
