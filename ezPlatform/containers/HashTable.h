#pragma once

#include "ezPlatform/base/Export.h"

#include <cstddef>

/// A table from byte strings to pointers that it borrows. Keys are copied. Enumerates in the order in which
/// the keys were first added, so that whatever is derived from a table is the same in every run. A null table
/// is empty and takes nothing.
struct ezHashTable;

/// Given back with ezHashTable_Delete.
EZPLATFORM_API ezHashTable* ezHashTable_New();
/// Frees the table and its keys, not the values. Null is ignored.
EZPLATFORM_API void ezHashTable_Delete(ezHashTable* aTable);
/// The value of a key, or null.
EZPLATFORM_API void* ezHashTable_GetEntry(ezHashTable* aTable, const char* aKey, std::size_t aKeyLength);
/// Files a value under a key. A key that is there already keeps its place and gets the new value.
EZPLATFORM_API void ezHashTable_AddEntry(ezHashTable* aTable, const char* aKey, std::size_t aKeyLength,
                                         void* aValue);

/// Walks a table, which must outlive it. Keys added during the walk are met at its end.
struct ezHashTableEnumerator;

/// Stands before the first key. Given back with ezHashTableEnumerator_Delete.
EZPLATFORM_API ezHashTableEnumerator* ezHashTableEnumerator_New(ezHashTable* aTable);
/// Goes to the next key; false when there is none.
EZPLATFORM_API bool ezHashTableEnumerator_MoveNext(ezHashTableEnumerator* anEnumerator);
/// The key (borrowed from the table) and the value where the enumerator stands; null for what is not wanted.
/// Before the first MoveNext nothing is written.
EZPLATFORM_API void ezHashTableEnumerator_GetValue(ezHashTableEnumerator* anEnumerator, const char** aKey,
                                                   std::size_t* aKeyLength, void** aValue);
/// Ends the walk; the table stays as it is. Null is ignored.
EZPLATFORM_API void ezHashTableEnumerator_Delete(ezHashTableEnumerator* anEnumerator);
