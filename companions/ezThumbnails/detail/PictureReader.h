#pragma once

#include "ezThumbnails/detail/Picture.h"
#include "ezThumbnails/detail/PictureLimits.h"

#include "ezBytes/WaitingRead.h"

#include "ezPlatform/base/Condition.h"
#include "ezPlatform/streams/Stream.h"

#include <cstddef>
#include <cstdint>

/// Reads a picture's stream from where it stands, block by block; waits for what has not arrived yet.
///
/// Blocks are whole, however little a read brings: of a damaged picture the codecs make what depends on how
/// much is buffered, and a thumbnail is not to depend on the speed of a disk.
///
/// The stream is borrowed and used by nobody else meanwhile. Its threshold callback is registered only while
/// a read waits. One thread.
class PictureReader {
public:
    /// @param aLimit  bytes after which the reader fails
    PictureReader(ezStream* aStream, std::uint64_t aLimit) : mStream(aStream), mLeft(aLimit) {}
    PictureReader(const PictureReader&) = delete;
    PictureReader& operator=(const PictureReader&) = delete;

    /// The buffered bytes, borrowed until Fill.
    const unsigned char* GetData() const { return mBlock.get() + mOffset; }
    std::size_t GetCount() const { return mCount - mOffset; }
    /// Moves past buffered bytes.
    void Skip(std::size_t aCount) { mOffset += aCount; }
    /// Brings a block to hand in place of one that is used up. False at the end and after a failure.
    bool Fill();
    /// Copies exactly so many bytes, and moves past them. False when there are fewer.
    bool Read(unsigned char* aBuffer, std::size_t aCount);
    /// Whether the stream went on after the limit.
    bool IsPastLimit() const { return mEnding == ReadEnding::Limit; }

private:
    bool Append();

    ezStream* mStream;
    ezCondition mArrived;
    std::uint64_t mLeft;
    std::size_t mCount = 0;
    std::size_t mOffset = 0;
    ReadEnding mEnding = ReadEnding::None;
    PictureBytes mBlock =
        NewPictureBytes(kPicture_BlockSize); ///< null without memory for it: nothing is read
};
