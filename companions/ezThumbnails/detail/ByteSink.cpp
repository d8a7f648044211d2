#include "ezThumbnails/detail/ByteSink.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

bool ByteSink::Append(const unsigned char* aBytes, std::size_t aCount) {
    if (aCount > mCapacity - mCount) {
        if (aCount > SIZE_MAX / 2 - mCount) {
            return false;
        }
        const std::size_t capacity = std::max(mCount + aCount, mCount * 2);
        if (!ezFreed_Resize(mBytes, capacity)) {
            return false;
        }
        mCapacity = capacity;
    }
    if (aCount != 0) {
        std::memcpy(mBytes.get() + mCount, aBytes, aCount);
        mCount += aCount;
    }
    return true;
}
