#pragma once

#include "ezPlatform/containers/HashSlots.h"

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>

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
        const std::size_t found = mSlots.Find(
            ezHashSlots::Hash(aKey), [&](std::size_t anIndex) { return mTuples[anIndex].mKey == aKey; });
        return found != 0 ? &mTuples[found - 1] : nullptr;
    }

    /// Adds a key that is not there yet.
    void Add(std::string_view aKey, void* aValue) {
        mTuples.push_back({std::string(aKey), aValue});
        mSlots.Add(ezHashSlots::Hash(aKey));
    }

    std::size_t GetCount() const { return mTuples.size(); }
    Tuple& GetAt(std::size_t anIndex) { return mTuples[anIndex]; }

private:
    std::deque<Tuple> mTuples; // a deque, so that tuples stay in place while others are added
    ezHashSlots mSlots;
};
