#include "ezFormats/detail/MediaBytes.h"

#include "ez/MediaParserStream.h"
#include "ez/MediaParserTypes.h"

#include <algorithm>

namespace {

constexpr std::uint64_t kUnknown = UINT64_MAX;

/// A first look at a new place; doubled with every read that goes straight on.
constexpr std::size_t kLeastBlock = 4096;
constexpr std::size_t kLargestBlock = std::size_t{64} * 1024;

} // namespace

MediaBytes::MediaBytes(ezMediaParserStream& aStream, std::uint32_t aMaxReads, std::uint64_t aMaxBytes)
    : mStream(aStream),
      mSize(aStream.GetMediaSize().ToUInt64()),
      mReadsLeft(aMaxReads),
      mBytesLeft(aMaxBytes) {
    mSize = mSize == 0 ? kUnknown : mSize;
}

MediaBytes::~MediaBytes() = default;

bool MediaBytes::IsSizeKnown() const {
    return mSize != kUnknown;
}

std::size_t MediaBytes::Lend(std::uint64_t aPosition, const unsigned char** aBytes) {
    if (aPosition >= mSize) {
        return 0;
    }
    if (aPosition < mBlockStart || aPosition - mBlockStart >= mBlockLength) {
        const bool fStraightOn = mBlockLength != 0 && aPosition == mBlockStart + mBlockLength;
        const std::size_t size = fStraightOn ? std::min(2 * mLastSize, kLargestBlock) : kLeastBlock;
        if (!Load(aPosition, size)) {
            return 0;
        }
    }
    const auto place = static_cast<std::size_t>(aPosition - mBlockStart);
    *aBytes = mBlock.data() + place;
    return mBlockLength - place;
}

bool MediaBytes::Load(std::uint64_t aPosition, std::size_t aSize) {
    // The stream takes its first read for the start of the media, and answers later ones from it.
    if (!mfStarted || aPosition < kezMediaParserStreamBufferSize) {
        mfStarted = true;
        if (!Fetch(0, kezMediaParserStreamBufferSize)) {
            return false;
        }
        if (aPosition < mBlockLength) {
            return true;
        }
    }
    return Fetch(aPosition, std::min(aSize, kLargestBlock));
}

bool MediaBytes::Fetch(std::uint64_t aPosition, std::size_t aSize) {
    mBlockLength = 0;
    mBlockStart = aPosition;
    std::size_t size = static_cast<std::size_t>(std::min<std::uint64_t>(aSize, mSize - aPosition));
    if (mReadsLeft == 0 || mBytesLeft < size) {
        mfBudgetUsedUp = true;
        return false;
    }
    --mReadsLeft;
    mBlock.resize(std::max(mBlock.size(), size));
    if (!mStream.ReadFrom(ezuint64(aPosition), &size, reinterpret_cast<char*>(mBlock.data()))) {
        mfReadFailed = true;
        return false;
    }
    mBytesLeft -= size;
    mBlockLength = size;
    mLastSize = std::max(size, kLeastBlock);
    return size != 0;
}

void MediaBytes::AllowWholeMedia() {
    mReadsLeft = UINT32_MAX;
    mBytesLeft = UINT64_MAX;
}
