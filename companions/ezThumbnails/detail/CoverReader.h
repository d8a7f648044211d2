#pragma once

#include "ezThumbnails/detail/CoverLimits.h"

#include "ezPlatform/text/CString.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

class ezStream;

/// A range of bytes of a file.
struct CoverPiece {
    std::uint64_t mOffset = 0;
    std::uint64_t mSize = 0;
};

/// Bytes that can be read at any position.
class CoverBytes {
public:
    CoverBytes() = default;
    virtual ~CoverBytes();
    CoverBytes(const CoverBytes&) = delete;
    CoverBytes& operator=(const CoverBytes&) = delete;

    virtual std::uint64_t GetSize() const = 0;
    /// False when the byte is not to be had.
    virtual bool Get(std::uint64_t aPosition, unsigned char* aByte) = 0;
};

/// Those of a stream, read by blocks, kCover_MaxBlocks times at most.
class CoverStreamBytes : public CoverBytes {
public:
    /// aStream is borrowed. One that is not open, fails or waits has no bytes.
    explicit CoverStreamBytes(ezStream& aStream);
    ~CoverStreamBytes() override;

    std::uint64_t GetSize() const override { return mSize; }
    bool Get(std::uint64_t aPosition, unsigned char* aByte) override;

private:
    bool Load(std::uint64_t aBlockStart);

    ezStream& mStream;
    std::uint64_t mSize;
    std::uint64_t mBlockStart = 0;
    std::size_t mBlockLength = 0;
    std::uint32_t mLoadsLeft = kCover_MaxBlocks;
    std::array<unsigned char, kCover_BlockSize> mBlock;
};

/// Pieces of other bytes, one behind the other. Reading forth is cheap, back it starts over.
class CoverPieceBytes : public CoverBytes {
public:
    /// aBytes is borrowed.
    CoverPieceBytes(CoverBytes& aBytes, std::vector<CoverPiece> aPieces);
    ~CoverPieceBytes() override;

    std::uint64_t GetSize() const override { return mSize; }
    bool Get(std::uint64_t aPosition, unsigned char* aByte) override;
    /// Where aSize bytes from aPosition on, which must be there, lie in the other bytes.
    std::vector<CoverPiece> Slice(std::uint64_t aPosition, std::uint64_t aSize) const;

private:
    CoverBytes& mBytes;
    std::vector<CoverPiece> mPieces;
    std::uint64_t mSize = 0;
    std::size_t mPiece = 0;        ///< the one of the last byte
    std::uint64_t mPieceStart = 0; ///< its position here
};

/// Those of a block of memory, borrowed.
class CoverBlockBytes : public CoverBytes {
public:
    CoverBlockBytes(const unsigned char* aBlock, std::size_t aSize) : mBlock(aBlock), mSize(aSize) {}
    ~CoverBlockBytes() override;

    std::uint64_t GetSize() const override { return mSize; }
    bool Get(std::uint64_t aPosition, unsigned char* aByte) override;

private:
    const unsigned char* mBlock;
    std::size_t mSize;
};

/// Reads numbers and texts of a range of bytes. What goes beyond the range fails and gives 0, and from then
/// on everything does: whoever reads a header asks once, in the end.
class CoverReader {
public:
    /// All of aBytes, borrowed.
    explicit CoverReader(CoverBytes& aBytes) : CoverReader(aBytes, 0, aBytes.GetSize()) {}

    bool HasFailed() const { return mfFailed; }
    /// Fails the reader unless what was read keeps a rule.
    bool Require(bool afKept) {
        mfFailed = mfFailed || !afKept;
        return !mfFailed;
    }

    std::uint64_t GetPosition() const { return mPosition; }
    std::uint64_t GetEnd() const { return mEnd; }
    /// Bytes up to the end, stuffing included; 0 after a failure.
    std::uint64_t GetLeft() const { return mfFailed ? 0 : mEnd - mPosition; }

    /// From here on the zero that stands behind every 0xFF is stuffing (unsynchronisation of ID3v2), which no
    /// read, count or text sees.
    void SetUnsynchronised() { mfUnsynchronised = true; }
    bool IsUnsynchronised() const { return mfUnsynchronised; }

    /// Numbers of 1 to 8 bytes.
    std::uint64_t ReadBig(unsigned aByteCount);
    std::uint64_t ReadLittle(unsigned aByteCount);
    std::uint32_t ReadBig32() { return static_cast<std::uint32_t>(ReadBig(4)); }
    std::uint32_t ReadLittle32() { return static_cast<std::uint32_t>(ReadLittle(4)); }
    std::uint8_t ReadByte() { return static_cast<std::uint8_t>(ReadBig(1)); }
    /// Four bytes of seven bits, as ID3v2 has them; one with an eighth bit fails.
    std::uint32_t ReadSyncsafe32();
    /// aCount bytes; empty after a failure. For few: nothing but the file bounds it.
    ezCString ReadText(std::size_t aCount);
    /// The bytes up to a NUL, which is read as well; fails when there is none within aMaximum bytes.
    ezCString ReadZeroTerminated(std::size_t aMaximum);

    void Skip(std::uint64_t aCount);
    /// A reader of the next aCount bytes, which this one skips; a failed one of none where they are not
    /// there.
    CoverReader Take(std::uint64_t aCount);

private:
    CoverReader(CoverBytes& aBytes, std::uint64_t aStart, std::uint64_t anEnd)
        : mBytes(&aBytes), mPosition(aStart), mEnd(anEnd) {}
    unsigned char Next();
    void SkipStuffing();

    CoverBytes* mBytes;
    std::uint64_t mPosition;
    std::uint64_t mEnd;
    bool mfUnsynchronised = false;
    bool mfFailed = false;
};
