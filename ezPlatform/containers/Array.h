#pragma once

#include "ezPlatform/base/Export.h"

#include <cstddef>

/// An array of pointers, used through free functions, sorted on demand. A null array is empty and takes
/// nothing.
struct ezArray;

/// Frees an item that leaves an array that owns its items.
using ezArrayFreeFunc = void (*)(void* anItem);
/// Below, equal to or above 0 as the left item sorts before, with or after the right one.
using ezArraySortFunc = int (*)(const void* aLeft, const void* aRight);
/// Not 0 when an item answers to a key.
using ezArraySearchFunc = int (*)(const void* anItem, const void* aKey);

/// An empty array that borrows its items. Given back with ezArray_Delete.
EZPLATFORM_API ezArray* ezArray_New();
/// Frees the items through the free function, then the array. Null is ignored.
EZPLATFORM_API void ezArray_Delete(ezArray* anArray);
/// Makes the array own its items: the function is run once on each item that leaves it.
EZPLATFORM_API void ezArray_SetFreeFunc(ezArray* anArray, ezArrayFreeFunc aFreeFunc);
/// Says what order ezArray_Sort makes; sorts nothing yet. Null takes the order away.
EZPLATFORM_API void ezArray_SetSortFunc(ezArray* anArray, ezArraySortFunc aSortFunc);
/// Adds an item after the last, sorted or not; the array owns it if it has a free function.
EZPLATFORM_API void ezArray_Append(ezArray* anArray, void* anItem);
/// The item at an index; null past the end.
EZPLATFORM_API void* ezArray_At(const ezArray* anArray, std::size_t anIndex);
/// Replaces the item at an index and frees the one that stood there. False past the end.
EZPLATFORM_API bool ezArray_SetAt(ezArray* anArray, std::size_t anIndex, void* anItem);
/// Takes the item at an index out and frees it. False past the end.
EZPLATFORM_API bool ezArray_Remove(ezArray* anArray, std::size_t anIndex);
/// The number of items; 0 of a null array.
EZPLATFORM_API std::size_t ezArray_GetCount(const ezArray* anArray);
/// Sorts by the sort function; items that compare equal keep their order. Without a function nothing happens.
EZPLATFORM_API void ezArray_Sort(ezArray* anArray);
/// The index of the first item that answers to a key, or -1.
EZPLATFORM_API std::ptrdiff_t ezArray_Search(const ezArray* anArray, const void* aKey,
                                             ezArraySearchFunc aMatch);
