#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

/// A range of bytes of another range.
struct BytePiece {
    std::uint64_t mOffset = 0;
    std::uint64_t mSize = 0;
};

/// Bytes that can be read at any position.
class ByteSource {
public:
    ByteSource() = default;
    virtual ~ByteSource();
    ByteSource(const ByteSource&) = delete;
    ByteSource& operator=(const ByteSource&) = delete;

    /// How many bytes there are; without a value when that is not known.
    virtual std::optional<std::uint64_t> GetSize() const = 0;
    /// The position that no byte is at or after: 2^64-1 when the size is not known.
    std::uint64_t GetEnd() const { return GetSize().value_or(UINT64_MAX); }

    /// Borrows bytes from a position on: as many as are buffered, at least one. They are borrowed until the
    /// next call. 0 when there is no byte there, or it cannot be read; *aBytes is then left as it is.
    virtual std::size_t Borrow(std::uint64_t aPosition, const unsigned char** aBytes) = 0;

    /// The same of the block that the source keeps in memory, if it keeps one: most reads are of a few bytes
    /// of it, and this costs no virtual call.
    std::size_t BorrowBuffered(std::uint64_t aPosition, const unsigned char** aBytes) const {
        const std::uint64_t place = aPosition - mBufferedStart; // very large before the start
        if (place >= mBufferedLength) {
            return 0;
        }
        *aBytes = mBuffered + place;
        return mBufferedLength - static_cast<std::size_t>(place);
    }

    /// False when there is no byte there, or it cannot be read.
    bool Get(std::uint64_t aPosition, unsigned char* aByte) {
        const unsigned char* bytes = nullptr;
        if (BorrowBuffered(aPosition, &bytes) == 0 && Borrow(aPosition, &bytes) == 0) {
            return false;
        }
        *aByte = *bytes;
        return true;
    }

protected:
    /// True when the byte there is of that block.
    bool IsBuffered(std::uint64_t aPosition) const { return aPosition - mBufferedStart < mBufferedLength; }

    /// States what block there is, whenever that changes. Borrow gives the same of it as BorrowBuffered.
    void KeepBuffered(const unsigned char* aBlock, std::uint64_t aStart, std::size_t aLength) {
        mBuffered = aBlock;
        mBufferedStart = aStart;
        mBufferedLength = aLength;
    }

private:
    const unsigned char* mBuffered = nullptr;
    std::uint64_t mBufferedStart = 0;
    std::size_t mBufferedLength = 0;
};

/// Pieces of other bytes, one after the other. Reading forward is cheap; reading back starts over.
class PieceBytes : public ByteSource {
public:
    /// aBytes is borrowed.
    PieceBytes(ByteSource& aBytes, std::vector<BytePiece> aPieces);
    ~PieceBytes() override;

    std::optional<std::uint64_t> GetSize() const override { return mSize; }
    std::size_t Borrow(std::uint64_t aPosition, const unsigned char** aBytes) override;
    /// Where aSize bytes from aPosition on, which must be there, lie in the other bytes.
    std::vector<BytePiece> Slice(std::uint64_t aPosition, std::uint64_t aSize) const;

protected:
    /// For who comes to know the pieces one after the other.
    void Append(const BytePiece& aPiece);
    void Clear();
    std::uint64_t GetKnownSize() const { return mSize; }

private:
    ByteSource& mBytes;
    std::vector<BytePiece> mPieces;
    std::uint64_t mSize = 0;
    std::size_t mPiece = 0;        ///< the one of the last byte
    std::uint64_t mPieceStart = 0; ///< its position here
};

/// Those of a block of memory, borrowed.
class BlockBytes : public ByteSource {
public:
    BlockBytes(const unsigned char* aBlock, std::size_t aSize) : mBlock(aBlock), mSize(aSize) {}
    ~BlockBytes() override;

    std::optional<std::uint64_t> GetSize() const override { return mSize; }
    std::size_t Borrow(std::uint64_t aPosition, const unsigned char** aBytes) override;

private:
    const unsigned char* mBlock;
    std::size_t mSize;
};
