#include "ezPlaylists/detail/StreamReader.h"

#include "ezBytes/WaitingRead.h"
#include "ezPlaylists/detail/Limits.h"

#include <algorithm>
#include <cstring>

namespace {

/// At hand there is never more than the longest line, its end, and a block.
constexpr std::size_t kMaxAtHand = kPlaylist_MaxLine + 2;

} // namespace

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
    const std::size_t dropped = mOffset - std::min(mOffset, kPlaylist_KeptBehind);
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

bool PlaylistStreamReader::StandBehindBuffer() {
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
    if (mfEnd || mfFailed || mCount - mOffset > kMaxAtHand) {
        return false;
    }
    if (!StandBehindBuffer() || !MakeRoom(mBlock)) {
        mfFailed = true;
        return false;
    }
    std::size_t count = mBlock;
    const ezStreamingStatus status = WaitingRead(*mStream, mArrived, mBytes.begin() + mCount, &count);
    if (status != ezStreamingStatus_NoError && status != ezStreamingStatus_EOS) {
        mStreamPos = UINT64_MAX; // where an error leaves a stream is not promised
        mfFailed = true;
        return false;
    }
    count = std::min(count, mBlock);
    mfEnd = status == ezStreamingStatus_EOS;
    mCount += count;
    mStreamPos += count;
    mBlock = std::min(2 * mBlock, kPlaylist_LastBlock);
    return count != 0;
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
