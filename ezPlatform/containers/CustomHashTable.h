#pragma once

#include "ezPlatform/base/Export.h"
#include "ezPlatform/text/CString.h"

#include <cstddef>

/// A table from texts to values that it copies and frees through value functions. Keys are copied, compared
/// exactly and enumerated in the order added. A null table is empty and takes nothing.
struct ezCustomHashTable;

/// How a table treats its values; null for what it leaves alone.
struct ezCustomHashTableValueFuncs {
    void* (*mDuplicate)(
        void* aValue);           ///< makes the copy that the table keeps; null: it keeps the value itself
    void (*mFree)(void* aValue); ///< frees a value that leaves the table; null: values are borrowed
};

/// Given back with ezCustomHashTable_Delete.
EZPLATFORM_API ezCustomHashTable*
ezCustomHashTable_New_String_Other(const ezCustomHashTableValueFuncs& aFuncs);
/// Frees the values through their free function, then the table. Null is ignored.
EZPLATFORM_API void ezCustomHashTable_Delete(ezCustomHashTable* aTable);
/// The value of a key, or null.
EZPLATFORM_API void* ezCustomHashTable_Lookup(ezCustomHashTable* aTable, const ezCString& aKey);
/// Files a value. False, and the value stays the caller's, when the key is there already.
EZPLATFORM_API bool ezCustomHashTable_Add(ezCustomHashTable* aTable, const ezCString& aKey, void* aValue);
/// The number of keys; indices are below it. 0 of a null table.
EZPLATFORM_API std::size_t ezCustomHashTable_GetTupleCount(const ezCustomHashTable* aTable);
/// The key at an index, in the order added; the empty text past the end.
EZPLATFORM_API ezCString ezCustomHashTable_GetKeyAtIndex(ezCustomHashTable* aTable, std::size_t anIndex);

/// A table from texts to numbers. Used with the two functions below, ezCustomHashTable_HasKey and _Delete.
EZPLATFORM_API ezCustomHashTable* ezCustomHashTable_New_String_UInt32();
/// Files a number. False when the key is there already; its number stays.
EZPLATFORM_API bool ezCustomHashTable_AddUInt32(ezCustomHashTable* aTable, const ezCString& aKey,
                                                uint32 aValue);
/// True when the key is there, with whatever value; to the letter. False for a null table.
EZPLATFORM_API bool ezCustomHashTable_HasKey(ezCustomHashTable* aTable, const ezCString& aKey);
