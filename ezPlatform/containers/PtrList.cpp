#include "ezPlatform/containers/PtrList.h"

#include "ezPlatform/base/Memory.h"

#include <algorithm>
#include <memory>
#include <utility>

struct ezPtrList {
    // Most lists hold one or two items: those lie in the list itself.
    static constexpr std::size_t kOwnCapacity = 2;

    void** Items() { return mMore != nullptr ? mMore.get() : mOwn; }

    std::unique_ptr<void*[]> mMore;
    std::size_t mCount = 0;
    ezPtrListFreeFunc mFreeFunc = nullptr;
    void* mOwn[kOwnCapacity] = {};
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
    if (aList == nullptr) {
        return;
    }
    const std::size_t count = aList->mCount;
    // The capacity is the power of two that the count has reached.
    if (count >= ezPtrList::kOwnCapacity && (count & (count - 1)) == 0) {
        std::unique_ptr<void*[]> more(new void*[count * 2]);
        std::copy_n(aList->Items(), count, more.get());
        aList->mMore = std::move(more);
    }
    aList->Items()[count] = anItem;
    ++aList->mCount;
}

std::size_t ezPtrList_GetCount(const ezPtrList* aList) {
    return aList != nullptr ? aList->mCount : 0;
}

void** ezPtrList_GetAt(const ezPtrList* aList, std::size_t anIndex) {
    if (aList == nullptr || anIndex >= aList->mCount) {
        return nullptr;
    }
    // The stored pointers are the caller's to exchange, also through a list that it may not lengthen.
    return const_cast<ezPtrList*>(aList)->Items() + anIndex;
}

void ezPtrList_Clear(ezPtrList* aList) {
    if (aList == nullptr) {
        return;
    }
    // Taken out first: a free function that looks at the list finds it empty.
    const std::unique_ptr<void*[]> more = std::move(aList->mMore);
    void* own[ezPtrList::kOwnCapacity] = {aList->mOwn[0], aList->mOwn[1]};
    void** items = more != nullptr ? more.get() : own;
    const std::size_t count = std::exchange(aList->mCount, 0);
    if (aList->mFreeFunc != nullptr) {
        std::for_each(items, items + count, aList->mFreeFunc);
    }
}
