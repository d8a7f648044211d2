#pragma once

#include "fuzz/support/Check.h"

#include "ezFormats/codecs/VideoFacts.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <numeric>
#include <optional>
#include <string_view>

/// What every reader of a codec's headers promises of every input.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

using VideoFactsReader = std::optional<VideoFacts> (*)(const unsigned char* aBytes, std::size_t aSize);

inline bool VideoFactsDoor_IsOneOf(const char* aWord, std::initializer_list<const char*> aWords) {
    return std::any_of(aWords.begin(), aWords.end(), [=](const char* aKnown) {
        return std::string_view(aWord != nullptr ? aWord : "") == aKnown;
    });
}

/// Facts that a record can hold.
inline void VideoFactsDoor_Check(const VideoFacts& aFacts, std::initializer_list<const char*> aCodecs) {
    constexpr std::uint32_t kHighestLevel = 100;
    FuzzCheck(VideoFactsDoor_IsOneOf(aFacts.mCodec.c_str(), aCodecs));
    FuzzCheck((aFacts.mWidth == 0) == (aFacts.mHeight == 0));
    FuzzCheck(aFacts.mLevel <= kHighestLevel || aFacts.mLevel == VideoFacts::kNoLevel);
    FuzzCheck(aFacts.mProfile.View().find(' ') == std::string_view::npos);
    const VideoRatio& pixel = aFacts.mPixelAspect;
    FuzzCheck((pixel.mWidth == 0) == (pixel.mHeight == 0));
    FuzzCheck(!pixel.IsKnown() || std::gcd(pixel.mWidth, pixel.mHeight) == 1);
    FuzzCheck(VideoFactsDoor_IsOneOf(aFacts.mScan, {"", kScan_Progressive, kScan_Interlaced}));
    FuzzCheck(
        VideoFactsDoor_IsOneOf(aFacts.mColours, {"", "grey", "4:2:0", "4:2:2", "4:4:0", "4:4:4", "RGB"}));
    FuzzCheck(VideoFactsDoor_IsOneOf(aFacts.mHDR,
                                     {"", kHDR_PQ, kHDR_HLG, kHDR_HDR10, kHDR_HDR10Plus, kHDR_DolbyVision}));
    FuzzCheck(aFacts.mBitDepth <= 16);
    FuzzCheck(aFacts.mBitRate == 0 || aFacts.mMaxBitRate == 0 || aFacts.mBitRate <= aFacts.mMaxBitRate);
}

/// Reads the input, which nothing stands after, and its first half.
/// @param aCodecs  that the reader may name
inline void VideoFactsDoor_Enter(VideoFactsReader aReader, const std::uint8_t* aData, std::size_t aSize,
                                 std::initializer_list<const char*> aCodecs) {
    const FuzzHouse house;
    for (const std::size_t size : {aSize, aSize / 2}) {
        const auto bytes = std::make_unique<unsigned char[]>(size); // a read past its end is a finding
        std::copy_n(aData, size, bytes.get());
        const std::optional<VideoFacts> facts = aReader(bytes.get(), size);
        if (facts.has_value()) {
            VideoFactsDoor_Check(*facts, aCodecs);
        }
    }
}
