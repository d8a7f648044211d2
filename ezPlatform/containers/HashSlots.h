#pragma once

#include "ezPlatform/containers/HashKey.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

/// Finds items that lie elsewhere, by hash: it knows their hashes and their places in the order added, and
/// leaves comparing to its user. All tables are made of it, those of texts with its hashes, so that none of
/// them hashes without a key. Not installed.
class ezHashSlots {
public:
    static std::uint32_t Hash(std::string_view aKey) {
        return static_cast<std::uint32_t>(ezHashKey_Hash(ezHashKey_OfProcess(), aKey));
    }
    /// For keys that are compared without the case of A to Z.
    static std::uint32_t HashNoCase(std::string_view aKey) {
        return static_cast<std::uint32_t>(ezHashKey_HashNoCase(ezHashKey_OfProcess(), aKey));
    }

    /// 1 + the index of the item of this hash for which aIsIt(index) holds, or 0.
    template <typename IsIt>
    std::size_t Find(std::uint32_t aHash, const IsIt& aIsIt) const {
        if (mSlots.empty()) {
            return 0;
        }
        for (std::size_t at = aHash & Mask(); mSlots[at].mIndex != 0; at = (at + 1) & Mask()) {
            if (mSlots[at].mHash == aHash && aIsIt(std::size_t{mSlots[at].mIndex - 1})) {
                return mSlots[at].mIndex;
            }
        }
        return 0;
    }

    /// Adds the next item; the first one has the index 0.
    void Add(std::uint32_t aHash) {
        ++mCount;
        while (mCount * 2 > mSlots.size()) {
            Grow();
        }
        Place({aHash, static_cast<std::uint32_t>(mCount)});
    }

    /// Counts the next item, of which an equal one is there: Find gives that one.
    void Skip() { ++mCount; }
    /// Forgets all items and keeps the memory.
    void Clear() {
        std::fill(mSlots.begin(), mSlots.end(), Slot{0, 0});
        mCount = 0;
    }

private:
    /// Open-addressed and at most half full, so that growing walks one block of memory and no item.
    struct Slot {
        std::uint32_t mHash;
        std::uint32_t mIndex; ///< 1 + the index of an item, or 0
    };

    std::size_t Mask() const { return mSlots.size() - 1; }

    void Place(const Slot& aSlot) {
        std::size_t at = aSlot.mHash & Mask();
        while (mSlots[at].mIndex != 0) {
            at = (at + 1) & Mask();
        }
        mSlots[at] = aSlot;
    }

    void Grow() {
        std::vector<Slot> before(mSlots.empty() ? 16 : mSlots.size() * 2);
        before.swap(mSlots);
        for (const Slot& slot : before) {
            if (slot.mIndex != 0) {
                Place(slot);
            }
        }
    }

    std::vector<Slot> mSlots;
    std::size_t mCount = 0;
};
