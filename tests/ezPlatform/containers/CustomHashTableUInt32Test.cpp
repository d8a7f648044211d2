#include "ezPlatform/containers/CustomHashTable.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace {

class UInt32Table {
public:
    UInt32Table() = default;
    ~UInt32Table() { ezCustomHashTable_Delete(mTable); }
    UInt32Table(const UInt32Table&) = delete;
    UInt32Table& operator=(const UInt32Table&) = delete;

    bool Add(const ezCString& aKey, uint32 aValue) {
        return ezCustomHashTable_AddUInt32(mTable, aKey, aValue);
    }
    bool Has(const ezCString& aKey) { return ezCustomHashTable_HasKey(mTable, aKey); }
    /// The number under a key; one that was never added reads as 0 too.
    std::uintptr_t At(const ezCString& aKey) {
        return reinterpret_cast<std::uintptr_t>(ezCustomHashTable_Lookup(mTable, aKey));
    }
    std::size_t Count() { return ezCustomHashTable_GetTupleCount(mTable); }
    std::string KeyAt(std::size_t anIndex) {
        return std::string(ezCustomHashTable_GetKeyAtIndex(mTable, anIndex).View());
    }

private:
    ezCustomHashTable* mTable = ezCustomHashTable_New_String_UInt32();
};

} // namespace

TEST(CustomHashTableUInt32, IsEmptyAtFirst) {
    UInt32Table table;
    EXPECT_EQ(table.Count(), 0U);
    EXPECT_FALSE(table.Has(""));
    EXPECT_FALSE(table.Has("clip"));
    EXPECT_EQ(table.KeyAt(0), "");
}

TEST(CustomHashTableUInt32, HasEveryKeyAddedWhateverItsNumber) {
    UInt32Table table;
    EXPECT_TRUE(table.Add("zero", 0));
    EXPECT_TRUE(table.Add("one", 1));
    EXPECT_TRUE(table.Add("largest", UINT32_MAX));
    EXPECT_TRUE(table.Add("", 4));
    for (const char* key : {"zero", "one", "largest", ""}) {
        EXPECT_TRUE(table.Has(key)) << key;
    }
    EXPECT_EQ(table.At("one"), 1U);
    EXPECT_EQ(table.At("largest"), UINT32_MAX);
    EXPECT_EQ(table.At(""), 4U);
    EXPECT_EQ(table.Count(), 4U);
}

TEST(CustomHashTableUInt32, AKeyThatIsThereKeepsItsNumber) {
    UInt32Table table;
    EXPECT_TRUE(table.Add("clip", 7));
    EXPECT_FALSE(table.Add("clip", 8));
    EXPECT_EQ(table.At("clip"), 7U);
    EXPECT_EQ(table.Count(), 1U);
}

TEST(CustomHashTableUInt32, KeysAreExact) {
    UInt32Table table;
    table.Add("clip", 1);
    table.Add(ezCString("a\0b", 3), 2);
    EXPECT_FALSE(table.Has("Clip"));
    EXPECT_FALSE(table.Has("cli"));
    EXPECT_FALSE(table.Has("clip "));
    EXPECT_FALSE(table.Has("a"));
    EXPECT_FALSE(table.Has(ezCString("a\0c", 3)));
    EXPECT_TRUE(table.Has(ezCString("a\0b", 3)));
    EXPECT_EQ(table.KeyAt(1), std::string("a\0b", 3));
}

TEST(CustomHashTableUInt32, CopiesItsKeys) {
    UInt32Table table;
    {
        const ezCString key(std::string(100, 'k').c_str());
        table.Add(key, 1);
    }
    EXPECT_TRUE(table.Has(std::string(100, 'k').c_str()));
}

TEST(CustomHashTableUInt32, ANullTableIsEmptyAndTakesNothing) {
    EXPECT_FALSE(ezCustomHashTable_AddUInt32(nullptr, "a", 1));
    EXPECT_FALSE(ezCustomHashTable_HasKey(nullptr, "a"));
    EXPECT_EQ(ezCustomHashTable_Lookup(nullptr, "a"), nullptr);
    EXPECT_EQ(ezCustomHashTable_GetTupleCount(nullptr), 0U);
    EXPECT_TRUE(ezCustomHashTable_GetKeyAtIndex(nullptr, 0).IsEmpty());
    ezCustomHashTable_Delete(nullptr);
}

RC_GTEST_PROP(CustomHashTableUInt32Model, IsAMapThatRemembersTheOrder, ()) {
    const auto tuples = *rc::gen::container<std::vector<std::pair<std::string, uint32>>>(rc::gen::pair(
        rc::gen::container<std::string>(rc::gen::element('a', 'b', '\0')), rc::gen::arbitrary<uint32>()));
    UInt32Table table;
    std::map<std::string, uint32> model;
    std::vector<std::string> order;
    for (const auto& [key, value] : tuples) {
        const bool fNew = model.emplace(key, value).second;
        if (fNew) {
            order.push_back(key);
        }
        RC_ASSERT(table.Add(ezCString(key.data(), key.size()), value) == fNew);
    }
    RC_ASSERT(table.Count() == order.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        const ezCString key(order[i].data(), order[i].size());
        RC_ASSERT(table.KeyAt(i) == order[i]);
        RC_ASSERT(table.Has(key));
        RC_ASSERT(table.At(key) == model[order[i]]);
    }
}
