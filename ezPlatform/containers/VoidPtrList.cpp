#include "ezPlatform/containers/VoidPtrList.h"

#include <algorithm>
#include <cstdint>

namespace {

/// Up to here a walk is faster than a table.
constexpr std::size_t kWalkedSize = 16;

std::size_t Hash(const void* anItem) {
    // Objects lie at multiples of their alignment, so the low bits alone would meet in few slots.
    const std::uintptr_t address = reinterpret_cast<std::uintptr_t>(anItem);
    return static_cast<std::size_t>((address >> 4) ^ (address >> 12));
}

} // namespace

std::size_t ezVoidPtrList::SlotOf(const void* anItem) const {
    const std::size_t mask = mSlots.size() - 1;
    std::size_t slot = Hash(anItem) & mask;
    while (mSlots[slot] != 0 && mItems[mSlots[slot] - 1] != anItem) {
        slot = (slot + 1) & mask;
    }
    return slot;
}

void ezVoidPtrList::BuildIndex(std::size_t aSlotCount) {
    mSlots.assign(aSlotCount, 0);
    for (std::size_t i = 0; i < mItems.size(); ++i) {
        std::size_t& slot = mSlots[SlotOf(mItems[i])];
        if (slot == 0) {
            slot = i + 1;
        }
    }
}

void ezVoidPtrList::push_back(const void* anItem) {
    mItems.push_back(anItem);
    if (mItems.size() <= kWalkedSize) {
        return;
    }
    if (mSlots.size() < mItems.size() * 2) {
        BuildIndex(std::max(mSlots.size() * 2, kWalkedSize * 4));
        return;
    }
    if (mItems.size() == kWalkedSize + 1) {
        BuildIndex(mSlots.size()); // filled again: the slots of the last filling are out of date
        return;
    }
    std::size_t& slot = mSlots[SlotOf(anItem)];
    if (slot == 0) {
        slot = mItems.size();
    }
}

ezVoidPtrList::const_iterator ezVoidPtrList::find(const void* anItem) const {
    if (mItems.size() <= kWalkedSize) {
        return std::find(mItems.begin(), mItems.end(), anItem);
    }
    const std::size_t slot = mSlots[SlotOf(anItem)];
    return slot == 0 ? mItems.end() : mItems.begin() + static_cast<std::ptrdiff_t>(slot - 1);
}

void ezVoidPtrList::erase() {
    mItems.clear();
}
