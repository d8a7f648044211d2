#include "ezPlatform/containers/PtrList.h"

#include "ezPlatform/base/Memory.h"

#include <vector>

struct ezPtrList {
    std::vector<void*> mItems;
    ezPtrListFreeFunc mFreeFunc = nullptr;
};

ezPtrList* ezPtrList_New() {
    return new ezPtrList;
}

void ezPtrList_Delete(ezPtrList* aList) {
    ezPtrList_Clear(aList);
    delete aList;
}

void ezPtrList_SetFreeFunc(ezPtrList* aList, ezPtrListFreeFunc aFreeFunc) {
    if (aList != nullptr) {
        aList->mFreeFunc = aFreeFunc;
    }
}

void ezPtrList_DefaultFreeFunc(void* anItem) {
    ezFree(anItem);
}

void ezPtrList_Append(ezPtrList* aList, void* anItem) {
    if (aList != nullptr) {
        aList->mItems.push_back(anItem);
    }
}

std::size_t ezPtrList_GetCount(const ezPtrList* aList) {
    return aList != nullptr ? aList->mItems.size() : 0;
}

void** ezPtrList_GetAt(const ezPtrList* aList, std::size_t anIndex) {
    if (aList == nullptr || anIndex >= aList->mItems.size()) {
        return nullptr;
    }
    // The stored pointers are the caller's to exchange, also through a list that it may not lengthen.
    return const_cast<void**>(&aList->mItems[anIndex]);
}

void ezPtrList_Clear(ezPtrList* aList) {
    if (aList == nullptr) {
        return;
    }
    std::vector<void*> items;
    items.swap(aList->mItems); // a free function that looks at the list finds it empty
    if (aList->mFreeFunc != nullptr) {
        for (void* item : items) {
            aList->mFreeFunc(item);
        }
    }
}
