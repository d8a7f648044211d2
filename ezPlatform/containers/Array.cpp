#include "ezPlatform/containers/Array.h"

#include <algorithm>
#include <vector>

struct ezArray {
    std::vector<void*> mItems;
    ezArrayFreeFunc mFreeFunc = nullptr;
    ezArraySortFunc mSortFunc = nullptr;

    void Free(void* anItem) const {
        if (mFreeFunc != nullptr) {
            mFreeFunc(anItem);
        }
    }
};

ezArray* ezArray_New() {
    return new ezArray;
}

void ezArray_Delete(ezArray* anArray) {
    if (anArray == nullptr) {
        return;
    }
    for (void* item : anArray->mItems) {
        anArray->Free(item);
    }
    delete anArray;
}

void ezArray_SetFreeFunc(ezArray* anArray, ezArrayFreeFunc aFreeFunc) {
    if (anArray != nullptr) {
        anArray->mFreeFunc = aFreeFunc;
    }
}

void ezArray_SetSortFunc(ezArray* anArray, ezArraySortFunc aSortFunc) {
    if (anArray != nullptr) {
        anArray->mSortFunc = aSortFunc;
    }
}

void ezArray_Append(ezArray* anArray, void* anItem) {
    if (anArray != nullptr) {
        anArray->mItems.push_back(anItem);
    }
}

void* ezArray_At(const ezArray* anArray, std::size_t anIndex) {
    return anIndex < ezArray_GetCount(anArray) ? anArray->mItems[anIndex] : nullptr;
}

bool ezArray_SetAt(ezArray* anArray, std::size_t anIndex, void* anItem) {
    if (anIndex >= ezArray_GetCount(anArray)) {
        return false;
    }
    void* left = anArray->mItems[anIndex];
    anArray->mItems[anIndex] = anItem;
    if (left != anItem) {
        anArray->Free(left);
    }
    return true;
}

bool ezArray_Remove(ezArray* anArray, std::size_t anIndex) {
    if (anIndex >= ezArray_GetCount(anArray)) {
        return false;
    }
    void* left = anArray->mItems[anIndex];
    anArray->mItems.erase(anArray->mItems.begin() + static_cast<std::ptrdiff_t>(anIndex));
    anArray->Free(left);
    return true;
}

std::size_t ezArray_GetCount(const ezArray* anArray) {
    return anArray != nullptr ? anArray->mItems.size() : 0;
}

void ezArray_Sort(ezArray* anArray) {
    if (anArray != nullptr && anArray->mSortFunc != nullptr) {
        std::stable_sort(
            anArray->mItems.begin(), anArray->mItems.end(),
            [=](const void* aLeft, const void* aRight) { return anArray->mSortFunc(aLeft, aRight) < 0; });
    }
}

std::ptrdiff_t ezArray_Search(const ezArray* anArray, const void* aKey, ezArraySearchFunc aMatch) {
    for (std::size_t i = 0; i < ezArray_GetCount(anArray); ++i) {
        if (aMatch(anArray->mItems[i], aKey) != 0) {
            return static_cast<std::ptrdiff_t>(i);
        }
    }
    return -1;
}
