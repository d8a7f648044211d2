#include "ezPlatform/containers/ObjectList.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace {

/// Notes its number when it is deleted.
class Object {
public:
    Object(int aNumber, std::vector<int>* aDeleted) : mNumber(aNumber), mDeleted(aDeleted) {}
    virtual ~Object() { mDeleted->push_back(mNumber); }
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

private:
    int mNumber;
    std::vector<int>* mDeleted;
};

class DerivedObject : public Object {
public:
    DerivedObject(int aNumber, std::vector<int>* aDeleted, bool* anEnded)
        : Object(aNumber, aDeleted), mfEnded(anEnded) {}
    ~DerivedObject() override { *mfEnded = true; }

private:
    bool* mfEnded;
};

std::vector<Object*> ItemsOf(const ezObjectList<Object>& aList) {
    return std::vector<Object*>(aList.begin(), aList.end());
}

} // namespace

TEST(ObjectList, KeepsItemsInTheOrderAdded) {
    std::vector<int> deleted;
    Object first(1, &deleted);
    Object second(2, &deleted);
    ezObjectList<Object> list;
    EXPECT_TRUE(list.empty());
    EXPECT_EQ(list.size(), 0U);
    EXPECT_TRUE(list.begin() == list.end());
    list.push_back(&second);
    list.push_back(&first);
    list.push_back(&second);
    EXPECT_FALSE(list.empty());
    ASSERT_EQ(list.size(), 3U);
    EXPECT_EQ(list[0], &second);
    EXPECT_EQ(list[1], &first);
    EXPECT_EQ(list[2], &second);
    EXPECT_EQ(ItemsOf(list), (std::vector<Object*>{&second, &first, &second}));
    EXPECT_EQ(list.find(&second) - list.begin(), 0) << "the first place";
    EXPECT_EQ(list.find(&first) - list.begin(), 1);
    EXPECT_TRUE(list.find(nullptr) == list.end());
}

TEST(ObjectList, BorrowsItsItemsUnlessToldToDeleteThem) {
    std::vector<int> deleted;
    Object object(1, &deleted);
    {
        ezObjectList<Object> list;
        list.push_back(&object);
        list.erase();
        EXPECT_TRUE(list.empty());
        list.push_back(&object);
    }
    {
        ezObjectList<Object> list;
        list.SetAutoDelete(true);
        list.push_back(&object);
        list.SetAutoDelete(false);
    }
    EXPECT_TRUE(deleted.empty());
}

TEST(ObjectList, DeletesEachDistinctPointerOnceOnDestruction) {
    std::vector<int> deleted;
    {
        ezObjectList<Object> list;
        list.SetAutoDelete(true);
        auto* one = new Object(1, &deleted);
        auto* two = new Object(2, &deleted);
        for (Object* object : {one, two, one, one, two}) {
            list.push_back(object);
        }
        list.push_back(nullptr);
        EXPECT_EQ(list.size(), 6U);
        EXPECT_TRUE(deleted.empty());
    }
    EXPECT_EQ(deleted, (std::vector<int>{1, 2}));
}

TEST(ObjectList, DeletesThroughTheVirtualDestructor) {
    std::vector<int> deleted;
    bool ended = false;
    {
        ezObjectList<Object> list;
        list.SetAutoDelete(true);
        list.push_back(new DerivedObject(7, &deleted, &ended));
    }
    EXPECT_TRUE(ended);
    EXPECT_EQ(deleted, std::vector<int>{7});
}

TEST(ObjectList, EraseDeletesAndTheListGoesOn) {
    std::vector<int> deleted;
    ezObjectList<Object> list;
    list.SetAutoDelete(true);
    auto* one = new Object(1, &deleted);
    list.push_back(one);
    list.push_back(one);
    list.erase();
    EXPECT_EQ(deleted, std::vector<int>{1});
    EXPECT_TRUE(list.empty());
    list.erase();
    EXPECT_EQ(deleted, std::vector<int>{1});
    list.push_back(new Object(2, &deleted));
    EXPECT_EQ(list.size(), 1U);
    list.erase();
    EXPECT_EQ(deleted, (std::vector<int>{1, 2}));
}

namespace {

class Looking;
using LookingList = ezObjectList<Looking>;

class Looking {
public:
    Looking(const LookingList* aList, std::size_t* aSeen) : mList(aList), mSeen(aSeen) {}
    ~Looking() { *mSeen = mList->size(); }
    Looking(const Looking&) = delete;
    Looking& operator=(const Looking&) = delete;

private:
    const LookingList* mList;
    std::size_t* mSeen;
};

} // namespace

TEST(ObjectList, AnItemThatLooksAtTheListWhileItIsDeletedFindsItEmpty) {
    std::size_t seen = 99;
    LookingList list;
    list.SetAutoDelete(true);
    list.push_back(new Looking(&list, &seen));
    list.erase();
    EXPECT_EQ(seen, 0U);
}

TEST(ObjectList, WalkingByIndexStaysValidWhileItemsAreAdded) {
    std::vector<int> deleted;
    ezObjectList<Object> list;
    list.SetAutoDelete(true);
    list.push_back(new Object(0, &deleted));
    for (std::size_t i = 0; i < list.size() && i < 1000; ++i) {
        EXPECT_NE(list[i], nullptr);
        list.push_back(new Object(static_cast<int>(i) + 1, &deleted));
    }
    EXPECT_EQ(list.size(), 1001U);
    list.erase();
    EXPECT_EQ(deleted.size(), 1001U);
}

RC_GTEST_PROP(ObjectListModel, IsAVectorThatOwns, ()) {
    std::vector<int> deleted;
    std::vector<Object*> pool;
    const std::vector<std::size_t> picks =
        *rc::gen::container<std::vector<std::size_t>>(rc::gen::inRange<std::size_t>(0, 10));
    ezObjectList<Object> list;
    list.SetAutoDelete(true);
    std::vector<Object*> model;
    for (const std::size_t pick : picks) {
        // A pick beyond what there is makes a new object; any other adds one again.
        if (pick >= pool.size()) {
            pool.push_back(new Object(static_cast<int>(pool.size()), &deleted));
            list.push_back(pool.back());
            model.push_back(pool.back());
        } else {
            list.push_back(pool[pick]);
            model.push_back(pool[pick]);
        }
    }
    RC_ASSERT(ItemsOf(list) == model);
    for (const Object* object : pool) {
        RC_ASSERT(list.find(object) - list.begin() ==
                  std::find(model.begin(), model.end(), object) - model.begin());
    }
    list.erase();
    RC_ASSERT(deleted.size() == pool.size());
    std::sort(deleted.begin(), deleted.end());
    for (std::size_t i = 0; i < pool.size(); ++i) {
        RC_ASSERT(deleted[i] == static_cast<int>(i));
    }
}
