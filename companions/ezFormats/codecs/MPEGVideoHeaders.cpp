#include "ezFormats/codecs/MPEGVideoHeaders.h"

#include "ezBytes/BitReader.h"

#include <algorithm>
#include <array>

// Clauses are those of ISO/IEC 13818-2; the headers of MPEG-1 (ISO/IEC 11172-2) are the same without
// extensions.

namespace {

constexpr std::uint32_t kMaxAspectRatioMPEG1 = 14;
constexpr std::uint32_t kMaxAspectRatioMPEG2 = 4;
constexpr std::uint32_t kMaxFrameRate = 8;
constexpr std::uint32_t kBitRateUnit = 400;
constexpr std::uint32_t kBitRateVariable = 0x3FFFF; ///< of MPEG-1; encoders of MPEG-2 write it on
constexpr std::size_t kMatrixSize = 64;

// picture_coding_type (6.3.9)
constexpr std::uint32_t kPictureP = 2;
constexpr std::uint32_t kPictureB = 3;
constexpr std::uint32_t kPictureD = 4; ///< of MPEG-1

/// True when what is left up to the end of the unit is zero.
bool OnlyZerosLeft(ezBitReader& aBits) {
    while (aBits.GetBitsLeft() > 0) {
        aBits.Require(aBits.Read(static_cast<unsigned>(std::min<std::size_t>(aBits.GetBitsLeft(), 32))) == 0);
    }
    return !aBits.HasFailed();
}

/// A quantiser matrix, if the next bit announces one.
void ReadMatrix(ezBitReader& aBits) {
    if (aBits.ReadFlag()) {
        for (std::size_t i = 0; i < kMatrixSize; ++i) {
            aBits.Require(aBits.Read(8) != 0);
        }
    }
}

bool Between(std::uint32_t aValue, std::uint32_t aMin, std::uint32_t aMax) {
    return aValue >= aMin && aValue <= aMax;
}

/// profile_and_level_indication (clause 8)
bool IsLegalProfile(std::uint32_t aProfileAndLevel) {
    constexpr std::array<std::uint32_t, 5> kLevels = {2, 4, 6, 8, 10}; // high progressive down to low
    constexpr std::array<std::uint32_t, 7> kEscaped = {0x82, 0x85, 0x8A, 0x8B, 0x8D, 0x8E, 0x92};
    if (aProfileAndLevel >= 0x80) { // multi-view and 4:2:2, with levels of their own
        return std::find(kEscaped.begin(), kEscaped.end(), aProfileAndLevel) != kEscaped.end();
    }
    return Between(aProfileAndLevel >> 4, 1, 5) &&
           std::find(kLevels.begin(), kLevels.end(), aProfileAndLevel & 15U) != kLevels.end();
}

} // namespace

/// sequence_header (6.2.2.1)
bool ezMPEGSequence_ReadHeader(const unsigned char* aBytes, std::size_t aSize, ezMPEGSequence& aSequence) {
    ezBitReader bits(aBytes, 8 * aSize);
    aSequence.mWidth = bits.Read(12);
    aSequence.mHeight = bits.Read(12);
    aSequence.mAspectRatio = bits.Read(4);
    aSequence.mFrameRate = bits.Read(4);
    const std::uint32_t bitRate = bits.Read(18);
    const bool fMarker = bits.ReadFlag();
    bits.Skip(10);    // vbv_buffer_size_value
    bits.Skip(1);     // constrained_parameters_flag
    ReadMatrix(bits); // intra_quantiser_matrix
    ReadMatrix(bits); // non_intra_quantiser_matrix
    bits.Require(aSequence.mWidth != 0 && aSequence.mHeight != 0 &&
                 Between(aSequence.mAspectRatio, 1, kMaxAspectRatioMPEG1) &&
                 Between(aSequence.mFrameRate, 1, kMaxFrameRate) && bitRate != 0 && fMarker);
    aSequence.mfVariableBitRate = bitRate == kBitRateVariable;
    aSequence.mBitRate = bitRate;
    aSequence.mBitRate *= kBitRateUnit;
    return OnlyZerosLeft(bits);
}

/// sequence_extension (6.2.2.3)
bool ezMPEGSequence_ReadExtension(const unsigned char* aBytes, std::size_t aSize, ezMPEGSequence& aSequence) {
    ezBitReader bits(aBytes, 8 * aSize);
    bits.Require(bits.Read(4) == kMPEGVideo_SequenceExtension);
    const std::uint32_t profile = bits.Read(8);
    const bool fProgressive = bits.ReadFlag();
    const std::uint32_t chroma = bits.Read(2);
    bits.Require(IsLegalProfile(profile) && chroma != 0);
    const std::uint32_t width = bits.Read(2);
    const std::uint32_t height = bits.Read(2);
    const std::uint64_t bitRate = bits.Read(12);
    bits.Require(bits.ReadFlag()); // marker_bit
    bits.Skip(8);                  // vbv_buffer_size_extension
    bits.Skip(1);                  // low_delay
    const std::uint32_t multiplier = bits.Read(2) + 1;
    const std::uint32_t divisor = bits.Read(5) + 1;
    bits.Require(Between(aSequence.mAspectRatio, 1, kMaxAspectRatioMPEG2));
    if (!OnlyZerosLeft(bits)) {
        return false;
    }
    aSequence.mWidth |= width << 12;
    aSequence.mHeight |= height << 12;
    aSequence.mBitRate += (bitRate << 18) * kBitRateUnit;
    aSequence.mfVariableBitRate = aSequence.mfVariableBitRate && bitRate == 0;
    aSequence.mProfileAndLevel = profile;
    aSequence.mfProgressive = fProgressive;
    aSequence.mChroma = chroma;
    aSequence.mFrameRateMultiplier = multiplier;
    aSequence.mFrameRateDivisor = divisor;
    return true;
}

/// sequence_display_extension (6.2.2.4)
bool ezMPEGDisplay_Read(const unsigned char* aBytes, std::size_t aSize, ezMPEGDisplay& aDisplay) {
    ezBitReader bits(aBytes, 8 * aSize);
    bits.Require(bits.Read(4) == kMPEGVideo_SequenceDisplayExtension);
    bits.Skip(3);                           // video_format
    bits.Skip(bits.ReadFlag() ? 3 * 8 : 0); // colour_description: primaries, transfer, matrix
    aDisplay.mWidth = bits.Read(14);
    bits.Require(bits.ReadFlag()); // marker_bit
    aDisplay.mHeight = bits.Read(14);
    return OnlyZerosLeft(bits);
}

/// group_of_pictures_header (6.2.2.6)
bool ezMPEGGroup_Read(const unsigned char* aBytes, std::size_t aSize) {
    ezBitReader bits(aBytes, 8 * aSize);
    bits.Skip(1);                    // drop_frame_flag
    bits.Require(bits.Read(5) < 24); // time_code_hours
    bits.Require(bits.Read(6) < 60); // time_code_minutes
    bits.Require(bits.ReadFlag());   // marker_bit
    bits.Require(bits.Read(6) < 60); // time_code_seconds
    bits.Require(bits.Read(6) < 60); // time_code_pictures
    bits.Skip(1);                    // closed_gop
    bits.Skip(1);                    // broken_link
    return OnlyZerosLeft(bits);
}

/// picture_header (6.2.3)
bool ezMPEGPicture_ReadHeader(const unsigned char* aBytes, std::size_t aSize, bool afMPEG2,
                              ezMPEGPicture& aPicture) {
    ezBitReader bits(aBytes, 8 * aSize);
    bits.Skip(10); // temporal_reference
    const std::uint32_t type = bits.Read(3);
    bits.Require(Between(type, 1, afMPEG2 ? kPictureB : kPictureD));
    aPicture.mfVariableBitRate = bits.Read(16) == kMPEGVideo_UntoldDelay;
    const unsigned vectors = type == kPictureP ? 1 : type == kPictureB ? 2 : 0;
    for (unsigned i = 0; i < vectors; ++i) {
        const std::uint32_t code = bits.Read(4); // full_pel_*_vector, *_f_code
        bits.Require(afMPEG2 ? code == 7 : (code & 7U) != 0);
    }
    bits.Require(!bits.ReadFlag()); // extra_bit_picture: reserved
    return OnlyZerosLeft(bits);
}

/// picture_coding_extension (6.2.3.1)
bool ezMPEGPicture_ReadCodingExtension(const unsigned char* aBytes, std::size_t aSize,
                                       ezMPEGPicture& aPicture) {
    ezBitReader bits(aBytes, 8 * aSize);
    bits.Require(bits.Read(4) == kMPEGVideo_PictureCodingExtension);
    for (unsigned i = 0; i < 4; ++i) {
        const std::uint32_t code = bits.Read(4); // f_code
        bits.Require(Between(code, 1, 9) || code == 15);
    }
    bits.Skip(2);                    // intra_dc_precision
    bits.Require(bits.Read(2) != 0); // picture_structure
    bits.Skip(8);                    // eight flags from top_field_first to chroma_420_type
    aPicture.mfProgressive = bits.ReadFlag();
    // composite_display_flag: v_axis, field_sequence, sub_carrier, burst_amplitude, sub_carrier_phase
    bits.Skip(bits.ReadFlag() ? 1 + 3 + 1 + 7 + 8 : 0);
    return OnlyZerosLeft(bits);
}
