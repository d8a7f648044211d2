#pragma once

#include "ezPlaylists/PlaylistCut.h"
#include "ezPlaylists/detail/GrowingBlock.h"
#include "ezPlaylists/detail/Limits.h"

#include "ezPlatform/base/Condition.h"
#include "ezPlatform/streams/Stream.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

/// Reads a playlist's stream in blocks, with a position of its own; waits for what has not arrived yet.
/// After kPlaylist_MaxBytes bytes the stream counts as ended.
///
/// The buffered bytes begin at the position (Peek). Who needs more of them calls Grow, who is done with some
/// Skip. What is buffered, and a little before the position, is sought without a read.
///
/// The stream is borrowed and used by nobody else meanwhile. Its threshold callback is registered only while
/// a read waits. One thread.
class PlaylistStreamReader {
public:
    /// @param aStream  opened; null is a stream that cannot be read
    explicit PlaylistStreamReader(ezStream* aStream);
    PlaylistStreamReader(const PlaylistStreamReader&) = delete;
    PlaylistStreamReader& operator=(const PlaylistStreamReader&) = delete;

    /// False when the stream refuses; the position stays then.
    bool Seek(std::uint64_t aPos);
    std::uint64_t Tell() const { return mBufferPos + mOffset; }

    /// The buffered bytes, borrowed until Grow or Seek.
    std::string_view Peek() const { return {mBytes.begin() + mOffset, mCount - mOffset}; }
    /// Moves past buffered bytes.
    void Skip(std::size_t aCount) { mOffset += aCount; }
    /// Brings at least one byte more to hand, or gives false: at the end of the stream, at an error, when
    /// memory is refused, and when more than the longest line is buffered.
    bool Grow();
    /// Whether an error or a refusal of memory stopped the last Grow. A seek takes that back.
    bool HasFailed() const { return mfFailed; }

    /// Makes the stream end at a place that was read, from now on.
    void EndAt(std::uint64_t aPos, PlaylistCut aCut);
    /// Whether what was read ends before the stream does, as far as that is known.
    PlaylistCut GetCut() const { return mCut; }
    /// Whether the buffered bytes end where the stream was cut.
    bool IsAtCut() const { return mCut != PlaylistCut::None && mBufferPos + mCount == mLimit; }

    /// Takes all that follows. False when that is more than aLimit bytes, when the stream fails, and when
    /// memory is refused (HasFailed tells those two); the text then holds a part.
    bool ReadAll(GrowingText* aText, std::size_t aLimit);

private:
    bool MakeRoom(std::size_t aBlock);
    bool StandAfterBuffer();
    bool IsAtLimit() const;

    ezStream* mStream;
    ezCondition mArrived;
    GrowingBlock<char> mBytes; ///< its room alone: what of it is filled is counted here
    std::size_t mCount = 0;    ///< bytes in the buffer
    std::size_t mOffset = 0;   ///< of the position in the buffer
    std::uint64_t mBufferPos = 0;
    std::optional<std::uint64_t> mStreamPos; ///< where the stream stands, as far as that is known
    std::size_t mBlock;                      ///< bytes that the next read fetches
    bool mfEnd = false;                      ///< the stream ends after the buffer
    bool mfFailed = false;
    std::uint64_t mLimit = kPlaylist_MaxBytes; ///< no byte from here on is buffered
    PlaylistCut mCut = PlaylistCut::None;
};
