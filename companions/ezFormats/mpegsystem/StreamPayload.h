#pragma once

#include <cstddef>
#include <vector>

/// The payload of the first packets of one elementary stream, joined, up to a bound: what a codec's reader
/// gets. It begins with the payload of a packet, never within one.
class StreamPayload {
public:
    /// @param aMaximum  bytes that are kept
    explicit StreamPayload(std::size_t aMaximum) : mMaximum(aMaximum) {}

    /// A packet's payload begins with these bytes.
    void Begin(const unsigned char* aBytes, std::size_t aSize);
    /// More of it. What comes before the first packet began is not kept.
    void Add(const unsigned char* aBytes, std::size_t aSize);

    const unsigned char* GetBytes() const { return mBytes.data(); }
    std::size_t GetSize() const { return mBytes.size(); }
    /// Where the payloads of the packets begin that are kept; the first at 0.
    const std::vector<std::size_t>& GetStarts() const { return mStarts; }
    bool IsEmpty() const { return mBytes.empty(); }
    bool IsFull() const { return mBytes.size() >= mMaximum; }

private:
    std::size_t mMaximum;
    std::vector<unsigned char> mBytes;
    std::vector<std::size_t> mStarts;
};
