#include "ezPlatform/containers/VoidPtrList.h"

#include "ezPlatform/containers/HashSlots.h"

#include <algorithm>
#include <cstdint>

namespace {

/// Up to here a walk is faster than a table.
constexpr std::size_t kWalkedSize = 16;

/// Without a key: nobody outside chooses addresses.
std::uint32_t Hash(const void* anItem) {
    // Objects lie at multiples of their alignment, so the low bits alone would meet in few slots.
    const std::uintptr_t address = reinterpret_cast<std::uintptr_t>(anItem);
    return static_cast<std::uint32_t>((address >> 4) ^ (address >> 12));
}

} // namespace

struct ezVoidPtrList::Index {
    ezHashSlots mSlots;

    std::size_t Find(const std::vector<const void*>& aItems, const void* anItem, std::uint32_t aHash) const {
        return mSlots.Find(aHash, [&](std::size_t anIndex) { return aItems[anIndex] == anItem; });
    }
    /// The next one of the items.
    void Add(const std::vector<const void*>& aItems, const void* anItem) {
        const std::uint32_t hash = Hash(anItem);
        if (Find(aItems, anItem, hash) != 0) {
            mSlots.Skip(); // the first place counts
        } else {
            mSlots.Add(hash);
        }
    }
};

ezVoidPtrList::ezVoidPtrList() = default;

ezVoidPtrList::~ezVoidPtrList() = default;

void ezVoidPtrList::push_back(const void* anItem) {
    mItems.push_back(anItem);
    if (mItems.size() <= kWalkedSize) {
        return;
    }
    if (mItems.size() > kWalkedSize + 1) {
        mIndex->Add(mItems, anItem);
        return;
    }
    if (mIndex == nullptr) {
        mIndex = std::make_unique<Index>();
    }
    mIndex->mSlots.Clear(); // of what the last filling left
    for (const void* item : mItems) {
        mIndex->Add(mItems, item);
    }
}

ezVoidPtrList::const_iterator ezVoidPtrList::find(const void* anItem) const {
    if (mItems.size() <= kWalkedSize) {
        return std::find(mItems.begin(), mItems.end(), anItem);
    }
    const std::size_t found = mIndex->Find(mItems, anItem, Hash(anItem));
    return found == 0 ? mItems.end() : mItems.begin() + static_cast<std::ptrdiff_t>(found - 1);
}

void ezVoidPtrList::erase() {
    mItems.clear();
}
