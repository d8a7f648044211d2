#include "ezPlatform/containers/HashTable.h"

#include "ezPlatform/containers/OrderedByteMap.h"

struct ezHashTable {
    ezOrderedByteMap mMap;
};

struct ezHashTableEnumerator {
    ezHashTable* mTable;
    std::size_t mNext;
};

ezHashTable* ezHashTable_New() {
    return new ezHashTable;
}

void ezHashTable_Delete(ezHashTable* aTable) {
    delete aTable;
}

void* ezHashTable_GetEntry(ezHashTable* aTable, const char* aKey, std::size_t aKeyLength) {
    if (aTable == nullptr) {
        return nullptr;
    }
    const ezOrderedByteMap::Tuple* tuple = aTable->mMap.Find({aKey, aKeyLength});
    return tuple != nullptr ? tuple->mValue : nullptr;
}

void ezHashTable_AddEntry(ezHashTable* aTable, const char* aKey, std::size_t aKeyLength, void* aValue) {
    if (aTable == nullptr) {
        return;
    }
    const std::string_view key(aKey, aKeyLength);
    if (ezOrderedByteMap::Tuple* tuple = aTable->mMap.Find(key)) {
        tuple->mValue = aValue;
    } else {
        aTable->mMap.Add(key, aValue);
    }
}

ezHashTableEnumerator* ezHashTableEnumerator_New(ezHashTable* aTable) {
    return new ezHashTableEnumerator{aTable, 0};
}

bool ezHashTableEnumerator_MoveNext(ezHashTableEnumerator* anEnumerator) {
    if (anEnumerator->mTable == nullptr || anEnumerator->mNext >= anEnumerator->mTable->mMap.GetCount()) {
        return false;
    }
    ++anEnumerator->mNext;
    return true;
}

void ezHashTableEnumerator_GetValue(ezHashTableEnumerator* anEnumerator, const char** aKey,
                                    std::size_t* aKeyLength, void** aValue) {
    if (anEnumerator->mNext == 0) {
        return;
    }
    const ezOrderedByteMap::Tuple& tuple = anEnumerator->mTable->mMap.GetAt(anEnumerator->mNext - 1);
    if (aKey != nullptr) {
        *aKey = tuple.mKey.c_str();
    }
    if (aKeyLength != nullptr) {
        *aKeyLength = tuple.mKey.size();
    }
    if (aValue != nullptr) {
        *aValue = tuple.mValue;
    }
}

void ezHashTableEnumerator_Delete(ezHashTableEnumerator* anEnumerator) {
    delete anEnumerator;
}
