#include "ezThumbnails/detail/ByteSink.h"

#include "ezPlatform/base/Memory.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

ByteSink::~ByteSink() {
    ezFree(mBytes);
}

bool ByteSink::Append(const unsigned char* aBytes, std::size_t aCount) {
    if (aCount > mCapacity - mCount) {
        if (aCount > SIZE_MAX / 2 - mCount) {
            return false;
        }
        const std::size_t capacity = std::max(mCount + aCount, mCount * 2);
        void* const bytes = ezRealloc(mBytes, capacity);
        if (bytes == nullptr) {
            return false;
        }
        mBytes = static_cast<unsigned char*>(bytes);
        mCapacity = capacity;
    }
    if (aCount != 0) {
        std::memcpy(mBytes + mCount, aBytes, aCount);
        mCount += aCount;
    }
    return true;
}
