#pragma once

#include "fuzz/support/Check.h"

#include "ezFormats/codecs/VideoFacts.h"
#include "ezFormats/detail/Limits.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <numeric>
#include <optional>
#include <string_view>
#include <vector>

// What a reader of a codec's headers promises of every input.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

/// What the readers of a codec may tell.
struct CodecBounds {
    std::initializer_list<std::string_view> mNames; ///< "": the codec is not told
    std::uint32_t mLargestSide;                     ///< of a picture, in pixels
};

/// True for null, and for one of these words.
inline bool CodecDoor_IsWord(const char* aWord, std::initializer_list<std::string_view> aWords) {
    return aWord == nullptr || std::find(aWords.begin(), aWords.end(), aWord) != aWords.end();
}

/// What is told of pictures is in the ranges and words that a record has.
inline void CodecDoor_CheckPictures(const std::optional<VideoFacts>& aFacts, const CodecBounds& aBounds) {
    if (!aFacts.has_value()) {
        return;
    }
    constexpr std::uint32_t kHighestLevel = 100;
    const VideoFacts& facts = *aFacts;
    FuzzCheck(CodecDoor_IsWord(facts.mCodec.c_str(), aBounds.mNames));
    FuzzCheck(facts.mProfile.View().find(' ') == std::string_view::npos);
    FuzzCheck(facts.mLevel <= kHighestLevel || facts.mLevel == VideoFacts::kNoLevel);
    FuzzCheck((facts.mWidth == 0) == (facts.mHeight == 0));
    FuzzCheck(facts.mWidth <= aBounds.mLargestSide && facts.mHeight <= aBounds.mLargestSide);
    const VideoRatio& pixel = facts.mPixelAspect;
    FuzzCheck((pixel.mWidth == 0) == (pixel.mHeight == 0));
    FuzzCheck(!pixel.IsKnown() || std::gcd(pixel.mWidth, pixel.mHeight) == 1);
    FuzzCheck(facts.mFrameRate <= kVideo_MaxFrameRate);
    FuzzCheck(facts.mBitDepth == 0 || (facts.mBitDepth >= 8 && facts.mBitDepth <= 16));
    FuzzCheck(CodecDoor_IsWord(facts.mScan, {kScan_Progressive, kScan_Interlaced}));
    FuzzCheck(CodecDoor_IsWord(facts.mColours,
                               {"grey", "4:1:0", "4:1:1", "4:2:0", "4:2:2", "4:4:0", "4:4:4", "RGB"}));
    FuzzCheck(CodecDoor_IsWord(facts.mHDR, {kHDR_PQ, kHDR_HLG, kHDR_HDR10, kHDR_HDR10Plus}));
    FuzzCheck(facts.mBitRate == 0 || facts.mMaxBitRate == 0 || facts.mBitRate <= facts.mMaxBitRate);
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
    FuzzCheck(all(*aFacts) == all(*anOther) && aFacts->mCodec == anOther->mCodec);
    FuzzCheck(aFacts->mProfile == anOther->mProfile);
    FuzzCheck(aFacts->mScan == anOther->mScan && aFacts->mColours == anOther->mColours &&
              aFacts->mHDR == anOther->mHDR);
}

/// Bytes in a block of their own size, so that a sanitizer sees every read beside it.
inline std::vector<unsigned char> CodecDoor_Block(const std::uint8_t* aBytes, std::size_t aSize) {
    return {aBytes, aBytes + aSize};
}

using CodecReader = std::optional<VideoFacts> (*)(const unsigned char* aBytes, std::size_t aSize);

/// Reads the input, which nothing stands after, and its first half, each twice.
inline void CodecDoor_Enter(CodecReader aReader, const std::uint8_t* aData, std::size_t aSize,
                            const CodecBounds& aBounds) {
    const FuzzHouse house;
    for (const std::size_t size : {aSize, aSize / 2}) {
        const std::vector<unsigned char> bytes = CodecDoor_Block(aData, size);
        const std::optional<VideoFacts> facts = aReader(bytes.data(), bytes.size());
        CodecDoor_CheckPictures(facts, aBounds);
        CodecDoor_CheckSame(facts, aReader(bytes.data(), bytes.size()));
    }
}
