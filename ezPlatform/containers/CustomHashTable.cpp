#include "ezPlatform/containers/CustomHashTable.h"

#include "ezPlatform/containers/OrderedByteMap.h"

#include <cstdint>

struct ezCustomHashTable {
    ezOrderedByteMap mMap;
    ezCustomHashTableValueFuncs mFuncs;
};

ezCustomHashTable* ezCustomHashTable_New_String_Other(const ezCustomHashTableValueFuncs& aFuncs) {
    return new ezCustomHashTable{{}, aFuncs};
}

void ezCustomHashTable_Delete(ezCustomHashTable* aTable) {
    if (aTable == nullptr) {
        return;
    }
    if (aTable->mFuncs.mFree != nullptr) {
        for (std::size_t i = 0; i < aTable->mMap.GetCount(); ++i) {
            aTable->mFuncs.mFree(aTable->mMap.GetAt(i).mValue);
        }
    }
    delete aTable;
}

void* ezCustomHashTable_Lookup(ezCustomHashTable* aTable, const ezCString& aKey) {
    if (aTable == nullptr) {
        return nullptr;
    }
    const ezOrderedByteMap::Tuple* tuple = aTable->mMap.Find(aKey.View());
    return tuple != nullptr ? tuple->mValue : nullptr;
}

bool ezCustomHashTable_Add(ezCustomHashTable* aTable, const ezCString& aKey, void* aValue) {
    if (aTable == nullptr || aTable->mMap.Find(aKey.View()) != nullptr) {
        return false;
    }
    aTable->mMap.Add(aKey.View(),
                     aTable->mFuncs.mDuplicate != nullptr ? aTable->mFuncs.mDuplicate(aValue) : aValue);
    return true;
}

std::size_t ezCustomHashTable_GetTupleCount(const ezCustomHashTable* aTable) {
    return aTable != nullptr ? aTable->mMap.GetCount() : 0;
}

ezCString ezCustomHashTable_GetKeyAtIndex(ezCustomHashTable* aTable, std::size_t anIndex) {
    if (anIndex >= ezCustomHashTable_GetTupleCount(aTable)) {
        return ezCString();
    }
    const std::string& key = aTable->mMap.GetAt(anIndex).mKey;
    return ezCString(key.c_str(), key.size());
}

ezCustomHashTable* ezCustomHashTable_New_String_UInt32() {
    return ezCustomHashTable_New_String_Other({nullptr, nullptr});
}

bool ezCustomHashTable_AddUInt32(ezCustomHashTable* aTable, const ezCString& aKey, uint32 aValue) {
    // A number in the place of a pointer: nothing follows it, and no optimisation is lost on it.
    // NOLINTNEXTLINE(performance-no-int-to-ptr)
    return ezCustomHashTable_Add(aTable, aKey, reinterpret_cast<void*>(static_cast<std::uintptr_t>(aValue)));
}

bool ezCustomHashTable_HasKey(ezCustomHashTable* aTable, const ezCString& aKey) {
    return aTable != nullptr && aTable->mMap.Find(aKey.View()) != nullptr;
}
