#include "ezPlatform/containers/VoidPtrList.h"

#include "support/NewBlocks.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

/// Addresses that a list may meet: objects side by side, objects far apart whose low bits agree, and null.
std::vector<const void*> Pool() {
    static char objects[64 * 16];
    std::vector<const void*> pool;
    for (std::size_t i = 0; i < 64; ++i) {
        pool.push_back(&objects[i * 16]);
        pool.push_back(reinterpret_cast<const void*>(static_cast<std::uintptr_t>((i + 1) << 20)));
    }
    pool.push_back(&objects[1]);
    pool.push_back(nullptr);
    return pool;
}

std::ptrdiff_t PlaceOf(const ezVoidPtrList& aList, const void* anItem) {
    return aList.find(anItem) - aList.begin();
}

/// Every pointer of the pool is found where std::find finds it, and the list holds just the model.
bool IsTheSame(const ezVoidPtrList& aList, const std::vector<const void*>& aModel,
               const std::vector<const void*>& aPool) {
    if (aList.size() != aModel.size() || aList.empty() != aModel.empty() ||
        !std::equal(aList.begin(), aList.end(), aModel.begin(), aModel.end())) {
        return false;
    }
    for (std::size_t i = 0; i < aModel.size(); ++i) {
        if (aList[i] != aModel[i]) {
            return false;
        }
    }
    return std::all_of(aPool.begin(), aPool.end(), [&](const void* anItem) {
        return PlaceOf(aList, anItem) == std::find(aModel.begin(), aModel.end(), anItem) - aModel.begin();
    });
}

} // namespace

TEST(VoidPtrList, AnEmptyListHoldsNothing) {
    const ezVoidPtrList list;
    EXPECT_TRUE(list.empty());
    EXPECT_EQ(list.size(), 0U);
    EXPECT_TRUE(list.begin() == list.end());
    EXPECT_TRUE(list.find(nullptr) == list.end());
    EXPECT_TRUE(list.find(&list) == list.end());
}

TEST(VoidPtrList, FindsEveryItemAtEveryLength) {
    const std::vector<const void*> pool = Pool();
    ezVoidPtrList list;
    std::vector<const void*> model;
    for (const void* item : pool) {
        EXPECT_TRUE(list.find(item) == list.end()) << "before it is added, at " << model.size();
        list.push_back(item);
        model.push_back(item);
        EXPECT_TRUE(IsTheSame(list, model, pool)) << "at " << model.size();
    }
}

TEST(VoidPtrList, FindsTheFirstPlaceOfADuplicate) {
    const std::vector<const void*> pool = Pool();
    for (const std::size_t length : {2U, 15U, 16U, 17U, 18U, 32U, 33U, 34U, 64U, 65U, 100U}) {
        ezVoidPtrList list;
        std::vector<const void*> model;
        for (std::size_t i = 0; i < length; ++i) {
            list.push_back(pool[i % 5]);
            model.push_back(pool[i % 5]);
        }
        EXPECT_TRUE(IsTheSame(list, model, pool)) << length;
        list.push_back(pool[50]);
        list.push_back(pool[50]);
        EXPECT_EQ(PlaceOf(list, pool[50]), static_cast<std::ptrdiff_t>(length)) << length;
    }
}

TEST(VoidPtrList, EmptiedAndFilledAgainItKnowsNothingOfTheLastFilling) {
    const std::vector<const void*> pool = Pool();
    ezVoidPtrList list;
    const std::size_t lengths[] = {0, 1, 15, 16, 17, 18, 33, 65, 130};
    for (const std::size_t first : lengths) {
        for (const std::size_t second : lengths) {
            list.erase();
            for (std::size_t i = 0; i < first; ++i) {
                list.push_back(pool[i]);
            }
            list.erase();
            EXPECT_TRUE(IsTheSame(list, {}, pool));
            std::vector<const void*> model;
            for (std::size_t i = 0; i < second; ++i) {
                list.push_back(pool[pool.size() - 1 - i]);
                model.push_back(pool[pool.size() - 1 - i]);
            }
            EXPECT_TRUE(IsTheSame(list, model, pool)) << first << " then " << second;
        }
    }
}

TEST(VoidPtrList, EmptiedAndFilledAgainItTakesNoNewMemory) {
    const std::vector<const void*> pool = Pool();
    ezVoidPtrList list;
    const std::size_t before = NewBlocks::Count();
    for (const void* item : pool) {
        list.push_back(item);
    }
    ASSERT_GT(NewBlocks::Count(), before) << "the counter counts";
    for (int filling = 0; filling < 3; ++filling) {
        list.erase();
        const std::size_t emptied = NewBlocks::Count();
        for (const void* item : pool) {
            list.push_back(item);
        }
        const std::size_t filled = NewBlocks::Count();
        EXPECT_EQ(filled, emptied);
        EXPECT_EQ(list.size(), pool.size());
    }
}

RC_GTEST_PROP(VoidPtrListModel, IsAVectorThatFinds, ()) {
    const std::vector<const void*> pool = Pool();
    ezVoidPtrList list;
    std::vector<const void*> model;
    const int fillings = *rc::gen::inRange(1, 5);
    for (int filling = 0; filling < fillings; ++filling) {
        // Few different pointers give many duplicates.
        const std::size_t different = *rc::gen::element<std::size_t>(1, 10, pool.size());
        const auto items = *rc::gen::container<std::vector<std::size_t>>(
            *rc::gen::inRange<std::size_t>(0, 140), rc::gen::inRange<std::size_t>(0, different));
        for (const std::size_t item : items) {
            list.push_back(pool[item]);
            model.push_back(pool[item]);
            RC_ASSERT(PlaceOf(list, pool[item]) ==
                      std::find(model.begin(), model.end(), pool[item]) - model.begin());
        }
        RC_ASSERT(IsTheSame(list, model, pool));
        list.erase();
        model.clear();
    }
    RC_ASSERT(IsTheSame(list, model, pool));
}
