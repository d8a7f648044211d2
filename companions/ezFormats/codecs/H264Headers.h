#pragma once

#include <cstddef>
#include <cstdint>

/// @name nal_unit_type (ITU-T H.264, table 7-1)
/// @{
inline constexpr std::uint8_t kH264_NonIDRSlice = 1;
inline constexpr std::uint8_t kH264_IDRSlice = 5;
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
    std::uint32_t mID = 0;
    std::uint32_t mChromaFormat = 1; ///< chroma_format_idc, 0: monochrome, 1: 4:2:0, 2: 4:2:2, 3: 4:4:4
    bool mfSeparateColourPlanes = false;
    std::uint32_t mFrameNumBits = 0;
    std::uint32_t mPOCType = 0;    ///< pic_order_cnt_type
    std::uint32_t mPOCLsbBits = 0; ///< of pic_order_cnt_lsb; 0 but for POC type 0
    bool mfFrameMBsOnly = false;
    std::uint32_t mWidthInMBs = 0; ///< macroblocks of 16 by 16 pixels
    std::uint32_t mHeightInMBs = 0;
    std::uint32_t mWidth = 0; ///< pixels, after cropping
    std::uint32_t mHeight = 0;
    ezH264HRD mHRD;
};

/// What a slice header needs of a picture parameter set (7.3.2.2).
struct ezH264PPS {
    std::uint32_t mID = 0;
    std::uint32_t mSPSID = 0;
};

// Both sets are read from the bytes after the NAL unit's header byte, without emulation prevention bytes;
// zeros may follow them. False unless the set is legal to its last bit, and that is where the unit ends.

bool ezH264SPS_Read(const unsigned char* aBytes, std::size_t aSize, ezH264SPS& aSPS);

/// The SPS by their IDs, of which the right one must be known to read a PPS.
using ezH264FindSPS = const ezH264SPS* (*)(const void* aContext, std::uint32_t anID);

bool ezH264PPS_Read(const unsigned char* aBytes, std::size_t aSize, ezH264FindSPS aFind, const void* aContext,
                    ezH264PPS& aPPS);

/// How far a slice header could be read.
enum class ezH264SliceResult { kLegal, kIllegal, kTooShort };

/// The ID of the PPS that a slice refers to, from the bytes that are there so far.
ezH264SliceResult ezH264Slice_ReadPPSID(const unsigned char* aBytes, std::size_t aSize, std::uint32_t& anID);

/// Reads a slice header (7.3.3) as far as it places the slice in a stream of this SPS.
ezH264SliceResult ezH264Slice_Check(const unsigned char* aBytes, std::size_t aSize, bool afIDR,
                                    const ezH264SPS& aSPS);
