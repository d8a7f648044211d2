#include "support/AwkwardStream.h"

#include <algorithm>
#include <cstring>
#include <utility>

AwkwardStream::AwkwardStream(std::string aContent, const Delivery& aDelivery, const char* aFullPath)
    : mContent(std::move(aContent)), mDelivery(aDelivery) {
    SetFullPath(aFullPath);
    SetExtension(ezCString(aFullPath).AfterLast('.'));
    mMediaSize = mDelivery.mfSizeKnown ? mContent.size() : 0;
}

bool AwkwardStream::MediaSeek(const ezuint64& anOffset, bool afSeekImmediate) {
    ++mCosts.mSeeks;
    if (afSeekImmediate) {
        ++mCosts.mImmediateSeeks;
    }
    if (!mDelivery.mfSeekable) {
        return anOffset == mSourcePosition;
    }
    if (anOffset > mContent.size()) {
        return false;
    }
    mSourcePosition = static_cast<std::size_t>(anOffset.ToUInt64());
    return true;
}

ezFileOffset AwkwardStream::MediaRead(void* aBuffer, std::size_t aSize) {
    ++mCosts.mReads;
    const std::size_t left = mContent.size() - std::min(mSourcePosition, mContent.size());
    const std::size_t count = std::min({aSize, left, mDelivery.mMaximumRead});
    if (!mfFailed && mDelivery.mFailingOffset >= mSourcePosition &&
        mDelivery.mFailingOffset - mSourcePosition < count) {
        mfFailed = true;
        return -1;
    }
    if (count != 0) {
        std::memcpy(aBuffer, mContent.data() + mSourcePosition, count);
    }
    mSourcePosition += count;
    mCosts.mBytes += count;
    return static_cast<ezFileOffset>(count);
}
