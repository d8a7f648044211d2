#pragma once

#include "ezFormats/codecs/VideoFacts.h"

#include <cstddef>
#include <cstdint>

// Headers of VC-1 (SMPTE ST 421), and the codes of its units.

/// @name Codes of the units of a stream of the advanced profile, after 00 00 01 (annex E)
/// @{
inline constexpr std::uint8_t kVC1_Frame = 0x0D;
inline constexpr std::uint8_t kVC1_EntryPoint = 0x0E;
inline constexpr std::uint8_t kVC1_Sequence = 0x0F;
inline constexpr std::uint8_t kVC1_EntryPointUserData = 0x1E;
inline constexpr std::uint8_t kVC1_SequenceUserData = 0x1F;
/// @}

/// The most bytes of a header after its code, without emulation prevention: a sequence header with colours
/// and 31 leaky buckets, which each fill four of them.
inline constexpr std::size_t kVC1_MaxHeaderSize = 160;

/// @name The least bytes of a unit after its code
/// @{
inline constexpr std::uint32_t kVC1_MinSequenceSize = 6;
inline constexpr std::uint32_t kVC1_MinEntryPointSize = 2;
/// @}

/// The advanced profile, as the first two bits of sequence headers have it (annex J, 6.1.1); the others are
/// 0, 1 and 2.
inline constexpr std::uint32_t kVC1_Advanced = 3;

/// The highest level of the advanced profile.
inline constexpr std::uint32_t kVC1_MaxLevel = 4;

/// A sequence header of the advanced profile (6.1).
struct ezVC1Sequence {
    std::uint32_t mLevel = 0;  ///< 0 to 4
    std::uint32_t mWidth = 0;  ///< the most that a picture has, in pixels
    std::uint32_t mHeight = 0; ///< of a frame
    bool mfInterlaced = false; ///< frames may be coded as interlaced
    bool mfSegmented = false;  ///< the two fields of a frame show the same instant
    /// @name Of the display; 0 where it is not told
    /// @{
    std::uint32_t mDisplayWidth = 0;
    std::uint32_t mDisplayHeight = 0;
    VideoRatio mPixelAspect;
    std::uint32_t mFrameRate = 0; ///< pictures in 1000 seconds
    /// @}
    std::uint32_t mLeakyBuckets = 0; ///< an entry point has a byte for each
};

// Each takes the bytes of a unit after its code, without emulation prevention; others may follow its fields.

/// False for what is cut before its last field, or is against the format. Of one that is cut after the size
/// of its pictures, what was read stays.
bool ezVC1Sequence_Read(const unsigned char* aBytes, std::size_t aSize, ezVC1Sequence& aSequence);

/// An entry point (6.2): puts the size of the pictures that follow it over that of aSequence, where it states
/// one. False for what is cut before that, or states a larger size than the sequence allows.
bool ezVC1EntryPoint_Read(const unsigned char* aBytes, std::size_t aSize, ezVC1Sequence& aSequence);

/// Whether a frame is coded as interlaced, as one or as two fields (7.1.1.15). False for an empty one, too.
bool ezVC1Frame_IsInterlaced(const unsigned char* aBytes, std::size_t aSize, const ezVC1Sequence& aSequence);
