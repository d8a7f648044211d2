#pragma once

#include <cstddef>

/// Bytes in memory that grow at their end. Growing throws nothing.
class ByteSink {
public:
    ByteSink() = default;
    ~ByteSink();
    ByteSink(const ByteSink&) = delete;
    ByteSink& operator=(const ByteSink&) = delete;

    /// False when there is no memory for them.
    bool Append(const unsigned char* aBytes, std::size_t aCount);

    const unsigned char* GetData() const { return mBytes; }
    std::size_t GetCount() const { return mCount; }

private:
    unsigned char* mBytes = nullptr;
    std::size_t mCount = 0;
    std::size_t mCapacity = 0;
};
