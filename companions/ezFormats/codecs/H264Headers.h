#pragma once

#include "ezFormats/codecs/ParameterSets.h"
#include "ezFormats/codecs/VideoUsability.h"

#include <cstddef>
#include <cstdint>

/// @name nal_unit_type (ITU-T H.264, table 7-1)
/// @{
inline constexpr std::uint8_t kH264_NonIDRSlice = 1;
inline constexpr std::uint8_t kH264_IDRSlice = 5;
inline constexpr std::uint8_t kH264_SEI = 6;
inline constexpr std::uint8_t kH264_SPS = 7;
inline constexpr std::uint8_t kH264_PPS = 8;
/// @}

inline constexpr std::size_t kH264_SPSCount = 32;
inline constexpr std::size_t kH264_PPSCount = 256;

/// @name The least bytes of a NAL unit after its header byte
/// @{
inline constexpr std::uint32_t kH264_MinSPSSize = 5;
inline constexpr std::uint32_t kH264_MinPPSSize = 3;
/// @}

/// What the HRD parameters of a sequence tell of its rate (E.1.2).
struct ezH264HRD {
    std::uint64_t mBitRate = 0; ///< bits a second, of the fastest delivery schedule; 0: not told
    bool mfConstant = false;    ///< cbr_flag
};

/// A sequence parameter set (7.3.2.1.1).
struct ezH264SPS {
    std::uint32_t mProfile = 0;     ///< profile_idc
    std::uint32_t mConstraints = 0; ///< constraint_set0_flag, the highest bit, to reserved_zero_2bits
    std::uint32_t mLevel = 0;       ///< level_idc
    std::uint32_t mID = 0;
    std::uint32_t mChromaFormat = 1; ///< chroma_format_idc, 0: monochrome, 1: 4:2:0, 2: 4:2:2, 3: 4:4:4
    bool mfSeparateColourPlanes = false;
    std::uint32_t mBitDepth = 0; ///< of luma
    std::uint32_t mFrameNumBits = 0;
    std::uint32_t mPOCType = 0;    ///< pic_order_cnt_type
    std::uint32_t mPOCLsbBits = 0; ///< of pic_order_cnt_lsb; 0 but for POC type 0
    bool mfFrameMBsOnly = false;   ///< there are no fields
    bool mfAdaptive = false;       ///< mb_adaptive_frame_field_flag: frames may be of pairs of fields' blocks
    std::uint32_t mWidthInMBs = 0; ///< macroblocks of 16 by 16 pixels
    std::uint32_t mHeightInMBs = 0;
    std::uint32_t mWidth = 0; ///< pixels, after cropping
    std::uint32_t mHeight = 0;
    ezVideoUsability mUsability;
    ezH264HRD mHRD;
    std::uint32_t mDelayBits = 0;    ///< of a picture timing SEI message, before its pic_struct
    bool mfPictureStructure = false; ///< such a message has pic_struct
};

/// What a slice header needs of a picture parameter set (7.3.2.2).
struct ezH264PPS {
    std::uint32_t mID = 0;
    std::uint32_t mSPSID = 0;
};

using ezH264Sets = ezParameterSets<ezH264SPS, kH264_SPSCount, kH264_PPSCount>;

// Both sets are read from the bytes after the NAL unit's header byte, without emulation prevention bytes;
// zeros may follow them. False unless the set is legal to its last bit, and that is where the unit ends.

/// Where it is not legal in its usability information or after it, the size is known, and what was read of
/// that; else the size is 0.
bool ezH264SPS_Read(const unsigned char* aBytes, std::size_t aSize, ezH264SPS& aSPS);

/// The SPS that it refers to must be among aSets.
bool ezH264PPS_Read(const unsigned char* aBytes, std::size_t aSize, const ezH264Sets& aSets, ezH264PPS& aPPS);

/// Whether level_idc stands for a level (A.3).
bool ezH264Level_IsKnown(std::uint32_t aLevel);

/// How far a slice header could be read.
enum class ezH264SliceResult { kLegal, kIllegal, kTooShort };

/// The ID of the PPS that a slice refers to, from the bytes that are there so far.
ezH264SliceResult ezH264Slice_ReadPPSID(const unsigned char* aBytes, std::size_t aSize, std::uint32_t& anID);

/// Reads a slice header (7.3.3) as far as it places the slice in a stream of this SPS.
/// @param afField  unless null, whether a legal slice is of a field
ezH264SliceResult ezH264Slice_Check(const unsigned char* aBytes, std::size_t aSize, bool afIDR,
                                    const ezH264SPS& aSPS, bool* afField = nullptr);
