#pragma once

#include "ezFormats/codecs/VideoFacts.h"

#include <cstddef>
#include <cstdint>

/// @name Start codes of MPEG-4 video (ISO/IEC 14496-2, table 6-3)
/// @{
inline constexpr std::uint8_t kMPEG4_LastObject = 0x1F;
inline constexpr std::uint8_t kMPEG4_FirstLayer = 0x20;
inline constexpr std::uint8_t kMPEG4_LastLayer = 0x2F;
inline constexpr std::uint8_t kMPEG4_Sequence = 0xB0;
inline constexpr std::uint8_t kMPEG4_UserData = 0xB2;
inline constexpr std::uint8_t kMPEG4_Group = 0xB3;
inline constexpr std::uint8_t kMPEG4_Plane = 0xB6; ///< a picture: video_object_plane
/// @}

inline constexpr bool ezMPEG4Code_IsLayer(std::uint32_t aCode) {
    return aCode >= kMPEG4_FirstLayer && aCode <= kMPEG4_LastLayer;
}

/// The least bytes of a video object layer after its code, up to its scan.
inline constexpr std::uint32_t kMPEG4_MinLayerSize = 9;

/// A video object layer of rectangular pictures (6.2.3).
struct ezMPEG4Layer {
    VideoRatio mPixelAspect;
    std::uint32_t mFrameRate = 0; ///< pictures in 1000 seconds; 0 where they may last differently long
    std::uint32_t mWidth = 0;     ///< pixels
    std::uint32_t mHeight = 0;
    bool mfInterlaced = false;
    bool mfLegal = false; ///< in all up to the scan, the bits that mark it included
};

/// Takes the bytes of a layer after its code. False where it has no size that can be told: it ends before, or
/// its pictures have a shape of their own.
bool ezMPEG4Layer_Read(const unsigned char* aBytes, std::size_t aSize, ezMPEG4Layer& aLayer);
