#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// What both hash tables are made of: copied byte keys, found by hash, enumerated in the order first added.
/// Not installed.
class ezOrderedByteMap {
public:
    struct Tuple {
        std::string mKey;
        void* mValue;
    };

    /// The tuple of a key, or null. Stays where it is while others are added.
    Tuple* Find(std::string_view aKey) {
        if (mSlots.empty()) {
            return nullptr;
        }
        const std::uint32_t hash = Hash(aKey);
        for (std::size_t at = hash & Mask(); mSlots[at].mIndex != 0; at = (at + 1) & Mask()) {
            if (mSlots[at].mHash == hash && mTuples[mSlots[at].mIndex - 1].mKey == aKey) {
                return &mTuples[mSlots[at].mIndex - 1];
            }
        }
        return nullptr;
    }

    /// Adds a key that is not there yet.
    void Add(std::string_view aKey, void* aValue) {
        mTuples.push_back({std::string(aKey), aValue});
        if (mTuples.size() * 2 > mSlots.size()) {
            Grow();
        }
        Place({Hash(aKey), static_cast<std::uint32_t>(mTuples.size())});
    }

    std::size_t GetCount() const { return mTuples.size(); }
    Tuple& GetAt(std::size_t anIndex) { return mTuples[anIndex]; }

private:
    /// Open-addressed and at most half full, so that growing walks one block of memory and no tuple.
    struct Slot {
        std::uint32_t mHash;
        std::uint32_t mIndex; ///< 1 + the index of a tuple, or 0
    };

    static std::uint32_t Hash(std::string_view aKey) {
        return static_cast<std::uint32_t>(std::hash<std::string_view>()(aKey));
    }
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

    std::deque<Tuple> mTuples; // a deque, so that tuples stay in place while others are added
    std::vector<Slot> mSlots;
};
