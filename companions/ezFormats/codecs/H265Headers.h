#pragma once

#include "ezFormats/codecs/ParameterSets.h"
#include "ezFormats/codecs/VideoUsability.h"

#include <cstddef>
#include <cstdint>

class ezBitReader;

/// @name nal_unit_type (ITU-T H.265, table 7-1)
/// @{
inline constexpr std::uint8_t kH265_LastSubLayerSlice = 9; ///< TRAIL_N, 0, to RASL_R
inline constexpr std::uint8_t kH265_FirstIRAPSlice = 16;   ///< BLA_W_LP
inline constexpr std::uint8_t kH265_CRASlice = 21;
inline constexpr std::uint8_t kH265_VPS = 32;
inline constexpr std::uint8_t kH265_SPS = 33;
inline constexpr std::uint8_t kH265_PPS = 34;
inline constexpr std::uint8_t kH265_PrefixSEI = 39;
/// @}

inline constexpr std::size_t kH265_VPSCount = 16;
inline constexpr std::size_t kH265_SPSCount = 16;
inline constexpr std::size_t kH265_PPSCount = 64;

inline constexpr std::size_t kH265_HeaderSize = 2; ///< bytes of a NAL unit's header

/// @name The least bytes of a NAL unit after its header
/// @{
inline constexpr std::uint32_t kH265_MinVPSSize = 17;
inline constexpr std::uint32_t kH265_MinSPSSize = 19;
inline constexpr std::uint32_t kH265_MinPPSSize = 4;
inline constexpr std::uint32_t kH265_MinSliceSize = 1;
/// @}

/// A NAL unit's header (7.3.1.2).
struct ezH265UnitHeader {
    std::uint8_t mType = 0;
    bool mfBase = false;   ///< of the layer that stands for itself
    bool mfLowest = false; ///< of the lowest temporal sub-layer
};

/// False where the bytes cannot begin a NAL unit.
bool ezH265UnitHeader_Read(std::uint8_t aFirst, std::uint8_t aSecond, ezH265UnitHeader& aHeader);

/// Whether the unit is a slice segment of a picture, and of one that decoding can begin with.
bool ezH265UnitType_IsSlice(std::uint8_t aType);
bool ezH265UnitType_IsIRAP(std::uint8_t aType);

/// Profile and level of the whole stream (7.3.3).
struct ezH265Profile {
    std::uint32_t mProfile = 0;       ///< general_profile_idc
    bool mfProgressiveSource = false; ///< general_progressive_source_flag
    bool mfInterlacedSource = false;  ///< general_interlaced_source_flag; with both or none it is not told
    std::uint32_t mLevel = 0;         ///< general_level_idc, thirty times the level
};

/// A sequence parameter set (7.3.2.2.1).
struct ezH265SPS {
    std::uint32_t mVPSID = 0;
    std::uint32_t mID = 0;
    ezH265Profile mProfile;
    std::uint32_t mChromaFormat = 1; ///< chroma_format_idc, 0: monochrome, 1: 4:2:0, 2: 4:2:2, 3: 4:4:4
    bool mfSeparateColourPlanes = false;
    std::uint32_t mBitDepth = 0;   ///< of luma
    std::uint32_t mCodedWidth = 0; ///< pixels
    std::uint32_t mCodedHeight = 0;
    std::uint32_t mWidth = 0; ///< pixels, after cropping
    std::uint32_t mHeight = 0;
    ezVideoUsability mUsability;
    bool mfFieldPictures = false;    ///< field_seq_flag: each picture is a field
    bool mfPictureStructure = false; ///< a picture timing SEI message begins with pic_struct
    std::uint64_t mBitRate = 0; ///< bits a second of the HRD parameters, of the fastest delivery; 0: not told
    bool mfConstantRate = false; ///< cbr_flag of that

    /// Coded pictures of a frame: two where they are fields.
    std::uint32_t CountPictures() const { return mfFieldPictures ? 2 : 1; }
    std::uint32_t GetFrameHeight() const { return mHeight * CountPictures(); }
};

/// What a slice header needs of a picture parameter set (7.3.2.3.1).
struct ezH265PPS {
    std::uint32_t mID = 0;
    std::uint32_t mSPSID = 0;
};

using ezH265Sets = ezParameterSets<ezH265SPS, kH265_SPSCount, kH265_PPSCount>;

// The sets are read from the bytes after the NAL unit's header, without emulation prevention bytes; zeros may
// follow them.

/// The ID of a video parameter set (7.3.2.1), which is legal up to its profile, tier and level.
bool ezH265VPS_Read(const unsigned char* aBytes, std::size_t aSize, std::uint32_t& anID);

/// False unless the set is legal to its last bit, and that is where the unit ends; extensions but that of
/// ranges are not looked at. Where it is not legal in its usability information or after it, the size is
/// known, and what was read of that; else the size is 0.
bool ezH265SPS_Read(const unsigned char* aBytes, std::size_t aSize, ezH265SPS& aSPS);

/// False unless the set is legal to its last bit, with the same exception.
bool ezH265PPS_Read(const unsigned char* aBytes, std::size_t aSize, ezH265PPS& aPPS);

/// How far a slice segment header could be read.
enum class ezH265SliceResult { kLegal, kIllegal, kTooShort };

/// The ID of the PPS that a slice segment refers to (7.3.6.1), from the bytes that are there so far.
/// @param aType  of the unit
ezH265SliceResult ezH265Slice_ReadPPSID(const unsigned char* aBytes, std::size_t aSize, std::uint8_t aType,
                                        std::uint32_t& anID);

/// Reads the profile, tier and level of the whole stream: general_profile_space to general_level_idc, 12
/// bytes, as "hvcC" has them too (ISO/IEC 14496-15, 8.3.3.1). Required of them is that they can be read.
ezH265Profile ezH265Profile_Read(ezBitReader& aBits);
