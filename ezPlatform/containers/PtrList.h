#pragma once

#include "ezPlatform/base/Export.h"

#include <cstddef>

/// A list of pointers behind free functions. A null list is empty and takes nothing.
struct ezPtrList;

using ezPtrListFreeFunc = void (*)(void* anItem);

/// An empty list without a free function: it borrows its items. Given back with ezPtrList_Delete.
EZPLATFORM_API ezPtrList* ezPtrList_New();
/// Frees the items through the free function, then the list. Null is ignored.
EZPLATFORM_API void ezPtrList_Delete(ezPtrList* aList);
/// Makes the list own its items; null makes it borrow them.
EZPLATFORM_API void ezPtrList_SetFreeFunc(ezPtrList* aList, ezPtrListFreeFunc aFreeFunc);
/// A free function for items that came from ezStrdup or ezMalloc.
EZPLATFORM_API void ezPtrList_DefaultFreeFunc(void* anItem);
EZPLATFORM_API void ezPtrList_Append(ezPtrList* aList, void* anItem);
EZPLATFORM_API std::size_t ezPtrList_GetCount(const ezPtrList* aList);
/// The address of the stored pointer, valid until the list changes; null behind the end.
EZPLATFORM_API void** ezPtrList_GetAt(const ezPtrList* aList, std::size_t anIndex);
/// Frees the items through the free function; the list stays, empty.
EZPLATFORM_API void ezPtrList_Clear(ezPtrList* aList);
