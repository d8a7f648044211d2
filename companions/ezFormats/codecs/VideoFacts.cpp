#include "ezFormats/codecs/VideoFacts.h"

#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaNumbers.h"

#include <numeric>

VideoRatio VideoRatio::Of(std::uint64_t aWidth, std::uint64_t aHeight) {
    const std::uint64_t divisor = std::gcd(aWidth, aHeight);
    if (aWidth == 0 || aHeight == 0 || aWidth / divisor > UINT32_MAX || aHeight / divisor > UINT32_MAX) {
        return {};
    }
    return {static_cast<std::uint32_t>(aWidth / divisor), static_cast<std::uint32_t>(aHeight / divisor)};
}

VideoRatio VideoRatio::OfPixel(const VideoRatio& aDisplay, std::uint32_t aWidth, std::uint32_t aHeight) {
    return Of(std::uint64_t{aDisplay.mWidth} * aHeight, std::uint64_t{aDisplay.mHeight} * aWidth);
}

ezCString VideoRatio::GetText() const {
    return IsKnown() ? ezCString::Format("%lu:%lu", static_cast<unsigned long>(mWidth),
                                         static_cast<unsigned long>(mHeight))
                     : ezCString();
}

std::uint32_t VideoClock_FrameRate(std::uint64_t aTicks, std::uint32_t aTimescale) {
    const std::uint32_t rate = MediaNumber_FrameRate(1, aTicks, aTimescale);
    return rate <= kVideo_MaxFrameRate ? rate : 0;
}

VideoRatio VideoFacts::GetDisplayAspect() const {
    return VideoRatio::Of(std::uint64_t{mWidth} * mPixelAspect.mWidth,
                          std::uint64_t{mHeight} * mPixelAspect.mHeight);
}

void VideoFacts::Complete(const VideoFacts& aFacts) {
    if (mCodec.IsEmpty()) {
        mCodec = aFacts.mCodec;
    }
    if (mProfile.IsEmpty() && mLevel == kNoLevel) {
        mProfile = aFacts.mProfile;
        mLevel = aFacts.mLevel;
    }
    if (mWidth == 0 || mHeight == 0) {
        mWidth = aFacts.mWidth;
        mHeight = aFacts.mHeight;
    }
    mPixelAspect = mPixelAspect.IsKnown() ? mPixelAspect : aFacts.mPixelAspect;
    if (mFrameRate == 0) {
        mFrameRate = aFacts.mFrameRate;
        mfFrameRateVaries = aFacts.mfFrameRateVaries;
    }
    mScan = mScan != nullptr ? mScan : aFacts.mScan;
    mBitDepth = mBitDepth != 0 ? mBitDepth : aFacts.mBitDepth;
    mColours = mColours != nullptr ? mColours : aFacts.mColours;
    mHDR = mHDR != nullptr ? mHDR : aFacts.mHDR;
    mOrientation = mOrientation != 0 ? mOrientation : aFacts.mOrientation;
    if ((mBitRate | mMaxBitRate | mEstimatedBitRate) == 0) {
        mBitRate = aFacts.mBitRate;
        mMaxBitRate = aFacts.mMaxBitRate;
        mEstimatedBitRate = aFacts.mEstimatedBitRate;
    }
}
