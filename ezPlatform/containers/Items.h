#pragma once

#include "ezPlatform/containers/PtrList.h"

/// A typed view over a pointer list: `for (Entry* entry : ezItems<Entry>(entries))`. A null list is empty.
/// The list must not change while it is walked.
template <typename T>
class ezItems {
public:
    class Iterator {
    public:
        Iterator(const ezPtrList* aList, std::size_t anIndex) : mList(aList), mIndex(anIndex) {}
        T* operator*() const { return static_cast<T*>(*ezPtrList_GetAt(mList, mIndex)); }
        Iterator& operator++() {
            ++mIndex;
            return *this;
        }
        bool operator!=(const Iterator& anOther) const { return mIndex != anOther.mIndex; }

    private:
        const ezPtrList* mList;
        std::size_t mIndex;
    };

    explicit ezItems(const ezPtrList* aList) : mList(aList) {}
    Iterator begin() const { return Iterator(mList, 0); }
    Iterator end() const { return Iterator(mList, ezPtrList_GetCount(mList)); }

private:
    const ezPtrList* mList;
};
