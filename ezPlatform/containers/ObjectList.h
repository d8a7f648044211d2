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
    using const_iterator = typename std::vector<T*>::const_iterator;

    ezObjectList() = default;
    ~ezObjectList() { erase(); }

    ezObjectList(const ezObjectList&) = delete;
    ezObjectList& operator=(const ezObjectList&) = delete;

    void SetAutoDelete(bool afAutoDelete) { mfAutoDelete = afAutoDelete; }

    void push_back(T* anItem) { mItems.push_back(anItem); }
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

    std::size_t size() const { return mItems.size(); }
    bool empty() const { return mItems.empty(); }
    const_iterator begin() const { return mItems.begin(); }
    const_iterator end() const { return mItems.end(); }
    /// The item at an index below size(). Walking by index stays valid while items are added.
    T* operator[](std::size_t anIndex) const { return mItems[anIndex]; }

private:
    std::vector<T*> mItems;
    bool mfAutoDelete = false;
};
