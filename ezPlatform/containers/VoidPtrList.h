#pragma once

#include "ezPlatform/base/Export.h"

#include <cstddef>
#include <memory>
#include <vector>

/// Borrowed pointers in the order added, found again at a cost that does not grow with their number. Emptied
/// and filled again it takes no new memory, so that a list can serve one request after another.
class EZPLATFORM_API ezVoidPtrList {
public:
    /// A place in the list, good until an item is added or the items are taken out.
    using const_iterator = std::vector<const void*>::const_iterator;

    ezVoidPtrList();
    ~ezVoidPtrList();
    ezVoidPtrList(const ezVoidPtrList&) = delete;
    ezVoidPtrList& operator=(const ezVoidPtrList&) = delete;

    /// Adds a pointer at the end, null too. It is never followed, and may stand there more than once.
    void push_back(const void* anItem);
    /// The first place of anItem, or end().
    const_iterator find(const void* anItem) const;
    /// Takes all items out.
    void erase();

    /// The number of items, and whether it is 0; an item that stands twice counts twice.
    /// @{
    std::size_t size() const { return mItems.size(); }
    bool empty() const { return mItems.empty(); }
    /// @}
    /// The first place and the one past the last.
    /// @{
    const_iterator begin() const { return mItems.begin(); }
    const_iterator end() const { return mItems.end(); }
    /// @}
    /// The item at an index below size().
    const void* operator[](std::size_t anIndex) const { return mItems[anIndex]; }

private:
    struct Index;

    std::vector<const void*> mItems;
    std::unique_ptr<Index> mIndex; ///< of the items; out of date or null while the list is short
};
