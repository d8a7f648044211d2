#pragma once

#include "ezPlatform/text/CString.h"

#include <cstddef>
#include <cstdint>
#include <optional>

/// @name Words of kezInfo_PictureProcess of video
/// @{
inline constexpr const char* kScan_Progressive = "progressive";
inline constexpr const char* kScan_Interlaced = "interlaced";
/// @}

/// @name Words of kezInfo_HDR
/// @{
inline constexpr const char* kHDR_PQ = "PQ";       ///< SMPTE ST 2084, no static metadata seen
inline constexpr const char* kHDR_HLG = "HLG";     ///< ARIB STD-B67
inline constexpr const char* kHDR_HDR10 = "HDR10"; ///< PQ with static metadata: SMPTE ST 2086 or CTA-861.3
inline constexpr const char* kHDR_HDR10Plus = "HDR10+"; ///< PQ with dynamic metadata: SMPTE ST 2094-40
inline constexpr const char* kHDR_DolbyVision = "DolbyVision";
/// @}

/// A ratio of two numbers, neither of which is 0 when it is known.
struct VideoRatio {
    std::uint32_t mWidth = 0;
    std::uint32_t mHeight = 0;

    /// The same in the least numbers that both fit in; not known where one is 0 or does not fit.
    static VideoRatio Of(std::uint64_t aWidth, std::uint64_t aHeight);

    /// The shape of a pixel of a picture of so many that is shown in the shape of a display; not known where
    /// one of these is not.
    static VideoRatio OfPixel(const VideoRatio& aDisplay, std::uint32_t aWidth, std::uint32_t aHeight);

    bool IsKnown() const { return mWidth != 0 && mHeight != 0; }
    /// "16:9"; empty where it is not known.
    ezCString GetText() const;
};

/// Pictures in 1000 seconds by a codec's clock of aTimescale ticks a second, of which a picture takes aTicks;
/// 0 where one of them is 0, or where it cannot be a clock of pictures: writers of a varying rate state the
/// finest ticks there.
std::uint32_t VideoClock_FrameRate(std::uint64_t aTicks, std::uint32_t aTimescale);

/// What is told of the pictures of one track, by its codec and by what holds it. What is 0, null or empty is
/// not known.
struct VideoFacts {
    static constexpr std::uint32_t kNoLevel = UINT32_MAX;

    ezCString mCodec;                ///< as kezInfo_VideoCodec names it
    ezCString mProfile;              ///< as kezInfo_VideoProfile has it
    std::uint32_t mLevel = kNoLevel; ///< as kezInfo_VideoLevel has it: ten times the codec's
    std::uint32_t mWidth = 0;        ///< pixels, after cropping
    std::uint32_t mHeight = 0;
    VideoRatio mPixelAspect;        ///< width to height of a pixel
    std::uint32_t mFrameRate = 0;   ///< pictures in 1000 seconds; two fields are one
    bool mfFrameRateVaries = false; ///< the pictures last differently long; mFrameRate is their mean
    const char* mScan = nullptr;    ///< kScan_...
    std::uint32_t mBitDepth = 0;    ///< of luma
    const char* mColours = nullptr; ///< as kezInfo_PictureColours has it: "4:2:0"
    const char* mHDR = nullptr;     ///< kHDR_...
    unsigned mOrientation = 0;      ///< as kezInfo_Orientation has it; 0 and 1: shown as it is stored

    /// @name Bits a second
    /// @{
    std::uint32_t mBitRate = 0;    ///< a constant one, or the mean of all of it
    std::uint32_t mMaxBitRate = 0; ///< of a varying one
    std::uint32_t mEstimatedBitRate = 0;
    /// @}

    /// The shape of the stored picture when it is shown; not known without a size and the shape of a pixel.
    VideoRatio GetDisplayAspect() const;

    /// Takes what is not told yet from another source of the same pictures. What belongs together goes
    /// together: profile and level, width and height, the rates.
    void Complete(const VideoFacts& aFacts);
};

/// Reads what a codec's own headers tell, of what sets a decoder up or of a frame; nothing where there are
/// none.
using VideoReader = std::optional<VideoFacts> (*)(const unsigned char* aBytes, std::size_t aSize);
