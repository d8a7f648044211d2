#pragma once

#include "ezPlatform/base/Export.h"

#include <cstddef>

/// A block of bytes whose size may come from input. Its content is undefined until written. Freed on
/// destruction.
class EZPLATFORM_API ezDataBuffer {
public:
    /// Takes aSize bytes; where they cannot be had the buffer is empty, which is an ordinary failure.
    explicit ezDataBuffer(std::size_t aSize);
    ~ezDataBuffer();

    ezDataBuffer(const ezDataBuffer&) = delete;
    ezDataBuffer& operator=(const ezDataBuffer&) = delete;

    /// The block; null when it is empty.
    void* data() const { return mData; }
    /// The size asked for, or 0 when it could not be had.
    std::size_t GetSize() const { return mSize; }

private:
    void* mData = nullptr;
    std::size_t mSize = 0;
};
