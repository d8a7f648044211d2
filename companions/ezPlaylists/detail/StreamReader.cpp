#include "ezPlaylists/detail/StreamReader.h"

#include "ezBytes/WaitingRead.h"
#include "ezPlaylists/detail/Limits.h"

#include <algorithm>
#include <cstring>

PlaylistStreamReader::PlaylistStreamReader(ezStream* aStream)
    : mStream(aStream), mBlock(kPlaylist_FirstBlock) {}

bool PlaylistStreamReader::Seek(std::uint64_t aPos) {
    if (aPos >= mBufferPos && aPos - mBufferPos <= mCount && mCount != 0) {
        mOffset = static_cast<std::size_t>(aPos - mBufferPos);
        mfFailed = false;
        return true;
    }
    if (mStream == nullptr || mStream->Seek(aPos) != ezStreamingStatus_NoError) {
        return false;
    }
    mStreamPos = aPos;
    mBufferPos = aPos;
    mCount = 0;
    mOffset = 0;
    mBlock = kPlaylist_FirstBlock;
    mfEnd = false;
    mfFailed = false;
    return true;
}

bool PlaylistStreamReader::MakeRoom(std::size_t aBlock) {
    if (mBytes.Capacity() - mCount >= aBlock) {
        return true;
    }
    const std::size_t dropped = mOffset - std::min(mOffset, kPlaylist_KeptBefore);
    const std::size_t kept = mCount - dropped;
    if (mBytes.Capacity() - kept < aBlock &&
        !mBytes.Reserve(std::max(kept + aBlock, 2 * mBytes.Capacity()))) {
        return false;
    }
    if (kept != 0) {
        std::memmove(mBytes.begin(), mBytes.begin() + dropped, kept);
    }
    mBufferPos += dropped;
    mOffset -= dropped;
    mCount = kept;
    return true;
}

bool PlaylistStreamReader::StandAfterBuffer() {
    const std::uint64_t wanted = mBufferPos + mCount;
    if (mStreamPos != wanted) {
        if (mStream == nullptr || mStream->Seek(wanted) != ezStreamingStatus_NoError) {
            return false;
        }
        mStreamPos = wanted;
    }
    return true;
}

bool PlaylistStreamReader::Grow() {
    if (mfEnd || mfFailed || IsAtLimit() || mCount - mOffset > kPlaylist_MaxBuffered) {
        return false;
    }
    if (!StandAfterBuffer() || !MakeRoom(mBlock)) {
        mfFailed = true;
        return false;
    }
    const LimitedRead read = WaitingReadWithin(*mStream, mArrived, mBytes.begin() + mCount, mBlock,
                                               mLimit - (mBufferPos + mCount));
    if (read.mEnding == ReadEnding::Failed) {
        mStreamPos.reset(); // where an error leaves a stream is not promised
        mfFailed = true;
        return false;
    }
    mBlock = std::min(2 * mBlock, kPlaylist_LastBlock);
    *mStreamPos += read.mCount; // StandAfterBuffer has set it
    mfEnd = read.mEnding != ReadEnding::None;
    if (read.mEnding == ReadEnding::Limit) {
        ++*mStreamPos; // the byte that told
        mCut = mCut == PlaylistCut::None ? PlaylistCut::Size : mCut;
    }
    mCount += read.mCount;
    return read.mCount != 0;
}

/// Whether no byte may be read: not even that past the limit, where it is known that there is one.
bool PlaylistStreamReader::IsAtLimit() const {
    const std::uint64_t end = mBufferPos + mCount;
    return end > mLimit || (end == mLimit && mCut != PlaylistCut::None);
}

void PlaylistStreamReader::EndAt(std::uint64_t aPos, PlaylistCut aCut) {
    mLimit = aPos;
    mCut = aCut;
    mBufferPos = aPos;
    mCount = 0;
    mOffset = 0;
    mfEnd = true;
}

bool PlaylistStreamReader::ReadAll(GrowingText* aText, std::size_t aLimit) {
    do {
        const std::string_view bytes = Peek();
        if (bytes.size() > aLimit - aText->Size()) {
            return false;
        }
        if (!aText->Append(bytes)) {
            mfFailed = true;
            return false;
        }
        Skip(bytes.size());
    } while (Grow());
    return !mfFailed;
}
