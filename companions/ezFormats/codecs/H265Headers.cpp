#include "ezFormats/codecs/H265Headers.h"

#include "ezBytes/BitReader.h"
#include "ezFormats/codecs/H265SetParts.h"
#include "ezFormats/codecs/NALUnits.h"
#include "ezFormats/detail/Limits.h"

// Clauses are those of ITU-T H.265.

namespace {

constexpr std::uint32_t kMaxSubLayers = 7;         ///< vps_max_sub_layers_minus1 and one (7.4.3.1)
constexpr std::uint32_t kVPSReservedBits = 0xFFFF; ///< vps_reserved_0xffff_16bits
constexpr std::uint32_t kPictureSizeInBlocks = 16; ///< sps_max_dec_pic_buffering, the largest (A.4.2)
constexpr std::uint32_t kMaxLog2Block = 6;         ///< of a coding tree block (A.3.2)

bool IsReadToTheEnd(const ezBitReader& aBits) {
    return !aBits.HasFailed() && aBits.GetBitsLeft() == 0;
}

// --- Profile, tier and level (7.3.3)

constexpr unsigned kProfileBits = 88; ///< of a sub-layer, without its level
constexpr unsigned kLevelBits = 8;

void SkipSubLayers(ezBitReader& aBits, std::uint32_t aCount) {
    std::size_t bits = 0;
    for (std::uint32_t i = 0; i < aCount; ++i) {
        bits += aBits.ReadFlag() ? kProfileBits : 0; // sub_layer_profile_present_flag
        bits += aBits.ReadFlag() ? kLevelBits : 0;   // sub_layer_level_present_flag
    }
    for (std::uint32_t i = aCount; aCount > 0 && i < 8; ++i) {
        aBits.Require(aBits.Read(2) == 0); // reserved_zero_2bits
    }
    aBits.Skip(bits);
}

/// profile_tier_level of a parameter set.
ezH265Profile ReadProfile(ezBitReader& aBits, std::uint32_t aSubLayersMinus1) {
    const ezH265Profile profile = ezH265Profile_Read(aBits);
    SkipSubLayers(aBits, aSubLayersMinus1);
    return profile;
}

/// The order of pictures in each sub-layer, or in the highest alone.
void SkipOrdering(ezBitReader& aBits, std::uint32_t aSubLayersMinus1) {
    const std::uint32_t count = aBits.ReadFlag() ? aSubLayersMinus1 + 1 : 1;
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint32_t buffered =
            aBits.ReadUEUpTo(kPictureSizeInBlocks - 1); // max_dec_pic_buffering_minus1
        aBits.ReadUEUpTo(buffered);                     // max_num_reorder_pics
        aBits.ReadUE();                                 // max_latency_increase_plus1
    }
}

// --- Picture size (7.3.2.2.1)

/// The picture that is left of aFull pixels; a cut that leaves none fails.
std::uint32_t Crop(ezBitReader& aBits, std::uint32_t aFull, std::uint64_t aFirst, std::uint64_t aLast,
                   std::uint64_t aUnit) {
    const std::uint64_t cut = (aFirst + aLast) * aUnit; // below 2^35
    return aBits.Require(cut < aFull) ? aFull - static_cast<std::uint32_t>(cut) : 0;
}

/// conf_win_*_offset, in the units of table 6-1.
void ReadCropping(ezBitReader& aBits, ezH265SPS& aSPS) {
    const std::uint64_t left = aBits.ReadUE();
    const std::uint64_t right = aBits.ReadUE();
    const std::uint64_t top = aBits.ReadUE();
    const std::uint64_t bottom = aBits.ReadUE();
    const bool fHalfWidth = aSPS.mChromaFormat == 1 || aSPS.mChromaFormat == 2;
    aSPS.mWidth = Crop(aBits, aSPS.mWidth, left, right, fHalfWidth ? 2 : 1);
    aSPS.mHeight = Crop(aBits, aSPS.mHeight, top, bottom, aSPS.mChromaFormat == 1 ? 2 : 1);
}

void ReadPictureSize(ezBitReader& aBits, ezH265SPS& aSPS) {
    aSPS.mChromaFormat = aBits.ReadUEUpTo(3);
    aSPS.mfSeparateColourPlanes = aSPS.mChromaFormat == 3 && aBits.ReadFlag();
    aSPS.mCodedWidth = aBits.ReadUEUpTo(kH265_MaxSide);
    aSPS.mCodedHeight = aBits.ReadUEUpTo(kH265_MaxSide);
    aBits.Require(aSPS.mCodedWidth != 0 && aSPS.mCodedHeight != 0 &&
                  std::uint64_t{aSPS.mCodedWidth} * aSPS.mCodedHeight <= kH265_MaxPicture);
    aSPS.mWidth = aSPS.mCodedWidth;
    aSPS.mHeight = aSPS.mCodedHeight;
    if (aBits.ReadFlag()) { // conformance_window_flag
        ReadCropping(aBits, aSPS);
    }
}

/// Sizes of coding blocks, of which the picture is made, and of transform blocks.
void ReadBlockSizes(ezBitReader& aBits, ezH265SPS& aSPS) {
    const std::uint32_t leastLog2 = 3 + aBits.ReadUEUpTo(3);     // log2_min_luma_coding_block_size_minus3
    const std::uint32_t log2 = leastLog2 + aBits.ReadUEUpTo(3);  // log2_diff_max_min_luma_coding_block_size
    const std::uint32_t transformLog2 = 2 + aBits.ReadUEUpTo(3); // log2_min_luma_transform_block_size_minus2
    aBits.ReadUEUpTo(3); // log2_diff_max_min_luma_transform_block_size
    aBits.ReadUEUpTo(4); // max_transform_hierarchy_depth_inter
    aBits.ReadUEUpTo(4); // max_transform_hierarchy_depth_intra
    const std::uint32_t least = 1U << leastLog2;
    aBits.Require(log2 <= kMaxLog2Block && transformLog2 < leastLog2 && aSPS.mCodedWidth % least == 0 &&
                  aSPS.mCodedHeight % least == 0);
}

/// What of coding stands before the usability information.
void SkipTools(ezBitReader& aBits, std::uint32_t aPOCBits) {
    if (aBits.ReadFlag() &&
        aBits.ReadFlag()) { // scaling_list_enabled_flag, sps_scaling_list_data_present_flag
        H265_SkipScalingLists(aBits);
    }
    aBits.Skip(1);           // amp_enabled_flag
    aBits.Skip(1);           // sample_adaptive_offset_enabled_flag
    if (aBits.ReadFlag()) {  // pcm_enabled_flag
        aBits.Skip(4 + 4);   // pcm_sample_bit_depth_luma_minus1, _chroma_minus1
        aBits.ReadUEUpTo(2); // log2_min_pcm_luma_coding_block_size_minus3
        aBits.ReadUEUpTo(2); // log2_diff_max_min_pcm_luma_coding_block_size
        aBits.Skip(1);       // pcm_loop_filter_disabled_flag
    }
    H265_SkipRefPicSets(aBits);
    if (aBits.ReadFlag()) { // long_term_ref_pics_present_flag
        const std::uint32_t count = aBits.ReadUEUpTo(kH265_MaxLongTermPictures); // num_long_term_ref_pics_sps
        aBits.Skip(std::size_t{count} *
                   (aPOCBits + 1)); // lt_ref_pic_poc_lsb_sps, used_by_curr_pic_lt_sps_flag
    }
    aBits.Skip(1); // sps_temporal_mvp_enabled_flag
    aBits.Skip(1); // strong_intra_smoothing_enabled_flag
}

// --- Usability information (E.2.1)

/// What the buffers of a stream have in common (E.2.2).
struct Buffers {
    bool mfNAL = false;
    bool mfVCL = false;
    bool mfSubPictures = false;
    unsigned mRateScale = 0;
};

Buffers ReadBuffers(ezBitReader& aBits) {
    Buffers buffers;
    buffers.mfNAL = aBits.ReadFlag(); // nal_hrd_parameters_present_flag
    buffers.mfVCL = aBits.ReadFlag(); // vcl_hrd_parameters_present_flag
    if (!buffers.mfNAL && !buffers.mfVCL) {
        return buffers;
    }
    buffers.mfSubPictures = aBits.ReadFlag(); // sub_pic_hrd_params_present_flag
    aBits.Skip(buffers.mfSubPictures ? 8 + 5 + 1 + 5 : 0);
    buffers.mRateScale = 6 + aBits.Read(4);    // bit_rate_scale
    aBits.Skip(4);                             // cpb_size_scale
    aBits.Skip(buffers.mfSubPictures ? 4 : 0); // cpb_size_du_scale
    aBits.Skip(5 + 5 + 5);                     // lengths of CPB and DPB delays
    return buffers;
}

/// sub_layer_hrd_parameters (E.2.3): the rate of the last, the fastest, into a set that has none yet.
void ReadDeliveries(ezBitReader& aBits, const Buffers& aBuffers, std::uint32_t aCount, ezH265SPS& aSPS) {
    std::uint64_t rate = 0;
    bool fConstant = false;
    for (std::uint32_t i = 0; i < aCount && !aBits.HasFailed(); ++i) {
        rate = (std::uint64_t{aBits.ReadUE()} + 1) << aBuffers.mRateScale; // bit_rate_value_minus1
        aBits.ReadUE();                                                    // cpb_size_value_minus1
        if (aBuffers.mfSubPictures) {
            aBits.ReadUE(); // cpb_size_du_value_minus1
            aBits.ReadUE(); // bit_rate_du_value_minus1
        }
        fConstant = aBits.ReadFlag(); // cbr_flag
    }
    if (!aBits.HasFailed()) {
        aSPS.mBitRate = rate;
        aSPS.mfConstantRate = fConstant;
    }
}

/// hrd_parameters (E.2.2), of which the highest sub-layer is that of the whole stream.
void ReadHRD(ezBitReader& aBits, std::uint32_t aSubLayersMinus1, ezH265SPS& aSPS) {
    const Buffers buffers = ReadBuffers(aBits);
    for (std::uint32_t i = 0; i <= aSubLayersMinus1 && !aBits.HasFailed(); ++i) {
        const bool fFixed =
            aBits.ReadFlag() || aBits.ReadFlag(); // fixed_pic_rate_general_flag, _within_cvs_flag
        bool fLowDelay = false;
        if (fFixed) {
            aBits.ReadUEUpTo(2047); // elemental_duration_in_tc_minus1
        } else {
            fLowDelay = aBits.ReadFlag(); // low_delay_hrd_flag
        }
        const std::uint32_t count = fLowDelay ? 1 : 1 + aBits.ReadUEUpTo(31); // cpb_cnt_minus1
        if (buffers.mfVCL && !buffers.mfNAL) {
            ReadDeliveries(aBits, buffers, count, aSPS);
        } else if (buffers.mfNAL) {
            ReadDeliveries(aBits, buffers, count, aSPS);
            ezH265SPS other; // that of the slices alone
            ReadDeliveries(aBits, buffers, buffers.mfVCL ? count : 0, other);
        }
    }
}

void ReadVUI(ezBitReader& aBits, std::uint32_t aSubLayersMinus1, ezH265SPS& aSPS) {
    VideoUsability_ReadSigns(aBits, aSPS.mUsability);
    aBits.Skip(1);                              // neutral_chroma_indication_flag
    aSPS.mfFieldPictures = aBits.ReadFlag();    // field_seq_flag
    aSPS.mfPictureStructure = aBits.ReadFlag(); // frame_field_info_present_flag
    if (aBits.ReadFlag()) { // default_display_window_flag: what is shown is more than this
        for (int i = 0; i < 4; ++i) {
            aBits.ReadUE();
        }
    }
    if (aBits.ReadFlag()) { // vui_timing_info_present_flag
        VideoUsability_ReadClock(aBits, aSPS.mUsability);
        if (aBits.ReadFlag()) { // vui_poc_proportional_to_timing_flag
            aBits.ReadUE();     // vui_num_ticks_poc_diff_one_minus1
        }
        if (aBits.ReadFlag()) { // vui_hrd_parameters_present_flag
            ReadHRD(aBits, aSubLayersMinus1, aSPS);
        }
    }
    if (aBits.ReadFlag()) {     // bitstream_restriction_flag
        aBits.Skip(1 + 1 + 1);  // tiles_fixed_structure_flag and two of vectors and lists
        aBits.ReadUEUpTo(4095); // min_spatial_segmentation_idc
        aBits.ReadUEUpTo(16);   // max_bytes_per_pic_denom
        aBits.ReadUEUpTo(16);   // max_bits_per_min_cu_denom
        aBits.ReadUEUpTo(16);   // log2_max_mv_length_horizontal
        aBits.ReadUEUpTo(16);   // log2_max_mv_length_vertical
    }
}

// --- Extensions (7.3.2.2.1, 7.3.2.3.1)

/// The eight bits that say which extensions follow, if the next bit says that any do: true when one does that
/// is not looked at. The others are left to be read: aRange.
bool HasOtherExtensions(ezBitReader& aBits, bool& afRange) {
    afRange = false;
    if (!aBits.ReadFlag()) {
        return false;
    }
    afRange = aBits.ReadFlag(); // sps_range_extension_flag, pps_range_extension_flag
    return aBits.Read(7) != 0;  // of layers, of depth, of screen content, and four bits
}

} // namespace

bool ezH265UnitHeader_Read(std::uint8_t aFirst, std::uint8_t aSecond, ezH265UnitHeader& aHeader) {
    const unsigned layer = (aFirst & 1U) << 5 | aSecond >> 3; // nuh_layer_id
    const unsigned subLayer = aSecond & 7U;                   // nuh_temporal_id_plus1
    aHeader.mType = static_cast<std::uint8_t>(aFirst >> 1 & 0x3FU);
    aHeader.mfBase = layer == 0;
    aHeader.mfLowest = subLayer == 1;
    return (aFirst & 0x80U) == 0 && subLayer != 0; // forbidden_zero_bit
}

bool ezH265UnitType_IsSlice(std::uint8_t aType) {
    return aType <= kH265_LastSubLayerSlice || (aType >= kH265_FirstIRAPSlice && aType <= kH265_CRASlice);
}

bool ezH265UnitType_IsIRAP(std::uint8_t aType) {
    return aType >= kH265_FirstIRAPSlice && aType <= kH265_CRASlice;
}

ezH265Profile ezH265Profile_Read(ezBitReader& aBits) {
    ezH265Profile profile;
    aBits.Skip(2 + 1); // general_profile_space, general_tier_flag
    profile.mProfile = aBits.Read(5);
    aBits.Skip(32); // general_profile_compatibility_flag
    profile.mfProgressiveSource = aBits.ReadFlag();
    profile.mfInterlacedSource = aBits.ReadFlag();
    aBits.Skip(2 + 43 + 1); // packing, frames only, constraints
    profile.mLevel = aBits.Read(8);
    return profile;
}

bool ezH265VPS_Read(const unsigned char* aBytes, std::size_t aSize, std::uint32_t& anID) {
    ezBitReader bits(aBytes, RBSP_CountBits(aBytes, aSize));
    anID = bits.Read(4);
    bits.Skip(1 + 1 + 6);                               // vps_base_layer_*_flag, vps_max_layers_minus1
    const std::uint32_t subLayersMinus1 = bits.Read(3); // vps_max_sub_layers_minus1
    const bool fNested = bits.ReadFlag();               // vps_temporal_id_nesting_flag
    bits.Require(bits.Read(16) == kVPSReservedBits && subLayersMinus1 < kMaxSubLayers &&
                 (fNested || subLayersMinus1 != 0));
    ReadProfile(bits, subLayersMinus1);
    SkipOrdering(bits, subLayersMinus1);
    return !bits.HasFailed();
}

bool ezH265SPS_Read(const unsigned char* aBytes, std::size_t aSize, ezH265SPS& aSPS) {
    ezBitReader bits(aBytes, RBSP_CountBits(aBytes, aSize));
    aSPS.mVPSID = bits.Read(4);
    const std::uint32_t subLayersMinus1 = bits.Read(3); // sps_max_sub_layers_minus1
    const bool fNested = bits.ReadFlag();               // sps_temporal_id_nesting_flag
    bits.Require(subLayersMinus1 < kMaxSubLayers && (fNested || subLayersMinus1 != 0));
    aSPS.mProfile = ReadProfile(bits, subLayersMinus1);
    aSPS.mID = bits.ReadUEUpTo(kH265_SPSCount - 1);
    ReadPictureSize(bits, aSPS);
    aSPS.mBitDepth = 8 + bits.ReadUEUpTo(8);               // bit_depth_luma_minus8
    bits.ReadUEUpTo(8);                                    // bit_depth_chroma_minus8
    const std::uint32_t pocBits = 4 + bits.ReadUEUpTo(12); // log2_max_pic_order_cnt_lsb_minus4
    SkipOrdering(bits, subLayersMinus1);
    ReadBlockSizes(bits, aSPS);
    SkipTools(bits, pocBits);
    const bool fUsability = bits.ReadFlag(); // vui_parameters_present_flag
    if (bits.HasFailed()) {
        aSPS.mWidth = 0;
        aSPS.mHeight = 0;
        return false;
    }
    if (fUsability) {
        ReadVUI(bits, subLayersMinus1, aSPS);
    }
    bool fRange = false;
    const bool fOthers = HasOtherExtensions(bits, fRange);
    bits.Skip(fRange ? 9 : 0); // sps_range_extension (7.3.2.2.2)
    return fOthers ? !bits.HasFailed() : IsReadToTheEnd(bits);
}

namespace {

/// tiles_enabled_flag (7.3.2.3.1): their widths and heights but the last of each, unless they are alike.
void SkipTiles(ezBitReader& aBits) {
    const std::uint32_t columns = aBits.ReadUEUpTo(kH265_MaxTileColumns - 1); // num_tile_columns_minus1
    const std::uint32_t rows = aBits.ReadUEUpTo(kH265_MaxTileRows - 1);       // num_tile_rows_minus1
    if (!aBits.ReadFlag()) {                                                  // uniform_spacing_flag
        for (std::uint32_t i = 0; i < columns + rows && !aBits.HasFailed(); ++i) {
            aBits.ReadUE(); // column_width_minus1, row_height_minus1
        }
    }
    aBits.Skip(1); // loop_filter_across_tiles_enabled_flag
}

void SkipQuantisation(ezBitReader& aBits) {
    aBits.ReadSEWithin(-74, 25); // init_qp_minus26, of samples of up to 16 bits
    aBits.Skip(1);               // constrained_intra_pred_flag
    aBits.Skip(1);               // transform_skip_enabled_flag
    if (aBits.ReadFlag()) {      // cu_qp_delta_enabled_flag
        aBits.ReadUEUpTo(3);     // diff_cu_qp_delta_depth
    }
    aBits.ReadSEWithin(-12, 12); // pps_cb_qp_offset
    aBits.ReadSEWithin(-12, 12); // pps_cr_qp_offset
}

void SkipFilters(ezBitReader& aBits) {
    aBits.Skip(1);           // pps_loop_filter_across_slices_enabled_flag
    if (!aBits.ReadFlag()) { // deblocking_filter_control_present_flag
        return;
    }
    aBits.Skip(1);                 // deblocking_filter_override_enabled_flag
    if (!aBits.ReadFlag()) {       // pps_deblocking_filter_disabled_flag
        aBits.ReadSEWithin(-6, 6); // pps_beta_offset_div2
        aBits.ReadSEWithin(-6, 6); // pps_tc_offset_div2
    }
}

} // namespace

bool ezH265PPS_Read(const unsigned char* aBytes, std::size_t aSize, ezH265PPS& aPPS) {
    ezBitReader bits(aBytes, RBSP_CountBits(aBytes, aSize));
    aPPS.mID = bits.ReadUEUpTo(kH265_PPSCount - 1);
    aPPS.mSPSID = bits.ReadUEUpTo(kH265_SPSCount - 1);
    bits.Skip(1 + 1 + 3 + 1 + 1); // dependent segments, output, extra bits, sign hiding, CABAC
    bits.ReadUEUpTo(14);          // num_ref_idx_l0_default_active_minus1
    bits.ReadUEUpTo(14);          // num_ref_idx_l1_default_active_minus1
    SkipQuantisation(bits);
    bits.Skip(1 + 1 + 1 + 1);            // offsets of slices, weighted prediction, lossless blocks
    const bool fTiles = bits.ReadFlag(); // tiles_enabled_flag
    bits.Skip(1);                        // entropy_coding_sync_enabled_flag
    if (fTiles) {
        SkipTiles(bits);
    }
    SkipFilters(bits);
    if (bits.ReadFlag()) { // pps_scaling_list_data_present_flag
        H265_SkipScalingLists(bits);
    }
    bits.Skip(1);                           // lists_modification_present_flag
    bits.ReadUEUpTo(4);                     // log2_parallel_merge_level_minus2
    bits.Skip(1);                           // slice_segment_header_extension_present_flag
    const bool fExtended = bits.ReadFlag(); // pps_extension_present_flag: what it has depends on flags above
    return fExtended ? !bits.HasFailed() : IsReadToTheEnd(bits);
}

ezH265SliceResult ezH265Slice_ReadPPSID(const unsigned char* aBytes, std::size_t aSize, std::uint8_t aType,
                                        std::uint32_t& anID) {
    ezBitReader bits(aBytes, 8 * aSize);
    bits.Skip(1);                                    // first_slice_segment_in_pic_flag
    bits.Skip(ezH265UnitType_IsIRAP(aType) ? 1 : 0); // no_output_of_prior_pics_flag
    anID = bits.ReadUE();
    if (bits.HasFailed()) {
        return ezH265SliceResult::kTooShort;
    }
    return anID < kH265_PPSCount ? ezH265SliceResult::kLegal : ezH265SliceResult::kIllegal;
}
