#pragma once

#include "ezPlatform/containers/PtrList.h"

/// A typed view over a pointer list: `for (Entry* entry : ezItems<Entry>(entries))`. A null list is empty.
/// The list must not change while it is walked.
template <typename T>
class ezItems {
public:
    /// As much of an iterator as a range-based for needs. It borrows the list.
    class Iterator {
    public:
        /// Stands at an index; the number of items is the end.
        Iterator(const ezPtrList* aList, std::size_t anIndex) : mList(aList), mIndex(anIndex) {}
        /// The item where it stands, as the list holds it: borrowed, and null where null was added. Not at
        /// the end.
        T* operator*() const { return static_cast<T*>(*ezPtrList_GetAt(mList, mIndex)); }
        /// Goes to the next place.
        Iterator& operator++() {
            ++mIndex;
            return *this;
        }
        /// True when both stand at different places of what must be one list.
        bool operator!=(const Iterator& anOther) const { return mIndex != anOther.mIndex; }

    private:
        const ezPtrList* mList;
        std::size_t mIndex;
    };

    /// A view over a list, which it borrows; null is the empty list.
    explicit ezItems(const ezPtrList* aList) : mList(aList) {}
    /// The first place, and the one past the last item that the list has when it is asked.
    /// @{
    Iterator begin() const { return Iterator(mList, 0); }
    Iterator end() const { return Iterator(mList, ezPtrList_GetCount(mList)); }
    /// @}

private:
    const ezPtrList* mList;
};
