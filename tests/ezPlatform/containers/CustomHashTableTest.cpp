#include "ezPlatform/containers/CustomHashTable.h"

#include "ezPlatform/base/Owned.h"

#include "support/Str.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace {

using Table = ezOwned<ezCustomHashTable_Delete>;

int gValues[8] = {};

std::vector<void*>& Duplicated() {
    static std::vector<void*> duplicated;
    return duplicated;
}

std::vector<void*>& Freed() {
    static std::vector<void*> freed;
    return freed;
}

/// Stands for the copy of a value: the one that lies beside it.
void* sDuplicate(void* aValue) {
    Duplicated().push_back(aValue);
    return static_cast<int*>(aValue) + 1;
}

void sFree(void* aValue) {
    Freed().push_back(aValue);
}

Table NewTable(void* (*aDuplicate)(void*), void (*aFree)(void*)) {
    Duplicated().clear();
    Freed().clear();
    return Table(ezCustomHashTable_New_String_Other({aDuplicate, aFree}));
}

Table NewBorrowingTable() {
    return NewTable(nullptr, nullptr);
}

std::vector<std::string> KeysOf(const Table& aTable) {
    std::vector<std::string> keys;
    for (std::size_t i = 0; i < ezCustomHashTable_GetTupleCount(aTable.get()); ++i) {
        keys.push_back(Str(ezCustomHashTable_GetKeyAtIndex(aTable.get(), i)));
    }
    return keys;
}

} // namespace

TEST(CustomHashTable, FindsWhatWasAddedAndNothingElse) {
    const Table table = NewBorrowingTable();
    EXPECT_EQ(ezCustomHashTable_GetTupleCount(table.get()), 0U);
    EXPECT_EQ(ezCustomHashTable_Lookup(table.get(), "mpg"), nullptr);
    EXPECT_TRUE(ezCustomHashTable_Add(table.get(), "mpg", &gValues[0]));
    EXPECT_TRUE(ezCustomHashTable_Add(table.get(), "", &gValues[1]));
    EXPECT_EQ(ezCustomHashTable_Lookup(table.get(), "mpg"), &gValues[0]);
    EXPECT_EQ(ezCustomHashTable_Lookup(table.get(), ""), &gValues[1]);
    EXPECT_EQ(ezCustomHashTable_GetTupleCount(table.get()), 2U);
}

TEST(CustomHashTable, KeysCompareExactly) {
    const Table table = NewBorrowingTable();
    ezCustomHashTable_Add(table.get(), "mpg", &gValues[0]);
    for (const char* key : {"MPG", "Mpg", "mp", "mpgx", " mpg"}) {
        EXPECT_EQ(ezCustomHashTable_Lookup(table.get(), key), nullptr) << key;
    }
    EXPECT_TRUE(ezCustomHashTable_Add(table.get(), "MPG", &gValues[1]));
    EXPECT_EQ(ezCustomHashTable_Lookup(table.get(), "mpg"), &gValues[0]);
}

TEST(CustomHashTable, KeysMayHoldNULBytes) {
    const Table table = NewBorrowingTable();
    const std::string b("a\0b", 3);
    const std::string c("a\0c", 3);
    EXPECT_TRUE(ezCustomHashTable_Add(table.get(), Bytes(b), &gValues[0]));
    EXPECT_TRUE(ezCustomHashTable_Add(table.get(), Bytes(c), &gValues[1]));
    EXPECT_TRUE(ezCustomHashTable_Add(table.get(), "a", &gValues[2]));
    EXPECT_EQ(ezCustomHashTable_Lookup(table.get(), Bytes(b)), &gValues[0]);
    EXPECT_EQ(ezCustomHashTable_Lookup(table.get(), Bytes(c)), &gValues[1]);
    EXPECT_EQ(ezCustomHashTable_Lookup(table.get(), "a"), &gValues[2]);
    EXPECT_EQ(KeysOf(table), (std::vector<std::string>{b, c, "a"}));
}

TEST(CustomHashTable, KeysAreCopied) {
    const Table table = NewBorrowingTable();
    const std::string longKey = "video/vnd.dlna.mpeg-tts with more bytes than are kept in place";
    {
        ezCString key(longKey.c_str());
        ezCustomHashTable_Add(table.get(), key, &gValues[0]);
        key += "changed";
    }
    EXPECT_EQ(ezCustomHashTable_Lookup(table.get(), longKey.c_str()), &gValues[0]);
    EXPECT_EQ(KeysOf(table), std::vector<std::string>{longKey});
}

TEST(CustomHashTable, EnumeratesInTheOrderAdded) {
    const Table table = NewBorrowingTable();
    std::vector<std::string> expected;
    for (int i = 0; i < 1000; ++i) {
        expected.push_back(std::to_string(i * 7919 % 1000));
        ezCustomHashTable_Add(table.get(), expected.back().c_str(), &gValues[i % 8]);
    }
    EXPECT_EQ(KeysOf(table), expected);
    EXPECT_EQ(Str(ezCustomHashTable_GetKeyAtIndex(table.get(), 1000)), "");
    EXPECT_EQ(Str(ezCustomHashTable_GetKeyAtIndex(table.get(), SIZE_MAX)), "");
}

TEST(CustomHashTable, AKeyThatIsThereIsRefusedAndTheValueStaysTheCallers) {
    Table table = NewTable(sDuplicate, sFree);
    EXPECT_TRUE(ezCustomHashTable_Add(table.get(), "a", &gValues[0]));
    EXPECT_FALSE(ezCustomHashTable_Add(table.get(), "a", &gValues[4]));
    EXPECT_FALSE(ezCustomHashTable_Add(table.get(), "a", &gValues[0]));
    EXPECT_EQ(ezCustomHashTable_Lookup(table.get(), "a"), &gValues[1]);
    EXPECT_EQ(ezCustomHashTable_GetTupleCount(table.get()), 1U);
    EXPECT_EQ(Duplicated(), std::vector<void*>{&gValues[0]}) << "a refused value is not copied";
    EXPECT_TRUE(Freed().empty()) << "nor freed";
    table.reset();
    EXPECT_EQ(Freed(), std::vector<void*>{&gValues[1]});
}

TEST(CustomHashTable, KeepsTheCopiesThatItsFunctionMakesAndFreesEachOnce) {
    Table table = NewTable(sDuplicate, sFree);
    ezCustomHashTable_Add(table.get(), "a", &gValues[0]);
    ezCustomHashTable_Add(table.get(), "b", &gValues[2]);
    EXPECT_EQ(ezCustomHashTable_Lookup(table.get(), "a"), &gValues[1]);
    EXPECT_EQ(ezCustomHashTable_Lookup(table.get(), "b"), &gValues[3]);
    EXPECT_EQ(Duplicated(), (std::vector<void*>{&gValues[0], &gValues[2]}));
    EXPECT_TRUE(Freed().empty());
    table.reset();
    EXPECT_EQ(Freed(), (std::vector<void*>{&gValues[1], &gValues[3]}));
}

TEST(CustomHashTable, WithoutADuplicateFunctionItKeepsTheValueItself) {
    Table table = NewTable(nullptr, sFree);
    ezCustomHashTable_Add(table.get(), "a", &gValues[5]);
    EXPECT_EQ(ezCustomHashTable_Lookup(table.get(), "a"), &gValues[5]);
    table.reset();
    EXPECT_EQ(Freed(), std::vector<void*>{&gValues[5]});
}

TEST(CustomHashTable, WithoutAFreeFunctionItBorrows) {
    Table table = NewTable(sDuplicate, nullptr);
    ezCustomHashTable_Add(table.get(), "a", &gValues[5]);
    table.reset();
    EXPECT_TRUE(Freed().empty());
}

TEST(CustomHashTable, ANullTableIsEmptyAndTakesNothing) {
    EXPECT_FALSE(ezCustomHashTable_Add(nullptr, "a", &gValues[0]));
    EXPECT_EQ(ezCustomHashTable_Lookup(nullptr, "a"), nullptr);
    EXPECT_EQ(ezCustomHashTable_GetTupleCount(nullptr), 0U);
    EXPECT_EQ(Str(ezCustomHashTable_GetKeyAtIndex(nullptr, 0)), "");
    ezCustomHashTable_Delete(nullptr);
}

RC_GTEST_PROP(CustomHashTableModel, IsAMapThatTakesAKeyOnce, ()) {
    Table table = NewTable(nullptr, sFree);
    std::map<std::string, void*> model;
    std::vector<std::string> order;
    std::vector<void*> owned;
    const auto keys = rc::gen::container<std::string>(rc::gen::element('a', 'A', '\0'));
    const int steps = *rc::gen::inRange(0, 60);
    for (int step = 0; step < steps; ++step) {
        const std::string key = *keys;
        void* value = &gValues[*rc::gen::inRange(0, 8)];
        const bool fresh = model.emplace(key, value).second;
        RC_ASSERT(ezCustomHashTable_Add(table.get(), Bytes(key), value) == fresh);
        if (fresh) {
            order.push_back(key);
            owned.push_back(value);
        }
        const std::string asked = *keys;
        const auto found = model.find(asked);
        RC_ASSERT((ezCustomHashTable_Lookup(table.get(), Bytes(asked)) ==
                   (found != model.end() ? found->second : nullptr)));
    }
    RC_ASSERT(KeysOf(table) == order);
    table.reset();
    RC_ASSERT((Freed() == owned));
}
