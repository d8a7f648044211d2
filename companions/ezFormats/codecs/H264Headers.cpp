#include "ezFormats/codecs/H264Headers.h"

#include "ezBytes/BitReader.h"
#include "ezFormats/codecs/NALUnits.h"
#include "ezFormats/detail/Limits.h"

#include <algorithm>
#include <array>

// Clauses are those of ITU-T H.264.

namespace {

/// profile_idc (A.2)
constexpr std::array<std::uint32_t, 10> kProfiles = {44, 66, 77, 83, 86, 88, 100, 110, 122, 244};
/// Profiles whose SPS has a chroma format and scaling lists (7.3.2.1.1).
constexpr std::array<std::uint32_t, 7> kHighProfiles = {44, 83, 86, 100, 110, 122, 244};
/// level_idc (A.3)
constexpr std::array<std::uint32_t, 20> kLevels = {9,  10, 11, 12, 13, 20, 21, 22, 30, 31,
                                                   32, 40, 41, 42, 50, 51, 52, 60, 61, 62};

constexpr std::uint32_t kReservedZeroBits = 3; ///< of the constraints
constexpr std::uint32_t kMacroblockSide = 16;
constexpr std::size_t kSize4x4 = 16;
constexpr std::size_t kSize8x8 = 64;
constexpr unsigned k4x4ListCount = 6;

template <std::size_t Size>
bool IsIn(const std::array<std::uint32_t, Size>& aValues, std::uint32_t aValue) {
    return std::find(aValues.begin(), aValues.end(), aValue) != aValues.end();
}

bool IsReadToTheEnd(const ezBitReader& aBits) {
    return !aBits.HasFailed() && aBits.GetBitsLeft() == 0;
}

/// scaling_list (7.3.2.1.1.1)
void SkipScalingList(ezBitReader& aBits, std::size_t aSize) {
    std::int64_t lastScale = 8;
    std::int64_t nextScale = 8;
    for (std::size_t i = 0; i < aSize && nextScale != 0 && !aBits.HasFailed(); ++i) {
        nextScale = (lastScale + aBits.ReadSEWithin(-128, 127) + 256) % 256; // delta_scale
        lastScale = nextScale;
    }
}

void SkipScalingLists(ezBitReader& aBits, unsigned aCount) {
    for (unsigned i = 0; i < aCount; ++i) {
        if (aBits.ReadFlag()) { // scaling_list_present_flag
            SkipScalingList(aBits, i < k4x4ListCount ? kSize4x4 : kSize8x8);
        }
    }
}

// --- Sequence parameter set (7.3.2.1.1)

/// What the SPS of the high profiles has more.
void ReadHighProfile(ezBitReader& aBits, ezH264SPS& aSPS) {
    aSPS.mChromaFormat = aBits.ReadUEUpTo(3);
    aSPS.mfSeparateColourPlanes = aSPS.mChromaFormat == 3 && aBits.ReadFlag();
    aSPS.mBitDepth = 8 + aBits.ReadUEUpTo(6); // bit_depth_luma_minus8
    aBits.ReadUEUpTo(6);                      // bit_depth_chroma_minus8
    aBits.Skip(1);                            // qpprime_y_zero_transform_bypass_flag
    if (aBits.ReadFlag()) {                   // seq_scaling_matrix_present_flag
        SkipScalingLists(aBits, aSPS.mChromaFormat == 3 ? 12 : 8);
    }
}

/// Picture order count (8.2.1).
void ReadPOC(ezBitReader& aBits, ezH264SPS& aSPS) {
    aSPS.mPOCType = aBits.ReadUEUpTo(2);
    if (aSPS.mPOCType == 0) {
        aSPS.mPOCLsbBits = 4 + aBits.ReadUEUpTo(12);
    } else if (aSPS.mPOCType == 1) {
        aBits.Skip(1);                                     // delta_pic_order_always_zero_flag
        aBits.ReadSE();                                    // offset_for_non_ref_pic
        aBits.ReadSE();                                    // offset_for_top_to_bottom_field
        const std::uint32_t count = aBits.ReadUEUpTo(255); // num_ref_frames_in_pic_order_cnt_cycle
        for (std::uint32_t i = 0; i < count && !aBits.HasFailed(); ++i) {
            aBits.ReadSE(); // offset_for_ref_frame
        }
    }
}

/// The picture that is left of aFull pixels; a cut that leaves none fails.
std::uint32_t Crop(ezBitReader& aBits, std::uint32_t aFull, std::uint64_t aFirst, std::uint64_t aLast,
                   std::uint64_t aUnit) {
    const std::uint64_t cut = (aFirst + aLast) * aUnit; // below 2^36
    return aBits.Require(cut < aFull) ? aFull - static_cast<std::uint32_t>(cut) : 0;
}

/// frame_crop_*_offset, in the units of equations 7-19 to 7-22.
void ReadCropping(ezBitReader& aBits, ezH264SPS& aSPS) {
    const bool fChroma = aSPS.mChromaFormat != 0 && !aSPS.mfSeparateColourPlanes; // ChromaArrayType is not 0
    const std::uint64_t left = aBits.ReadUE();
    const std::uint64_t right = aBits.ReadUE();
    const std::uint64_t top = aBits.ReadUE();
    const std::uint64_t bottom = aBits.ReadUE();
    const std::uint32_t cropUnitX = fChroma && aSPS.mChromaFormat < 3 ? 2 : 1;
    const std::uint32_t cropUnitY =
        (fChroma && aSPS.mChromaFormat == 1 ? 2 : 1) * (aSPS.mfFrameMBsOnly ? 1 : 2);
    aSPS.mWidth = Crop(aBits, aSPS.mWidth, left, right, cropUnitX);
    aSPS.mHeight = Crop(aBits, aSPS.mHeight, top, bottom, cropUnitY);
}

void ReadPictureSize(ezBitReader& aBits, ezH264SPS& aSPS) {
    aSPS.mWidthInMBs = 1 + aBits.ReadUEUpTo(kH264_MaxSideSize - 1);
    const std::uint32_t heightInMapUnits = 1 + aBits.ReadUEUpTo(kH264_MaxSideSize - 1);
    aSPS.mfFrameMBsOnly = aBits.ReadFlag();
    aSPS.mHeightInMBs = heightInMapUnits * (aSPS.mfFrameMBsOnly ? 1 : 2);
    aBits.Require(aSPS.mHeightInMBs <= kH264_MaxSideSize &&
                  aSPS.mWidthInMBs * aSPS.mHeightInMBs <= kH264_MaxFrameSize);
    aSPS.mfAdaptive = !aSPS.mfFrameMBsOnly && aBits.ReadFlag();
    const bool fDirect8x8Inference = aBits.ReadFlag();
    aBits.Require(aSPS.mfFrameMBsOnly || fDirect8x8Inference);
    aSPS.mWidth = aSPS.mWidthInMBs * kMacroblockSide;
    aSPS.mHeight = aSPS.mHeightInMBs * kMacroblockSide;
    if (aBits.ReadFlag()) { // frame_cropping_flag
        ReadCropping(aBits, aSPS);
    }
}

/// hrd_parameters (E.1.2), if the next bit says that they are present. True when they are.
bool ReadHRD(ezBitReader& aBits, ezH264SPS& aSPS) {
    if (!aBits.ReadFlag()) {
        return false;
    }
    ezH264HRD fastest;
    const std::uint32_t count = 1 + aBits.ReadUEUpTo(31); // cpb_cnt_minus1
    const unsigned bitRateScale = 6 + aBits.Read(4);
    aBits.Skip(4); // cpb_size_scale
    for (std::uint32_t i = 0; i < count && !aBits.HasFailed(); ++i) {
        fastest.mBitRate = (std::uint64_t{aBits.ReadUE()} + 1) << bitRateScale; // bit_rate_value_minus1
        aBits.ReadUE();                                                         // cpb_size_value_minus1
        fastest.mfConstant = aBits.ReadFlag();
    }
    aBits.Skip(5);                                       // initial_cpb_removal_delay_length_minus1
    const std::uint32_t removalBits = 1 + aBits.Read(5); // cpb_removal_delay_length_minus1
    const std::uint32_t outputBits = 1 + aBits.Read(5);  // dpb_output_delay_length_minus1
    aBits.Skip(5);                                       // time_offset_length
    if (aBits.HasFailed()) {
        return false;
    }
    aSPS.mDelayBits = removalBits + outputBits; // equal in both, where there are both
    // The NAL HRD comes first, and it counts the bytes of a byte stream.
    aSPS.mHRD = aSPS.mHRD.mBitRate == 0 ? fastest : aSPS.mHRD;
    return true;
}

/// vui_parameters (E.1.1)
void ReadVUI(ezBitReader& aBits, ezH264SPS& aSPS) {
    VideoUsability_ReadSigns(aBits, aSPS.mUsability);
    if (aBits.ReadFlag()) { // timing_info_present_flag
        VideoUsability_ReadClock(aBits, aSPS.mUsability);
        aBits.Skip(1); // fixed_frame_rate_flag
    }
    const bool fNAL = ReadHRD(aBits, aSPS);
    const bool fVCL = ReadHRD(aBits, aSPS);
    aBits.Skip(fNAL || fVCL ? 1 : 0);           // low_delay_hrd_flag
    aSPS.mfPictureStructure = aBits.ReadFlag(); // pic_struct_present_flag
    if (aBits.ReadFlag()) {                     // bitstream_restriction_flag
        aBits.Skip(1);                          // motion_vectors_over_pic_boundaries_flag
        aBits.ReadUEUpTo(16);                   // max_bytes_per_pic_denom
        aBits.ReadUEUpTo(16);                   // max_bits_per_mb_denom
        aBits.ReadUEUpTo(16);                   // log2_max_mv_length_horizontal
        aBits.ReadUEUpTo(16);                   // log2_max_mv_length_vertical
        aBits.ReadUEUpTo(kH264_MaxFrameSize);   // max_num_reorder_frames
        aBits.ReadUEUpTo(kH264_MaxFrameSize);   // max_dec_frame_buffering
    }
}

// --- Picture parameter set (7.3.2.2)

/// Ceil(Log2(aCount)): the bits of a slice_group_id.
unsigned BitsFor(std::uint32_t aCount) {
    unsigned bits = 0;
    while ((1U << bits) < aCount) {
        ++bits;
    }
    return bits;
}

void SkipSliceGroups(ezBitReader& aBits) {
    const std::uint32_t groups = 1 + aBits.ReadUEUpTo(7);
    if (groups == 1) {
        return;
    }
    const std::uint32_t mapType = aBits.ReadUEUpTo(6);
    if (mapType == 0 || mapType == 2) { // run_length_minus1, or top_left and bottom_right
        const std::uint32_t numbers = mapType == 0 ? groups : 2 * (groups - 1);
        for (std::uint32_t i = 0; i < numbers; ++i) {
            aBits.ReadUEUpTo(kH264_MaxFrameSize);
        }
    } else if (mapType >= 3 && mapType <= 5) {
        aBits.Skip(1);                        // slice_group_change_direction_flag
        aBits.ReadUEUpTo(kH264_MaxFrameSize); // slice_group_change_rate_minus1
    } else if (mapType == 6) {
        const std::uint32_t mapUnits = 1 + aBits.ReadUEUpTo(kH264_MaxFrameSize);
        aBits.Skip(std::size_t{mapUnits} * BitsFor(groups)); // slice_group_id
    }
}

} // namespace

bool ezH264Level_IsKnown(std::uint32_t aLevel) {
    return IsIn(kLevels, aLevel);
}

bool ezH264SPS_Read(const unsigned char* aBytes, std::size_t aSize, ezH264SPS& aSPS) {
    ezBitReader bits(aBytes, RBSP_CountBits(aBytes, aSize));
    aSPS.mProfile = bits.Read(8);
    aSPS.mConstraints = bits.Read(8);
    bits.Require((aSPS.mConstraints & kReservedZeroBits) == 0);
    aSPS.mLevel = bits.Read(8);
    bits.Require(IsIn(kProfiles, aSPS.mProfile) && ezH264Level_IsKnown(aSPS.mLevel));
    aSPS.mID = bits.ReadUEUpTo(kH264_SPSCount - 1);
    aSPS.mBitDepth = 8;
    if (IsIn(kHighProfiles, aSPS.mProfile)) {
        ReadHighProfile(bits, aSPS);
    }
    aSPS.mFrameNumBits = 4 + bits.ReadUEUpTo(12);
    ReadPOC(bits, aSPS);
    bits.ReadUEUpTo(16); // max_num_ref_frames
    bits.Skip(1);        // gaps_in_frame_num_value_allowed_flag
    ReadPictureSize(bits, aSPS);
    const bool fUsability = bits.ReadFlag(); // vui_parameters_present_flag
    if (bits.HasFailed()) {
        aSPS.mWidth = 0;
        aSPS.mHeight = 0;
        return false;
    }
    if (fUsability) {
        ReadVUI(bits, aSPS);
    }
    return IsReadToTheEnd(bits);
}

bool ezH264PPS_Read(const unsigned char* aBytes, std::size_t aSize, const ezH264Sets& aSets,
                    ezH264PPS& aPPS) {
    ezBitReader bits(aBytes, RBSP_CountBits(aBytes, aSize));
    aPPS.mID = bits.ReadUEUpTo(kH264_PPSCount - 1);
    aPPS.mSPSID = bits.ReadUEUpTo(kH264_SPSCount - 1);
    const ezH264SPS* sps = bits.HasFailed() ? nullptr : aSets.Find(aPPS.mSPSID);
    if (sps == nullptr) {
        return false;
    }
    bits.Skip(1); // entropy_coding_mode_flag
    bits.Skip(1); // bottom_field_pic_order_in_frame_present_flag
    SkipSliceGroups(bits);
    bits.ReadUEUpTo(31);             // num_ref_idx_l0_default_active_minus1
    bits.ReadUEUpTo(31);             // num_ref_idx_l1_default_active_minus1
    bits.Skip(1);                    // weighted_pred_flag
    bits.Require(bits.Read(2) != 3); // weighted_bipred_idc
    bits.ReadSEWithin(-62, 25);      // pic_init_qp_minus26, of samples of up to 14 bits
    bits.ReadSEWithin(-26, 25);      // pic_init_qs_minus26
    bits.ReadSEWithin(-12, 12);      // chroma_qp_index_offset
    bits.Skip(1);                    // deblocking_filter_control_present_flag
    bits.Skip(1);                    // constrained_intra_pred_flag
    bits.Skip(1);                    // redundant_pic_cnt_present_flag
    if (bits.GetBitsLeft() > 0) {    // the part that the high profiles added
        const bool fTransform8x8 = bits.ReadFlag();
        if (bits.ReadFlag()) { // pic_scaling_matrix_present_flag
            const unsigned lists8x8 = sps->mChromaFormat == 3 ? 6 : 2;
            SkipScalingLists(bits, k4x4ListCount + (fTransform8x8 ? lists8x8 : 0));
        }
        bits.ReadSEWithin(-12, 12); // second_chroma_qp_index_offset
    }
    return IsReadToTheEnd(bits);
}

namespace {

constexpr std::uint32_t kMaxSliceType =
    9; ///< five types, and the same again for pictures of one type (7.4.3)
constexpr std::uint32_t kSliceTypes = 5;
constexpr std::uint32_t kSliceTypeI = 2;
constexpr std::uint32_t kSliceTypeSI = 4;
constexpr std::uint32_t kMaxIDRPicID = 65535;

struct SliceStart {
    std::uint32_t mFirstMB;
    std::uint32_t mType;
    std::uint32_t mPPSID;
};

SliceStart ReadSliceStart(ezBitReader& aBits) {
    SliceStart start = {};
    start.mFirstMB = aBits.ReadUE();
    start.mType = aBits.ReadUE();
    start.mPPSID = aBits.ReadUE();
    return start;
}

} // namespace

// A reader over a block that may still grow fails for one reason at a time: where bytes are missing the
// values read so far are judged when they are all there, so no limit is asked of the reader itself here.

ezH264SliceResult ezH264Slice_ReadPPSID(const unsigned char* aBytes, std::size_t aSize, std::uint32_t& anID) {
    ezBitReader bits(aBytes, 8 * aSize);
    const SliceStart start = ReadSliceStart(bits);
    if (bits.HasFailed()) {
        return ezH264SliceResult::kTooShort;
    }
    anID = start.mPPSID;
    return start.mType <= kMaxSliceType && anID < kH264_PPSCount ? ezH264SliceResult::kLegal
                                                                 : ezH264SliceResult::kIllegal;
}

ezH264SliceResult ezH264Slice_Check(const unsigned char* aBytes, std::size_t aSize, bool afIDR,
                                    const ezH264SPS& aSPS, bool* afField) {
    ezBitReader bits(aBytes, 8 * aSize);
    const SliceStart start = ReadSliceStart(bits);
    bool fLegal = start.mType <= kMaxSliceType;
    if (aSPS.mfSeparateColourPlanes) {
        fLegal = bits.Read(2) != 3 && fLegal; // colour_plane_id
    }
    const std::uint32_t frameNum = bits.Read(aSPS.mFrameNumBits);
    const bool fField = !aSPS.mfFrameMBsOnly && bits.ReadFlag(); // field_pic_flag
    bits.Skip(fField ? 1 : 0);                                   // bottom_field_flag
    const std::uint32_t idrPicID = afIDR ? bits.ReadUE() : 0;
    bits.Skip(aSPS.mPOCLsbBits); // pic_order_cnt_lsb
    if (bits.HasFailed()) {
        return ezH264SliceResult::kTooShort;
    }
    const std::uint32_t macroblocks = aSPS.mWidthInMBs * aSPS.mHeightInMBs / (fField ? 2 : 1);
    const std::uint32_t type = start.mType % kSliceTypes;
    fLegal = fLegal && start.mFirstMB < macroblocks;
    if (afIDR) {
        fLegal = fLegal && frameNum == 0 && idrPicID <= kMaxIDRPicID &&
                 (type == kSliceTypeI || type == kSliceTypeSI);
    }
    if (afField != nullptr) {
        *afField = fField;
    }
    return fLegal ? ezH264SliceResult::kLegal : ezH264SliceResult::kIllegal;
}
