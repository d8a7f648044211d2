#pragma once

#include "ezPlatform/base/Owned.h"

#include <cstddef>

/// Bytes in memory that grow at their end. Growing throws nothing.
class ByteSink {
public:
    /// False when there is no memory for them.
    bool Append(const unsigned char* aBytes, std::size_t aCount);

    const unsigned char* GetData() const { return mBytes.get(); }
    std::size_t GetCount() const { return mCount; }

private:
    ezFreed<unsigned char> mBytes;
    std::size_t mCount = 0;
    std::size_t mCapacity = 0;
};
