#include "ezFormats/codecs/AV1Video.h"

#include "ezBytes/BitReader.h"
#include "ezFormats/codecs/DynamicRange.h"

#include <array>
#include <cstdint>

namespace {

// Clauses are those of the AV1 Bitstream & Decoding Process Specification.

constexpr std::array<const char*, 3> kProfiles = {"Main", "High", "Professional"}; // A.2
constexpr std::uint32_t kProfessional = 2;
constexpr std::uint32_t kLastLevel = 23;      ///< seq_level_idx (A.3): 7.3; those after it are no levels
constexpr std::uint32_t kLastWithoutTier = 7; ///< above, a tier follows

/// @name obu_type (6.2.2)
/// @{
constexpr std::uint32_t kSequenceHeader = 1;
constexpr std::uint32_t kMetadata = 5;
/// @}

/// @name metadata_type (6.7.1)
/// @{
constexpr std::uint64_t kContentLight = 1;
constexpr std::uint64_t kMasteringDisplay = 2;
constexpr std::uint64_t kRegistered = 4;
/// @}

/// How samples are coded (6.4.2).
struct Colours {
    std::uint32_t mBitDepth = 0;
    bool mfGrey = false;
    bool mfRGB = false;
    bool mfHalfWidth = false;  ///< subsampling_x
    bool mfHalfHeight = false; ///< subsampling_y

    const char* GetName() const {
        return mfGrey ? "grey" : mfRGB ? "RGB" : !mfHalfWidth ? "4:4:4" : mfHalfHeight ? "4:2:0" : "4:2:2";
    }
};

/// What is read of a stream or of its configuration.
struct Reading {
    bool mfSequence = false;
    VideoFacts mFacts;
    DynamicRange mRange;
};

void TellProfile(std::uint32_t aProfile, std::uint32_t aLevel, VideoFacts& aFacts) {
    aFacts.mProfile = kProfiles[aProfile];
    aFacts.mLevel = aLevel <= kLastLevel ? (2 + aLevel / 4) * 10 + aLevel % 4 : VideoFacts::kNoLevel;
}

void TellColours(const Colours& aColours, VideoFacts& aFacts) {
    aFacts.mBitDepth = aColours.mBitDepth;
    aFacts.mColours = aColours.GetName();
}

/// uvlc (4.10.3): as H.264 codes numbers, but of 32 zeros and more the largest, whatever follows.
std::uint32_t ReadVariable(ezBitReader& aBits) {
    constexpr unsigned kMaxZeros = 32;
    unsigned zeros = 0;
    while (!aBits.HasFailed() && !aBits.ReadFlag()) {
        ++zeros;
    }
    return zeros >= kMaxZeros ? UINT32_MAX : (UINT32_C(1) << zeros) - 1 + aBits.Read(zeros);
}

/// timing_info (5.5.3): pictures in 1000 seconds; 0 where they last differently long.
std::uint32_t ReadFrameRate(ezBitReader& aBits) {
    const std::uint64_t units = aBits.Read(32); // num_units_in_display_tick
    const std::uint32_t scale = aBits.Read(32); // time_scale
    if (!aBits.ReadFlag()) {                    // equal_picture_interval
        return 0;
    }
    const std::uint64_t ticks = std::uint64_t{ReadVariable(aBits)} + 1; // num_ticks_per_picture_minus_1
    return aBits.HasFailed() ? 0 : VideoClock_FrameRate(units * ticks, scale);
}

/// From timing_info_present_flag to the last operating point (5.5.1). The level of the first.
std::uint32_t ReadOperatingPoints(ezBitReader& aBits, VideoFacts& aFacts) {
    bool fModel = false;
    unsigned delayBits = 0;
    if (aBits.ReadFlag()) { // timing_info_present_flag
        aFacts.mFrameRate = ReadFrameRate(aBits);
        fModel = aBits.ReadFlag(); // decoder_model_info_present_flag
    }
    if (fModel) { // decoder_model_info (5.5.4)
        delayBits = aBits.Read(5) + 1;
        aBits.Skip(32 + 5 + 5);
    }
    const bool fDelay = aBits.ReadFlag();          // initial_display_delay_present_flag
    const std::uint32_t count = aBits.Read(5) + 1; // operating_points_cnt_minus_1
    std::uint32_t first = 0;
    for (std::uint32_t i = 0; i < count && !aBits.HasFailed(); ++i) {
        aBits.Skip(12); // operating_point_idc
        const std::uint32_t level = aBits.Read(5);
        aBits.Skip(level > kLastWithoutTier ? 1 : 0); // seq_tier
        if (fModel && aBits.ReadFlag()) {
            aBits.Skip(2 * std::size_t{delayBits} + 1); // operating_parameters_info (5.5.5)
        }
        if (fDelay && aBits.ReadFlag()) {
            aBits.Skip(4); // initial_display_delay_minus_1
        }
        first = i == 0 ? level : first;
    }
    return first;
}

/// The tools of what is no still picture, from enable_interintra_compound on (5.5.1).
void SkipTools(ezBitReader& aBits) {
    aBits.Skip(4); // enable_interintra_compound, _masked_compound, _warped_motion, _dual_filter
    const bool fOrder = aBits.ReadFlag();                      // enable_order_hint
    aBits.Skip(fOrder ? 2 : 0);                                // enable_jnt_comp, enable_ref_frame_mvs
    const bool fScreen = aBits.ReadFlag() || aBits.ReadFlag(); // chosen by the picture, or always
    if (fScreen && !aBits.ReadFlag()) {                        // seq_choose_integer_mv
        aBits.Skip(1);                                         // seq_force_integer_mv
    }
    aBits.Skip(fOrder ? 3 : 0); // order_hint_bits_minus_1
}

/// Which of both directions have half as many samples of colour, where a profile leaves it open (5.5.2).
void ReadSubsampling(ezBitReader& aBits, std::uint32_t aProfile, Colours& aColours) {
    aColours.mfHalfWidth = aProfile != 1;
    aColours.mfHalfHeight = aProfile == 0;
    if (aProfile == kProfessional && aColours.mBitDepth == 12) {
        aColours.mfHalfWidth = aBits.ReadFlag();
        aColours.mfHalfHeight = aColours.mfHalfWidth && aBits.ReadFlag();
    }
}

/// color_config (5.5.2)
Colours ReadColours(ezBitReader& aBits, std::uint32_t aProfile, DynamicRange& aRange) {
    constexpr std::uint32_t kPrimaries709 = 1;
    constexpr std::uint32_t kTransferRGB = 13;
    Colours colours;
    colours.mBitDepth = aBits.ReadFlag() ? 10 : 8; // high_bitdepth
    if (aProfile == kProfessional && colours.mBitDepth == 10) {
        colours.mBitDepth = aBits.ReadFlag() ? 12 : 10;
    }
    colours.mfGrey = aProfile != 1 && aBits.ReadFlag();
    if (aBits.ReadFlag()) { // color_description_present_flag
        const std::uint32_t primaries = aBits.Read(8);
        aRange.mTransfer = aBits.Read(8);
        const std::uint32_t matrix = aBits.Read(8);
        colours.mfRGB = primaries == kPrimaries709 && aRange.mTransfer == kTransferRGB && matrix == 0;
    }
    if (!colours.mfGrey && !colours.mfRGB) {
        aBits.Skip(1); // color_range
        ReadSubsampling(aBits, aProfile, colours);
    }
    return colours;
}

/// sequence_header_obu (5.5.1)
void ReadSequence(const unsigned char* aBytes, std::size_t aSize, Reading& aReading) {
    ezBitReader bits(aBytes, 8 * aSize);
    VideoFacts facts;
    DynamicRange range = aReading.mRange;
    const std::uint32_t profile = bits.Read(3);
    bits.Require(profile < kProfiles.size());
    bits.Skip(1);                        // still_picture
    const bool fStill = bits.ReadFlag(); // reduced_still_picture_header
    const std::uint32_t level = fStill ? bits.Read(5) : ReadOperatingPoints(bits, facts);
    const unsigned widthBits = bits.Read(4) + 1;
    const unsigned heightBits = bits.Read(4) + 1;
    facts.mWidth = bits.Read(widthBits) + 1;
    facts.mHeight = bits.Read(heightBits) + 1;
    if (!fStill && bits.ReadFlag()) { // frame_id_numbers_present_flag
        bits.Skip(4 + 3);
    }
    bits.Skip(3); // use_128x128_superblock, enable_filter_intra, enable_intra_edge_filter
    if (!fStill) {
        SkipTools(bits);
    }
    bits.Skip(3); // enable_superres, enable_cdef, enable_restoration
    const Colours colours = ReadColours(bits, profile, range);
    if (bits.HasFailed()) {
        return;
    }
    TellProfile(profile, level, facts);
    TellColours(colours, facts);
    aReading.mFacts = facts;
    aReading.mRange = range;
    aReading.mfSequence = true;
}

/// leb128 (4.10.5). False where it is not there or is longer than allowed.
bool ReadSize(ezBitReader& aBits, std::uint64_t& aSize) {
    constexpr unsigned kMaxBytes = 8;
    aSize = 0;
    for (unsigned i = 0; i < kMaxBytes; ++i) {
        const std::uint64_t byte = aBits.Read(8);
        aSize |= (byte & 0x7FU) << 7 * i;
        if ((byte & 0x80U) == 0) {
            return !aBits.HasFailed();
        }
    }
    return false;
}

/// metadata_obu (5.8.1)
void ReadMetadata(const unsigned char* aBytes, std::size_t aSize, DynamicRange& aRange) {
    ezBitReader bits(aBytes, 8 * aSize);
    std::uint64_t type = 0;
    if (!ReadSize(bits, type)) {
        return;
    }
    if (type == kContentLight || type == kMasteringDisplay) {
        aRange.mfStaticMetadata = true;
    } else if (type == kRegistered) {
        const std::size_t left = bits.GetBitsLeft() / 8;
        aRange.TakeRegistered(aBytes + (aSize - left), left);
    }
}

/// Walks the units (5.3.1), each of which states its size, up to the first that does not or is cut.
void ReadUnits(const unsigned char* aBytes, std::size_t aSize, Reading& aReading) {
    std::size_t at = 0;
    while (at < aSize) {
        ezBitReader bits(aBytes + at, 8 * (aSize - at));
        bits.Require(!bits.ReadFlag()); // obu_forbidden_bit
        const std::uint32_t type = bits.Read(4);
        const bool fExtension = bits.ReadFlag();
        bits.Require(bits.ReadFlag()); // obu_has_size_field
        bits.Skip(fExtension ? 1 + 8 : 1);
        std::uint64_t size = 0;
        const std::size_t left = ReadSize(bits, size) ? bits.GetBitsLeft() / 8 : 0;
        if (size > left || bits.HasFailed()) {
            return;
        }
        const unsigned char* const content = aBytes + (aSize - left);
        if (type == kSequenceHeader && !aReading.mfSequence) {
            ReadSequence(content, static_cast<std::size_t>(size), aReading);
        } else if (type == kMetadata) {
            ReadMetadata(content, static_cast<std::size_t>(size), aReading.mRange);
        }
        at = aSize - left + static_cast<std::size_t>(size);
    }
}

VideoFacts Tell(Reading& aReading) {
    aReading.mFacts.mCodec = "AV1";
    aReading.mFacts.mScan = kScan_Progressive;
    aReading.mFacts.mHDR = aReading.mRange.GetKind();
    return aReading.mFacts;
}

} // namespace

std::optional<VideoFacts> AV1Video_Read(const unsigned char* aBytes, std::size_t aSize) {
    Reading reading;
    ReadUnits(aBytes, aSize, reading);
    return reading.mfSequence ? std::make_optional(Tell(reading)) : std::nullopt;
}

std::optional<VideoFacts> AV1Video_ReadConfig(const unsigned char* aBytes, std::size_t aSize) {
    constexpr std::uint32_t kMarkerAndVersion = 0x81;
    constexpr std::size_t kFieldsSize = 4;
    ezBitReader bits(aBytes, 8 * aSize);
    bits.Require(bits.Read(8) == kMarkerAndVersion);
    const std::uint32_t profile = bits.Read(3);
    const std::uint32_t level = bits.Read(5);
    bits.Skip(1); // seq_tier_0
    const bool fHigh = bits.ReadFlag();
    const bool fTwelve = bits.ReadFlag();
    Colours colours;
    colours.mBitDepth = fTwelve ? 12 : fHigh ? 10 : 8;
    colours.mfGrey = bits.ReadFlag();
    colours.mfHalfWidth = bits.ReadFlag();
    colours.mfHalfHeight = bits.ReadFlag();
    bits.Skip(2 + 8); // chroma_sample_position, initial_presentation_delay
    if (!bits.Require(profile < kProfiles.size())) {
        return std::nullopt;
    }
    Reading reading;
    TellProfile(profile, level, reading.mFacts);
    TellColours(colours, reading.mFacts);
    ReadUnits(aBytes + kFieldsSize, aSize - kFieldsSize, reading);
    return Tell(reading);
}
