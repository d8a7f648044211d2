#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>

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
        const auto found = mIndex.find(aKey);
        return found != mIndex.end() ? found->second : nullptr;
    }

    /// Adds a key that is not there yet.
    void Add(std::string_view aKey, void* aValue) {
        mTuples.push_back({std::string(aKey), aValue});
        mIndex.emplace(mTuples.back().mKey, &mTuples.back());
    }

    std::size_t GetCount() const { return mTuples.size(); }
    Tuple& GetAt(std::size_t anIndex) { return mTuples[anIndex]; }

private:
    std::deque<Tuple> mTuples; // a deque, so that keys and tuples stay in place for the index
    std::unordered_map<std::string_view, Tuple*> mIndex;
};
