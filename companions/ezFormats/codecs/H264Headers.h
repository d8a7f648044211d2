#pragma once

#include <cstddef>
#include <cstdint>

/// @name Kinds of NAL units (ITU-T H.264, table 7-1)
/// @{
inline constexpr std::uint8_t kH264_Slice = 1;
inline constexpr std::uint8_t kH264_InstantSlice = 5;
inline constexpr std::uint8_t kH264_SequenceSet = 7;
inline constexpr std::uint8_t kH264_PictureSet = 8;
/// @}

inline constexpr std::size_t kH264_SequenceSetCount = 32;
inline constexpr std::size_t kH264_PictureSetCount = 256;

/// @name The least bytes of a NAL unit behind its first byte
/// @{
inline constexpr std::uint32_t kH264_MinSequenceSetSize = 5;
inline constexpr std::uint32_t kH264_MinPictureSetSize = 3;
/// @}

/// What a buffer description of a sequence tells of its rate.
struct ezH264BitRate {
    std::uint64_t mBitRate = 0; ///< bits a second, of the fastest delivery; 0: not told
    bool mfConstant = false;
};

/// A sequence parameter set.
struct ezH264SequenceSet {
    std::uint32_t mID = 0;
    std::uint32_t mChromaFormat = 1; ///< 0: none, 1: 4:2:0, 2: 4:2:2, 3: 4:4:4
    bool mfSeparatePlanes = false;
    std::uint32_t mFrameNumberBits = 0;
    std::uint32_t mOrderType = 0;
    std::uint32_t mOrderBits = 0;
    bool mfFramesOnly = false;
    std::uint32_t mWidthInBlocks = 0; ///< of 16 pixels
    std::uint32_t mHeightInBlocks = 0;
    std::uint32_t mWidth = 0; ///< pixels, as displayed
    std::uint32_t mHeight = 0;
    ezH264BitRate mBitRate;
};

/// What a slice header needs of a picture parameter set.
struct ezH264PictureSet {
    std::uint32_t mID = 0;
    std::uint32_t mSequenceSetID = 0;
};

// Both sets are read from the bytes behind the NAL unit's first one, freed of escapes; zeros may follow them.
// False unless the set is legal to its last bit, and that is where the unit ends.

bool ezH264SequenceSet_Read(const unsigned char* aBytes, std::size_t aSize, ezH264SequenceSet& aSet);

/// The sequence sets by their numbers, of which one must be known to read a picture set.
using ezH264FindSequenceSet = const ezH264SequenceSet* (*)(const void* aContext, std::uint32_t anID);

bool ezH264PictureSet_Read(const unsigned char* aBytes, std::size_t aSize, ezH264FindSequenceSet aFind,
                           const void* aContext, ezH264PictureSet& aSet);

/// How far a slice header could be read.
enum class ezH264SliceResult { kLegal, kIllegal, kTooShort };

/// The number of the picture set that a slice refers to, from the bytes that are there so far.
ezH264SliceResult ezH264Slice_ReadPictureSetID(const unsigned char* aBytes, std::size_t aSize,
                                               std::uint32_t& anID);

/// Reads a slice header as far as it places the slice in a stream of this sequence set.
ezH264SliceResult ezH264Slice_Check(const unsigned char* aBytes, std::size_t aSize, bool afInstant,
                                    const ezH264SequenceSet& aSet);
