#pragma once

#include "ezPlatform/base/Owned.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

/// A row of items that grows with what a stranger's playlist holds, so that memory for it may be refused:
/// then the row stays as it was.
template <typename Type>
class GrowingBlock {
    static_assert(std::is_trivially_copyable_v<Type>, "moved as bytes");

public:
    /// @param aMaximum  items that there will be at most: no room is made for more when it grows by itself
    explicit GrowingBlock(std::size_t aMaximum = SIZE_MAX) : mMaximum(aMaximum) {}

    /// Makes room for so many items in all. False when the memory is refused.
    bool Reserve(std::size_t aCount) {
        if (aCount <= mCapacity) {
            return true;
        }
        if (aCount > SIZE_MAX / sizeof(Type) || !ezFreed_Resize(mItems, aCount * sizeof(Type))) {
            return false;
        }
        mCapacity = aCount;
        return true;
    }

    /// Puts items, which lie elsewhere, after the last one. False, with none of them, when the memory is
    /// refused.
    bool Append(const Type* anItems, std::size_t aCount) {
        if (aCount > mCapacity - mSize &&
            !Reserve(std::max({mSize + aCount, std::min(2 * mCapacity, mMaximum), kFirst}))) {
            return false;
        }
        if (aCount != 0) {
            std::memcpy(mItems.get() + mSize, anItems, aCount * sizeof(Type));
        }
        mSize += aCount;
        return true;
    }
    bool Append(const Type& anItem) { return Append(&anItem, 1); }

    /// Keeps the memory.
    void Clear() { mSize = 0; }

    std::size_t Size() const { return mSize; }
    std::size_t Capacity() const { return mCapacity; }
    Type& operator[](std::size_t anIndex) { return mItems.get()[anIndex]; }
    const Type& operator[](std::size_t anIndex) const { return mItems.get()[anIndex]; }
    Type* begin() { return mItems.get(); }
    Type* end() { return mItems.get() + mSize; }
    const Type* begin() const { return mItems.get(); }
    const Type* end() const { return mItems.get() + mSize; }

private:
    static constexpr std::size_t kFirst = 64; ///< items of the first room that is made for some

    ezFreed<Type> mItems;
    std::size_t mMaximum;
    std::size_t mCapacity = 0;
    std::size_t mSize = 0;
};

/// A text that grows so.
class GrowingText : public GrowingBlock<char> {
public:
    using GrowingBlock<char>::GrowingBlock;
    using GrowingBlock<char>::Append;
    bool Append(std::string_view aText) { return Append(aText.data(), aText.size()); }
    std::string_view View() const { return {begin(), Size()}; }
};
