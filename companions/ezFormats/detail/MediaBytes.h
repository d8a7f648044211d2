#pragma once

#include "ezBytes/ByteSource.h"

#include "ezPlatform/base/Memory.h"

#include <cstddef>
#include <cstdint>
#include <memory>

class ezMediaParserStream;

/// The bytes of a parser's stream, read within a budget. The first read is that of the start, which the
/// stream keeps for the next parser; bytes behind it are read as far as they are asked for, in blocks that
/// grow while the asking goes straight on. Reading back by a little stays within the block. Memory that is
/// refused for a block is a read that fails.
class MediaBytes : public ByteSource {
public:
    /// aStream is borrowed.
    MediaBytes(ezMediaParserStream& aStream, std::uint32_t aMaxReads, std::uint64_t aMaxBytes);
    ~MediaBytes() override;

    /// 2^64-1 when it is not known: maybe till the first read.
    std::uint64_t GetSize() const override { return mSize; }
    bool IsSizeKnown() const;

    std::size_t Lend(std::uint64_t aPosition, const unsigned char** aBytes) override;

    /// Reads the block of the next Lend from a position on: for a tail of which all bytes are going to be
    /// asked for, in any order. At most 64 KiB. What is at hand of them is not read again. False when there
    /// is none.
    bool Load(std::uint64_t aPosition, std::size_t aSize);

    /// True when all bytes of a range that the media has, and there is one, can be lent without a read.
    bool HasAtHand(std::uint64_t aPosition, std::size_t aSize) const;

    /// Raises what the parse may cost by the whole media, once: its bytes, and two reads for each 64 KiB of
    /// them.
    void AllowWholeMedia();

    bool IsBudgetUsedUp() const { return mfBudgetUsedUp; }
    bool HasReadFailed() const { return mfReadFailed; }

private:
    bool Fetch(std::uint64_t aPosition, std::size_t aSize);
    bool ReadStart(std::uint64_t aPosition);
    void TakeSize();
    std::size_t Fill(std::size_t aPlace, std::size_t anEnd);
    struct Free {
        void operator()(unsigned char* aBlock) const { ezFree(aBlock); }
    };

    bool Reserve(std::size_t aSize);
    bool Keep(std::size_t aLength);

    ezMediaParserStream& mStream;
    std::uint64_t mSize;
    std::unique_ptr<unsigned char, Free>
        mBlock; ///< not cleared: only its first mBlockLength bytes are ever read
    std::size_t mBlockSize = 0;
    std::uint64_t mBlockStart = 0;
    std::size_t mBlockLength = 0;
    std::size_t mLastSize = 0;
    std::uint32_t mReadsLeft;
    std::uint64_t mBytesLeft;
    bool mfStarted = false;
    bool mfBudgetUsedUp = false;
    bool mfReadFailed = false;
};
