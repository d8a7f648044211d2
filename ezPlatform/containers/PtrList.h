#pragma once

#include "ezPlatform/base/Export.h"

#include <cstddef>

/// A list of pointers, used through free functions. A null list is empty and takes nothing.
struct ezPtrList;

/// The place of an item in a list. It stays valid until its item or one after it is deleted, or an item is
/// appended: a deletion keeps only the places after it, so that a walk which has taken the successor
/// beforehand can go on.
struct ezPtrListNode;

/// Frees an item that leaves a list that owns its items.
using ezPtrListFreeFunc = void (*)(void* anItem);

/// An empty list without a free function: it borrows its items. Given back with ezPtrList_Delete.
EZPLATFORM_API ezPtrList* ezPtrList_New();
/// Frees the items through the free function, then the list. Null is ignored.
EZPLATFORM_API void ezPtrList_Delete(ezPtrList* aList);
/// Makes the list own its items; null makes it borrow them.
EZPLATFORM_API void ezPtrList_SetFreeFunc(ezPtrList* aList, ezPtrListFreeFunc aFreeFunc);
/// A free function for items that came from ezStrdup or ezMalloc.
EZPLATFORM_API void ezPtrList_DefaultFreeFunc(void* anItem);
/// Adds an item at the end; the list owns it if it has a free function. Nodes and addresses taken before are
/// valid no more.
EZPLATFORM_API void ezPtrList_Append(ezPtrList* aList, void* anItem);
/// The number of items; 0 of a null list.
EZPLATFORM_API std::size_t ezPtrList_GetCount(const ezPtrList* aList);
/// The address of the stored pointer, in a row with the others until the list changes; null past the end.
EZPLATFORM_API void** ezPtrList_GetAt(const ezPtrList* aList, std::size_t anIndex);
/// Frees the items through the free function; the list stays, empty.
EZPLATFORM_API void ezPtrList_Clear(ezPtrList* aList);

/// The first node; null in an empty list.
EZPLATFORM_API ezPtrListNode* ezPtrList_GetFirst(const ezPtrList* aList);
/// The node after a node of this list; null after the last.
EZPLATFORM_API ezPtrListNode* ezPtrList_GetNext(const ezPtrList* aList, const ezPtrListNode* aNode);
/// The item of a node.
EZPLATFORM_API void* ezPtrListNode_GetData(const ezPtrListNode* aNode);
/// Takes the item of a node out of the list, and frees it through the free function. Null is ignored.
EZPLATFORM_API void ezPtrList_DeleteNode(ezPtrList* aList, ezPtrListNode* aNode);
