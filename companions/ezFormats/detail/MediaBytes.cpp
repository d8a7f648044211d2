#include "ezFormats/detail/MediaBytes.h"

#include "ez/MediaParserStream.h"
#include "ez/MediaParserTypes.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

constexpr std::uint64_t kUnknown = UINT64_MAX;

/// A first look at a new place; doubled with every read that goes straight on.
constexpr std::size_t kLeastBlock = 4096;
constexpr std::size_t kLargestBlock = std::size_t{64} * 1024;

} // namespace

MediaBytes::MediaBytes(ezMediaParserStream& aStream, std::uint32_t aMaxReads, std::uint64_t aMaxBytes)
    : mStream(aStream), mSize(kUnknown), mReadsLeft(aMaxReads), mBytesLeft(aMaxBytes) {
    TakeSize();
}

MediaBytes::~MediaBytes() = default;

bool MediaBytes::IsSizeKnown() const {
    return mSize != kUnknown;
}

std::size_t MediaBytes::Lend(std::uint64_t aPosition, const unsigned char** aBytes) {
    if (aPosition >= mSize) {
        return 0;
    }
    if (!HasAtHand(aPosition, 1)) {
        const bool fStraightOn = mBlockLength != 0 && aPosition == mBlockStart + mBlockLength;
        const std::size_t size = fStraightOn ? std::min(2 * mLastSize, kLargestBlock) : kLeastBlock;
        if (!ReadStart(aPosition) || (!HasAtHand(aPosition, 1) && !Fetch(aPosition, size))) {
            return 0;
        }
    }
    const auto place = static_cast<std::size_t>(aPosition - mBlockStart);
    *aBytes = mBlock.get() + place;
    return mBlockLength - place;
}

bool MediaBytes::Load(std::uint64_t aPosition, std::size_t aSize) {
    if (aPosition >= mSize) {
        return false;
    }
    const std::size_t size = std::min(aSize, kLargestBlock);
    if (HasAtHand(aPosition, size)) {
        return true;
    }
    if (!HasAtHand(aPosition, 1) && !ReadStart(aPosition)) {
        return false;
    }
    return HasAtHand(aPosition, size) || Fetch(aPosition, size);
}

/// The stream takes its first read for the start of the media, and answers later ones from it: reads that
/// where it is the first read, or holds the position.
bool MediaBytes::ReadStart(std::uint64_t aPosition) {
    if (mfStarted && aPosition >= kezMediaParserStreamBufferSize) {
        return true;
    }
    const bool fFirst = !mfStarted;
    mfStarted = true;
    const bool fRead = Fetch(0, kezMediaParserStreamBufferSize);
    if (fFirst && !IsSizeKnown()) {
        TakeSize();
    }
    return fRead;
}

/// A stream that opens itself with its first read knows its size from then on.
void MediaBytes::TakeSize() {
    const std::uint64_t size = mStream.GetMediaSize().ToUInt64();
    mSize = size == 0 ? kUnknown : size;
    Keep(static_cast<std::size_t>(std::min<std::uint64_t>(mBlockLength, mSize)));
}

/// Makes the block that of a position. Bytes of it that are at hand are not read again.
bool MediaBytes::Fetch(std::uint64_t aPosition, std::size_t aSize) {
    const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(aSize, mSize - aPosition));
    std::size_t kept = 0;
    if (HasAtHand(aPosition, 1)) {
        const auto place = static_cast<std::size_t>(aPosition - mBlockStart);
        kept = mBlockLength - place;
        std::memmove(mBlock.get(), mBlock.get() + place, kept);
    }
    mBlockStart = aPosition;
    if (mReadsLeft == 0 || mBytesLeft < size - kept) {
        mfBudgetUsedUp = true;
        return Keep(kept);
    }
    --mReadsLeft;
    if (!Reserve(size)) {
        mfReadFailed = true;
        return Keep(kept);
    }
    const std::size_t count = Fill(kept, size);
    mBytesLeft -= count;
    mLastSize = std::max(kept + count, kLeastBlock);
    return Keep(kept + count);
}

/// Makes room for a block of so many bytes; what is there stays.
bool MediaBytes::Reserve(std::size_t aSize) {
    if (aSize <= mBlockSize) {
        return true;
    }
    void* const grown = ezRealloc(mBlock.get(), aSize);
    if (grown == nullptr) {
        return false;
    }
    static_cast<void>(mBlock.release()); // it is, or lies in, the new block
    mBlock.reset(static_cast<unsigned char*>(grown));
    mBlockSize = aSize;
    return true;
}

/// The block is so long from now on. False when it is empty.
bool MediaBytes::Keep(std::size_t aLength) {
    mBlockLength = aLength;
    KeepAtHand(mBlock.get(), mBlockStart, aLength);
    return aLength != 0;
}

/// Reads into the block from a place of it up to another: a source may give fewer bytes at a time than there
/// are. How many there were.
std::size_t MediaBytes::Fill(std::size_t aPlace, std::size_t anEnd) {
    std::size_t done = aPlace;
    while (done < anEnd) {
        std::size_t count = anEnd - done;
        auto* const place = reinterpret_cast<char*>(mBlock.get() + done);
        const bool fRead = done == aPlace ? mStream.ReadFrom(ezuint64(mBlockStart + done), &count, place)
                                          : mStream.Read(&count, place);
        mfReadFailed = mfReadFailed || !fRead;
        if (!fRead || count == 0) {
            break;
        }
        done += count;
    }
    return done - aPlace;
}

bool MediaBytes::HasAtHand(std::uint64_t aPosition, std::size_t aSize) const {
    if (aPosition < mBlockStart || aPosition >= mSize || aPosition - mBlockStart >= mBlockLength) {
        return false;
    }
    const std::uint64_t there = std::min<std::uint64_t>(aSize, mSize - aPosition);
    return there <= mBlockLength - (aPosition - mBlockStart);
}

void MediaBytes::AllowWholeMedia() {
    // Whoever reads straight on takes a block at a time, a part of which may have been at hand.
    const std::uint64_t reads = 2 * (mSize / kLargestBlock + 1);
    mReadsLeft +=
        static_cast<std::uint32_t>(std::min<std::uint64_t>(reads, UINT32_MAX - std::uint64_t{mReadsLeft}));
    mBytesLeft += std::min(mSize, UINT64_MAX - mBytesLeft);
    mfBudgetUsedUp = false;
}
