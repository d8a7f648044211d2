#include "ezBytes/BudgetedBytes.h"

#include <algorithm>
#include <cstring>

BudgetedBytes::~BudgetedBytes() = default;

std::size_t BudgetedBytes::Borrow(std::uint64_t aPosition, const unsigned char** aBytes) {
    if (!HasBuffered(aPosition) && aPosition < GetEnd()) {
        Bring(aPosition);
    }
    return BorrowBuffered(aPosition, aBytes);
}

bool BudgetedBytes::HasBuffered(std::uint64_t aPosition, std::size_t aSize) const {
    if (!HasBuffered(aPosition)) {
        return false;
    }
    const std::uint64_t there = std::min<std::uint64_t>(aSize, GetEnd() - aPosition);
    return there <= mBlockLength - (aPosition - mBlockStart);
}

bool BudgetedBytes::Fetch(std::uint64_t aPosition, std::size_t aSize) {
    if (aPosition >= GetEnd()) {
        return false;
    }
    const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(aSize, GetEnd() - aPosition));
    std::size_t kept = 0;
    if (HasBuffered(aPosition)) {
        const auto place = static_cast<std::size_t>(aPosition - mBlockStart);
        kept = mBlockLength - place;
        std::memmove(mBlock, mBlock + place, kept);
    }
    mBlockStart = aPosition;
    if (!mBudget.TakeRead(size - kept)) {
        return Keep(kept);
    }
    if (!Reserve(size)) {
        mfReadFailed = true;
        return Keep(kept);
    }
    const std::size_t count = ReadAt(aPosition + kept, mBlock + kept, size - kept, &mfReadFailed);
    mBudget.TakeBytes(count);
    return Keep(kept + count);
}

void BudgetedBytes::SetSize(std::optional<std::uint64_t> aSize) {
    mSize = aSize;
    const std::uint64_t most = GetEnd() - std::min(mBlockStart, GetEnd());
    Keep(static_cast<std::size_t>(std::min<std::uint64_t>(mBlockLength, most)));
}

/// Makes room for a block of so many bytes; what is there stays.
bool BudgetedBytes::Reserve(std::size_t aSize) {
    if (aSize <= mCapacity) {
        return true;
    }
    if (!ezFreed_Resize(mTaken, aSize)) {
        return false;
    }
    mBlock = mTaken.get();
    mCapacity = aSize;
    return true;
}

/// The block is so long from now on. False when it is empty.
bool BudgetedBytes::Keep(std::size_t aLength) {
    mBlockLength = aLength;
    KeepBuffered(mBlock, mBlockStart, aLength);
    return aLength != 0;
}
