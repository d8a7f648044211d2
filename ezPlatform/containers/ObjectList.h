#pragma once

#include <algorithm>
#include <cstddef>
#include <unordered_set>
#include <vector>

/// Objects in the order added. With auto-delete the list owns them and deletes each distinct pointer once
/// when it is destroyed, however often the pointer stands in it; without, it borrows them.
template <typename T>
class ezObjectList {
public:
    /// A place in the list, good until an item is added or the items are taken out.
    using const_iterator = typename std::vector<T*>::const_iterator;

    ezObjectList() = default;
    ~ezObjectList() { erase(); }

    ezObjectList(const ezObjectList&) = delete;
    ezObjectList& operator=(const ezObjectList&) = delete;

    /// Makes the list own its items, those that are in it already too, or borrow them, as it does at first.
    void SetAutoDelete(bool afAutoDelete) { mfAutoDelete = afAutoDelete; }

    /// Adds an item at the end, null too; the list owns it with auto-delete. It may stand there more than
    /// once.
    void push_back(T* anItem) { mItems.push_back(anItem); }
    /// The first place of anItem, or end(). Its cost grows with the list.
    const_iterator find(const T* anItem) const { return std::find(mItems.begin(), mItems.end(), anItem); }

    /// Takes all items out; deletes them with auto-delete.
    void erase() {
        std::vector<T*> items;
        items.swap(mItems);
        if (mfAutoDelete) {
            std::unordered_set<T*> deleted;
            for (T* item : items) {
                if (deleted.insert(item).second) {
                    delete item;
                }
            }
        }
    }

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
    /// The item at an index below size(). Walking by index stays valid while items are added.
    T* operator[](std::size_t anIndex) const { return mItems[anIndex]; }

private:
    std::vector<T*> mItems;
    bool mfAutoDelete = false;
};
