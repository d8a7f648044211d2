#include "ezThumbnails/detail/PictureReader.h"

#include "ezBytes/WaitingRead.h"

#include <algorithm>
#include <cstring>

/// Reads behind the bytes of the block.
bool PictureReader::Append() {
    if (mfEnd || mBlock == nullptr) {
        return false;
    }
    const std::size_t asked = kBlock - mCount;
    std::size_t count = asked;
    const ezStreamingStatus status = WaitingRead(*mStream, mArrived, mBlock.get() + mCount, &count);
    const bool fBytes = status == ezStreamingStatus_NoError || status == ezStreamingStatus_EOS;
    count = fBytes ? std::min(count, asked) : 0;
    mfEnd = status != ezStreamingStatus_NoError || count > mLeft;
    if (count > mLeft) {
        mfPastLimit = true;
        return false;
    }
    mLeft -= count;
    mCount += count;
    return count != 0;
}

bool PictureReader::Fill() {
    mCount = 0;
    mOffset = 0;
    while (mCount < kBlock && Append()) {
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
