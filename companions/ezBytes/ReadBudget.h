#pragma once

#include <algorithm>
#include <cstdint>

/// What may be read of a stranger's file: so many reads, and so many bytes in all. Once a read was refused,
/// it is known to be used up.
class ReadBudget {
public:
    explicit ReadBudget(std::uint32_t aMaxReads, std::uint64_t aMaxBytes = UINT64_MAX)
        : mReadsLeft(aMaxReads), mBytesLeft(aMaxBytes) {}

    /// Takes a read of at most so many bytes. False when there is none left, or there are not so many bytes.
    bool TakeRead(std::uint64_t aMostBytes) {
        if (mReadsLeft == 0 || mBytesLeft < aMostBytes) {
            mfUsedUp = true;
            return false;
        }
        --mReadsLeft;
        return true;
    }
    /// Takes the bytes that the read brought: no more than it was taken for.
    void TakeBytes(std::uint64_t aCount) { mBytesLeft -= aCount; }

    /// Allows so much more than is left. The sums stop at what the numbers hold.
    void Raise(std::uint64_t aReads, std::uint64_t aBytes) {
        mReadsLeft += static_cast<std::uint32_t>(
            std::min<std::uint64_t>(aReads, UINT32_MAX - std::uint64_t{mReadsLeft}));
        mBytesLeft += std::min(aBytes, UINT64_MAX - mBytesLeft);
        mfUsedUp = false;
    }

    /// Takes off what something else may cost. False, and nothing is taken, when there is not so much left.
    bool SetAside(std::uint32_t aReads, std::uint64_t aBytes) {
        if (mReadsLeft < aReads || mBytesLeft < aBytes) {
            return false;
        }
        mReadsLeft -= aReads;
        mBytesLeft -= aBytes;
        return true;
    }

    bool IsUsedUp() const { return mfUsedUp; }

private:
    std::uint32_t mReadsLeft;
    std::uint64_t mBytesLeft;
    bool mfUsedUp = false;
};
