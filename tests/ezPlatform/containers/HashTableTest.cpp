#include "ezPlatform/containers/HashTable.h"

#include "ezPlatform/base/Owned.h"
#include "ezPlatform/containers/HashSlots.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace {

using Table = ezOwned<ezHashTable_Delete>;
using Enumerator = ezOwned<ezHashTableEnumerator_Delete>;
using Entries = std::vector<std::pair<std::string, void*>>;

Table NewTable() {
    return Table(ezHashTable_New());
}

void Add(const Table& aTable, const std::string& aKey, void* aValue) {
    ezHashTable_AddEntry(aTable.get(), aKey.data(), aKey.size(), aValue);
}

void* Get(const Table& aTable, const std::string& aKey) {
    return ezHashTable_GetEntry(aTable.get(), aKey.data(), aKey.size());
}

std::pair<std::string, void*> Current(const Enumerator& anEnumerator) {
    const char* key = nullptr;
    std::size_t length = 0;
    void* value = nullptr;
    ezHashTableEnumerator_GetValue(anEnumerator.get(), &key, &length, &value);
    return {std::string(key, length), value};
}

Entries Enumerate(const Table& aTable) {
    Entries entries;
    const Enumerator enumerator(ezHashTableEnumerator_New(aTable.get()));
    while (ezHashTableEnumerator_MoveNext(enumerator.get())) {
        entries.push_back(Current(enumerator));
    }
    EXPECT_FALSE(ezHashTableEnumerator_MoveNext(enumerator.get())) << "the end stays the end";
    return entries;
}

int gValues[8] = {};

} // namespace

TEST(HashTable, FindsWhatWasAddedAndNothingElse) {
    const Table table = NewTable();
    EXPECT_EQ(Get(table, "mpg"), nullptr);
    Add(table, "mpg", &gValues[0]);
    Add(table, "jpg", &gValues[1]);
    Add(table, "", &gValues[2]);
    EXPECT_EQ(Get(table, "mpg"), &gValues[0]);
    EXPECT_EQ(Get(table, "jpg"), &gValues[1]);
    EXPECT_EQ(Get(table, ""), &gValues[2]) << "the empty key is a key";
    for (const char* key : {"MPG", "mp", "mpgx", "m"}) {
        EXPECT_EQ(Get(table, key), nullptr) << key;
    }
}

TEST(HashTable, TheEmptyKeyMayBeANullPointer) {
    const Table table = NewTable();
    EXPECT_EQ(ezHashTable_GetEntry(table.get(), nullptr, 0), nullptr);
    ezHashTable_AddEntry(table.get(), nullptr, 0, &gValues[0]);
    EXPECT_EQ(ezHashTable_GetEntry(table.get(), "", 0), &gValues[0]);
}

TEST(HashTable, KeysAreBytesOfALength) {
    const Table table = NewTable();
    Add(table, std::string("a\0b", 3), &gValues[0]);
    Add(table, std::string("a\0c", 3), &gValues[1]);
    Add(table, "a", &gValues[2]);
    Add(table, std::string("a\0", 2), &gValues[3]);
    EXPECT_EQ(Get(table, std::string("a\0b", 3)), &gValues[0]);
    EXPECT_EQ(Get(table, std::string("a\0c", 3)), &gValues[1]);
    EXPECT_EQ(Get(table, "a"), &gValues[2]);
    EXPECT_EQ(Get(table, std::string("a\0", 2)), &gValues[3]);
    EXPECT_EQ(ezHashTable_GetEntry(table.get(), "abc", 1), &gValues[2]) << "the key need not end in a NUL";
    EXPECT_EQ(Enumerate(table).size(), 4U);
}

TEST(HashTable, KeysAreCopied) {
    const Table table = NewTable();
    char key[] = "key of more bytes than are kept in place";
    const std::string written = key;
    ezHashTable_AddEntry(table.get(), key, std::strlen(key), &gValues[0]);
    std::memset(key, 'x', sizeof(key) - 1);
    EXPECT_EQ(Get(table, written), &gValues[0]);
    EXPECT_EQ(Get(table, key), nullptr);
    EXPECT_EQ(Enumerate(table), (Entries{{written, &gValues[0]}}));
}

TEST(HashTable, EnumeratesInTheOrderFirstAdded) {
    const Table table = NewTable();
    EXPECT_TRUE(Enumerate(table).empty());
    Entries expected;
    for (int i = 999; i >= 0; --i) {
        const std::string key = std::to_string(i * 7919 % 1000);
        Add(table, key, &gValues[i % 8]);
        expected.emplace_back(key, &gValues[i % 8]);
    }
    EXPECT_EQ(Enumerate(table), expected);
}

TEST(HashTable, AKeyThatIsThereKeepsItsPlaceAndGetsTheNewValue) {
    const Table table = NewTable();
    Add(table, "a", &gValues[0]);
    Add(table, "b", &gValues[1]);
    Add(table, "a", &gValues[2]);
    EXPECT_EQ(Get(table, "a"), &gValues[2]);
    EXPECT_EQ(Enumerate(table), (Entries{{"a", &gValues[2]}, {"b", &gValues[1]}}));
    Add(table, "a", nullptr);
    EXPECT_EQ(Get(table, "a"), nullptr);
    EXPECT_EQ(Enumerate(table).size(), 2U) << "a null value is a value";
}

TEST(HashTable, KeysAddedDuringAWalkAreMetAtItsEnd) {
    const Table table = NewTable();
    Add(table, "a", &gValues[0]);
    Add(table, "b", &gValues[1]);
    const Enumerator enumerator(ezHashTableEnumerator_New(table.get()));
    Entries met;
    while (ezHashTableEnumerator_MoveNext(enumerator.get())) {
        met.push_back(Current(enumerator));
        if (met.size() <= 100) {
            Add(table, "added" + std::to_string(met.size()), &gValues[2]);
        }
        EXPECT_EQ(Current(enumerator), met.back()) << "the walk stands where it stood";
    }
    ASSERT_EQ(met.size(), 102U);
    EXPECT_EQ(met[0].first, "a");
    EXPECT_EQ(met[1].first, "b");
    EXPECT_EQ(met[2].first, "added1");
    EXPECT_EQ(met[101].first, "added100");
}

TEST(HashTable, AnEnumeratorOfAnEmptyTableMeetsWhatIsAddedLater) {
    const Table table = NewTable();
    const Enumerator enumerator(ezHashTableEnumerator_New(table.get()));
    EXPECT_FALSE(ezHashTableEnumerator_MoveNext(enumerator.get()));
    Add(table, "a", &gValues[0]);
    ASSERT_TRUE(ezHashTableEnumerator_MoveNext(enumerator.get()));
    EXPECT_EQ(Current(enumerator).first, "a");
    EXPECT_FALSE(ezHashTableEnumerator_MoveNext(enumerator.get()));
}

TEST(HashTable, AnEnumeratorGivesOnlyWhatIsWanted) {
    const Table table = NewTable();
    Add(table, "key", &gValues[3]);
    const Enumerator enumerator(ezHashTableEnumerator_New(table.get()));
    ASSERT_TRUE(ezHashTableEnumerator_MoveNext(enumerator.get()));
    ezHashTableEnumerator_GetValue(enumerator.get(), nullptr, nullptr, nullptr);
    const char* key = nullptr;
    ezHashTableEnumerator_GetValue(enumerator.get(), &key, nullptr, nullptr);
    EXPECT_STREQ(key, "key");
    std::size_t length = 0;
    ezHashTableEnumerator_GetValue(enumerator.get(), nullptr, &length, nullptr);
    EXPECT_EQ(length, 3U);
    void* value = nullptr;
    ezHashTableEnumerator_GetValue(enumerator.get(), nullptr, nullptr, &value);
    EXPECT_EQ(value, &gValues[3]);
}

TEST(HashTable, ANullTableIsEmptyAndTakesNothing) {
    ezHashTable_AddEntry(nullptr, "a", 1, &gValues[0]);
    EXPECT_EQ(ezHashTable_GetEntry(nullptr, "a", 1), nullptr);
    const Enumerator enumerator(ezHashTableEnumerator_New(nullptr));
    EXPECT_FALSE(ezHashTableEnumerator_MoveNext(enumerator.get()));
    EXPECT_FALSE(ezHashTableEnumerator_MoveNext(enumerator.get()));
    ezHashTable_Delete(nullptr);
    ezHashTableEnumerator_Delete(nullptr);
}

RC_GTEST_PROP(HashTableModel, IsAMapInTheOrderFirstAdded, ()) {
    const Table table = NewTable();
    Entries model;
    const auto keys = rc::gen::container<std::string>(rc::gen::element('a', 'b', '\0'));
    const auto find = [&model](const std::string& aKey) {
        for (auto& entry : model) {
            if (entry.first == aKey) {
                return &entry;
            }
        }
        return static_cast<std::pair<std::string, void*>*>(nullptr);
    };
    const int steps = *rc::gen::inRange(0, 60);
    for (int step = 0; step < steps; ++step) {
        const std::string key = *keys;
        void* value = &gValues[*rc::gen::inRange(0, 8)];
        if (*rc::gen::arbitrary<bool>()) {
            Add(table, key, value);
            if (auto* entry = find(key)) {
                entry->second = value;
            } else {
                model.emplace_back(key, value);
            }
        }
        const auto* entry = find(key);
        RC_ASSERT((Get(table, key) == (entry != nullptr ? entry->second : nullptr)));
    }
    RC_ASSERT((Enumerate(table) == model));
}

TEST(HashTable, BeforeTheFirstMoveThereIsNoEntry) {
    const Table table = NewTable();
    Add(table, "mpg", &gValues[0]);
    const Enumerator enumerator(ezHashTableEnumerator_New(table.get()));
    const char* key = "untouched";
    std::size_t length = 9;
    void* value = &gValues[7];
    ezHashTableEnumerator_GetValue(enumerator.get(), &key, &length, &value);
    EXPECT_STREQ(key, "untouched");
    EXPECT_EQ(length, 9U);
    EXPECT_EQ(value, &gValues[7]);
    EXPECT_TRUE(ezHashTableEnumerator_MoveNext(enumerator.get()));
    EXPECT_EQ(Current(enumerator), (std::pair<std::string, void*>("mpg", &gValues[0])));
}

// The table tells keys apart by 32 bits of their hash first, so that two of many thousands are alike there.
TEST(HashTable, KeysOfOneHashAreKeptApart) {
    std::unordered_map<std::uint32_t, std::string> seen;
    std::string first;
    std::string second;
    for (int i = 0; first.empty(); ++i) {
        const std::string key = std::to_string(i);
        const auto hash = ezHashSlots::Hash(key);
        const auto place = seen.emplace(hash, key);
        if (!place.second) {
            first = place.first->second;
            second = key;
        }
    }
    const Table table = NewTable();
    Add(table, first, &gValues[0]);
    EXPECT_EQ(Get(table, second), nullptr);
    Add(table, second, &gValues[1]);
    EXPECT_EQ(Get(table, first), &gValues[0]);
    EXPECT_EQ(Get(table, second), &gValues[1]);
}
