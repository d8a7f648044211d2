#pragma once

#include "ezBytes/ByteSource.h"

#include "ezPlatform/text/CString.h"

#include <cstddef>
#include <cstdint>

/// Reads numbers and texts of a range of bytes. What goes beyond the range fails and gives 0, and from then
/// on everything does, without a question to the source: whoever reads a header asks once, in the end.
class ByteReader {
public:
    /// All of aBytes, borrowed.
    explicit ByteReader(ByteSource& aBytes) : ByteReader(aBytes, 0, aBytes.GetEnd()) {}

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

    /// From here on the zero that follows every 0xFF is stuffing (unsynchronisation of ID3v2), which no
    /// read, count or text sees.
    void SetUnsynchronised() { mfUnsynchronised = true; }
    bool IsUnsynchronised() const { return mfUnsynchronised; }

    /// Numbers of 1 to 8 bytes.
    std::uint64_t ReadBig(unsigned aByteCount) {
        const unsigned char* bytes = nullptr;
        if (mfUnsynchronised || aByteCount > GetLeft() ||
            mBytes->BorrowBuffered(mPosition, &bytes) < aByteCount) {
            return ReadBigAcross(aByteCount);
        }
        mPosition += aByteCount;
        if (aByteCount == 4 || aByteCount == 8) { // each a load where the compiler sees the count
            return aByteCount == 4 ? Big32At(bytes)
                                   : std::uint64_t{Big32At(bytes)} << 32 | Big32At(bytes + 4);
        }
        std::uint64_t value = 0;
        for (unsigned i = 0; i < aByteCount; ++i) {
            value = value << 8 | bytes[i];
        }
        return value;
    }
    std::uint64_t ReadLittle(unsigned aByteCount);
    std::uint32_t ReadBig32() { return static_cast<std::uint32_t>(ReadBig(4)); }
    std::uint32_t ReadLittle32() { return static_cast<std::uint32_t>(ReadLittle(4)); }
    std::uint8_t ReadByte() { return static_cast<std::uint8_t>(ReadBig(1)); }
    /// Four bytes of seven bits, as ID3v2 has them; one with an eighth bit fails.
    std::uint32_t ReadSyncsafe32();
    /// aCount bytes into a block of that size. False, the block holding anything, where they are not there.
    bool Read(unsigned char* aBlock, std::size_t aCount);
    /// aCount bytes; empty after a failure. For few: nothing but the file bounds it.
    ezCString ReadText(std::size_t aCount);
    /// The bytes up to a NUL, which is read as well; fails when there is none within aMaximum bytes.
    ezCString ReadZeroTerminated(std::size_t aMaximum);

    void Skip(std::uint64_t aCount) {
        if (mfUnsynchronised) {
            SkipWithStuffing(aCount);
        } else if (Require(aCount <= GetLeft())) {
            mPosition += aCount;
        }
    }
    /// A reader of the next aCount bytes, which this one skips; a failed one of no bytes where they are not
    /// there.
    ByteReader Take(std::uint64_t aCount) {
        ByteReader part(*mBytes, mPosition, mPosition);
        part.mfUnsynchronised = mfUnsynchronised;
        Skip(aCount);
        part.mfFailed = mfFailed;
        part.mEnd = mfFailed ? part.mPosition : mPosition;
        return part;
    }
    /// The same where the count is of all bytes, stuffing included.
    ByteReader TakeStuffed(std::uint64_t aCount) {
        ByteReader part(*mBytes, mPosition, mPosition);
        part.mfUnsynchronised = mfUnsynchronised;
        mPosition += Require(aCount <= GetLeft()) ? aCount : 0;
        part.mfFailed = mfFailed;
        part.mEnd = mPosition;
        return part;
    }

private:
    ByteReader(ByteSource& aBytes, std::uint64_t aStart, std::uint64_t anEnd)
        : mBytes(&aBytes), mPosition(aStart), mEnd(anEnd) {}
    static std::uint32_t Big32At(const unsigned char* aBytes) {
        return std::uint32_t{aBytes[0]} << 24 | std::uint32_t{aBytes[1]} << 16 |
               std::uint32_t{aBytes[2]} << 8 | aBytes[3];
    }
    /// The next bytes where the source has all of them buffered, and none is stuffing: borrowed until the
    /// next call, and passed. Else null, and nothing is passed: byte by byte there may be some, unless the
    /// reader has failed.
    const unsigned char* TakeBuffered(std::size_t aCount);
    /// Where not all of the bytes are buffered yet, or some may be stuffing.
    std::uint64_t ReadBigAcross(unsigned aByteCount);
    unsigned char Next();
    void SkipStuffing();
    void SkipWithStuffing(std::uint64_t aCount);

    ByteSource* mBytes; ///< borrowed
    std::uint64_t mPosition;
    std::uint64_t mEnd;
    bool mfUnsynchronised = false;
    bool mfFailed = false;
};
