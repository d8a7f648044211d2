#pragma once

#include "fuzz/support/Check.h"

#include "ezFormats/codecs/VideoFacts.h"
#include "ezFormats/detail/Limits.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

// What a reader of a codec's headers promises of every input.

/// True for null, and for one of these words.
template <std::size_t Count>
bool CodecDoor_IsWord(const char* aWord, const std::array<std::string_view, Count>& aWords) {
    return aWord == nullptr || std::find(aWords.begin(), aWords.end(), aWord) != aWords.end();
}

/// What is told of pictures has a codec, and is in the ranges and words that a record has.
/// @param aLargestSide  of a picture, in pixels
inline void CodecDoor_CheckPictures(const std::optional<VideoFacts>& aFacts, std::uint32_t aLargestSide) {
    if (!aFacts.has_value()) {
        return;
    }
    const VideoFacts& facts = *aFacts;
    FuzzCheck(!facts.mCodec.IsEmpty());
    FuzzCheck(facts.mProfile.View().find(' ') == std::string_view::npos);
    FuzzCheck((facts.mWidth == 0) == (facts.mHeight == 0));
    FuzzCheck(facts.mWidth <= aLargestSide && facts.mHeight <= aLargestSide);
    FuzzCheck((facts.mPixelAspect.mWidth == 0) == (facts.mPixelAspect.mHeight == 0));
    FuzzCheck(facts.mFrameRate <= kVideo_MaxFrameRate);
    FuzzCheck(facts.mBitDepth == 0 || (facts.mBitDepth >= 8 && facts.mBitDepth <= 16));
    FuzzCheck(CodecDoor_IsWord<2>(facts.mScan, {kScan_Progressive, kScan_Interlaced}));
    FuzzCheck(CodecDoor_IsWord<5>(facts.mColours, {"grey", "4:2:0", "4:2:2", "4:4:4", "RGB"}));
    FuzzCheck(CodecDoor_IsWord<4>(facts.mHDR, {kHDR_PQ, kHDR_HLG, kHDR_HDR10, kHDR_HDR10Plus}));
}

/// Both readings of the same came to the same.
inline void CodecDoor_CheckSame(const std::optional<VideoFacts>& aFacts,
                                const std::optional<VideoFacts>& anOther) {
    FuzzCheck(aFacts.has_value() == anOther.has_value());
    if (!aFacts.has_value()) {
        return;
    }
    const auto all = [](const VideoFacts& aTold) {
        return std::array<std::uint64_t, 9>{aTold.mLevel,
                                            aTold.mWidth,
                                            aTold.mHeight,
                                            aTold.mPixelAspect.mWidth,
                                            aTold.mPixelAspect.mHeight,
                                            aTold.mFrameRate,
                                            aTold.mBitDepth,
                                            aTold.mBitRate,
                                            aTold.mMaxBitRate};
    };
    FuzzCheck(all(*aFacts) == all(*anOther) && aFacts->mProfile == anOther->mProfile);
    FuzzCheck(aFacts->mScan == anOther->mScan && aFacts->mColours == anOther->mColours &&
              aFacts->mHDR == anOther->mHDR);
}

/// Bytes in a block of their own size, so that a sanitizer sees every read beside it.
inline std::vector<unsigned char> CodecDoor_Block(const std::uint8_t* aBytes, std::size_t aSize) {
    return {aBytes, aBytes + aSize};
}
