#pragma once

#include "ezBytes/ByteSource.h"
#include "ezBytes/ReadBudget.h"

#include "ezPlatform/base/Owned.h"

#include <cstddef>
#include <cstdint>
#include <optional>

/// Bytes of a stranger's file, of which one block is kept, read within a budget: that bounds what a walk over
/// the file may cost. Who derives from it reads from its medium, and says which block a position belongs to.
///
/// A failure is remembered; what can be read all the same still is. Memory that is refused for a block is a
/// read that fails.
class BudgetedBytes : public ByteSource {
public:
    ~BudgetedBytes() override;

    std::optional<std::uint64_t> GetSize() const override { return mSize; }
    /// As of every source, without a virtual call: it is asked for at every look.
    std::uint64_t GetEnd() const { return mSize.value_or(UINT64_MAX); }
    std::size_t Borrow(std::uint64_t aPosition, const unsigned char** aBytes) override;

    /// True when all bytes of a range that the file has, and there is one, can be borrowed without a read.
    bool HasBuffered(std::uint64_t aPosition, std::size_t aSize) const;
    /// True when the byte there can be.
    bool HasBuffered(std::uint64_t aPosition) const { return IsBuffered(aPosition); }

    bool IsBudgetUsedUp() const { return mBudget.IsUsedUp(); }
    bool HasReadFailed() const { return mfReadFailed; }

protected:
    /// The block is taken by the first read, and grows with what is fetched.
    BudgetedBytes(std::optional<std::uint64_t> aSize, ReadBudget aBudget) : mSize(aSize), mBudget(aBudget) {}
    /// The block is borrowed, and so long that nothing longer is fetched.
    BudgetedBytes(std::optional<std::uint64_t> aSize, ReadBudget aBudget, unsigned char* aBlock,
                  std::size_t aCapacity)
        : mSize(aSize), mBudget(aBudget), mBlock(aBlock), mCapacity(aCapacity) {}

    /// Brings the block of a position, which is before the end and not buffered, into memory: by Fetch.
    /// Nothing is borrowed where it cannot.
    virtual void Bring(std::uint64_t aPosition) = 0;

    /// Reads up to so many bytes, which the file has if it is as long as it says. How many there were.
    /// @param afFailed  set when fewer came because the medium failed
    virtual std::size_t ReadAt(std::uint64_t aPosition, unsigned char* aPlace, std::size_t aSize,
                               bool* afFailed) = 0;

    /// Makes the block that of a position, up to so many bytes long. Bytes of it that are buffered are not
    /// read again. False when it is empty then, and, with the block as it was, at and after the end.
    bool Fetch(std::uint64_t aPosition, std::size_t aSize);

    /// The file has so many bytes, as far as that is known: no byte after them is buffered.
    void SetSize(std::optional<std::uint64_t> aSize);

    bool SetAside(std::uint32_t aReads, std::uint64_t aBytes) { return mBudget.SetAside(aReads, aBytes); }

    void RaiseBudget(std::uint64_t aReads, std::uint64_t aBytes) { mBudget.Raise(aReads, aBytes); }

    std::uint64_t GetBlockStart() const { return mBlockStart; }
    std::size_t GetBlockLength() const { return mBlockLength; }

private:
    bool Reserve(std::size_t aSize);
    bool Keep(std::size_t aLength);

    std::optional<std::uint64_t> mSize;
    ReadBudget mBudget;
    unsigned char* mBlock = nullptr; ///< not cleared: only its first mBlockLength bytes are ever read
    std::size_t mCapacity = 0;
    ezFreed<unsigned char> mTaken; ///< the block, where it is not borrowed
    std::uint64_t mBlockStart = 0;
    std::size_t mBlockLength = 0;
    bool mfReadFailed = false;
};
