#include "ezThumbnails/detail/PictureReader.h"

#include <algorithm>
#include <cstring>

/// Reads on after the bytes of the block.
bool PictureReader::Append() {
    if (mEnding != ReadEnding::None || mBlock == nullptr) {
        return false;
    }
    const LimitedRead read =
        WaitingReadWithin(*mStream, mArrived, mBlock.get() + mCount, kPicture_BlockSize - mCount, mLeft);
    mEnding = read.mEnding;
    if (IsPastLimit()) {
        return false;
    }
    mLeft -= read.mCount;
    mCount += read.mCount;
    return read.mCount != 0;
}

bool PictureReader::Fill() {
    mCount = 0;
    mOffset = 0;
    while (mCount < kPicture_BlockSize && Append()) {
    }
    return mCount != 0;
}

bool PictureReader::Read(unsigned char* aBuffer, std::size_t aCount) {
    while (aCount > 0) {
        if (GetCount() == 0 && !Fill()) {
            return false;
        }
        const std::size_t count = std::min(aCount, GetCount());
        std::memcpy(aBuffer, GetData(), count);
        Skip(count);
        aBuffer += count;
        aCount -= count;
    }
    return true;
}
