#include "ezFormats/mpegsystem/StreamPayload.h"

#include <algorithm>

void StreamPayload::Begin(const unsigned char* aBytes, std::size_t aSize) {
    if (!IsFull() && (mStarts.empty() || mStarts.back() != mBytes.size())) {
        mStarts.push_back(mBytes.size());
    }
    Add(aBytes, aSize);
}

void StreamPayload::Add(const unsigned char* aBytes, std::size_t aSize) {
    if (mStarts.empty()) {
        return;
    }
    const std::size_t size = std::min(aSize, mMaximum - mBytes.size());
    if (mBytes.size() + size > mBytes.capacity()) { // by halves, but no larger than the bound
        mBytes.reserve(std::min(std::max(2 * mBytes.capacity(), mBytes.size() + size), mMaximum));
    }
    mBytes.insert(mBytes.end(), aBytes, aBytes + size);
}
