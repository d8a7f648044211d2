#include "ezFormats/codecs/MPEG4Visual.h"

#include "ezBytes/BitReader.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace {

// Clauses are those of ISO/IEC 14496-2.

/// @name Start codes (table 6-3)
/// @{
constexpr unsigned kFirstVOL = 0x20;
constexpr unsigned kLastVOL = 0x2F;
constexpr unsigned kVisualObjectSequence = 0xB0;
/// @}

constexpr std::uint32_t kShapeRectangular = 0;
constexpr std::uint32_t kShapeGrey = 3;
constexpr std::uint32_t kAspectExtended = 15;
/// aspect_ratio_info (table 6-12), from 1 on.
constexpr std::array<VideoRatio, 5> kPixels = {{{1, 1}, {12, 11}, {10, 11}, {16, 11}, {40, 33}}};
constexpr const char* kNBit = "N-bit"; ///< the profile whose samples need not have 8 bits

struct ProfileAndLevel {
    unsigned mCode;
    const char* mProfile;
    std::uint32_t mLevel;
};
/// profile_and_level_indication (table G.1), as far as such files are in use.
constexpr std::array<ProfileAndLevel, 24> kProfiles = {{{0x01, "Simple", 10},
                                                        {0x02, "Simple", 20},
                                                        {0x03, "Simple", 30},
                                                        {0x04, "Simple", 40},
                                                        {0x05, "Simple", 50},
                                                        {0x06, "Simple", 60},
                                                        {0x08, "Simple", 0},
                                                        {0x09, "Simple", 9},
                                                        {0x10, "SimpleScalable", 0},
                                                        {0x11, "SimpleScalable", 10},
                                                        {0x12, "SimpleScalable", 20},
                                                        {0x21, "Core", 10},
                                                        {0x22, "Core", 20},
                                                        {0x32, "Main", 20},
                                                        {0x33, "Main", 30},
                                                        {0x34, "Main", 40},
                                                        {0x42, kNBit, 20},
                                                        {0xF0, "AdvancedSimple", 0},
                                                        {0xF1, "AdvancedSimple", 10},
                                                        {0xF2, "AdvancedSimple", 20},
                                                        {0xF3, "AdvancedSimple", 30},
                                                        {0xF4, "AdvancedSimple", 40},
                                                        {0xF5, "AdvancedSimple", 50},
                                                        {0xF7, "AdvancedSimple", 39}}};

/// VisualObjectSequence (6.2.2)
void ReadSequence(unsigned aCode, VideoFacts& aFacts) {
    const auto* const found =
        std::find_if(kProfiles.begin(), kProfiles.end(),
                     [=](const ProfileAndLevel& aKnown) { return aKnown.mCode == aCode; });
    if (found != kProfiles.end()) {
        aFacts.mProfile = found->mProfile;
        aFacts.mLevel = found->mLevel;
    }
}

/// Bits of a time below so many ticks, at least one.
unsigned BitsFor(std::uint32_t aCount) {
    unsigned bits = 1;
    while (aCount > 1U << bits) {
        ++bits;
    }
    return bits;
}

/// vol_control_parameters
void SkipControl(ezBitReader& aBits) {
    aBits.Skip(2); // chroma_format
    aBits.Skip(1); // low_delay
    if (aBits.ReadFlag()) {
        aBits.Skip(16 + 16); // bit_rate in two halves, a marker_bit after each
        aBits.Skip(16 + 3);  // vbv_buffer_size
        aBits.Skip(12 + 16); // vbv_occupancy
    }
}

/// aspect_ratio_info, with par_width and par_height where it says so.
VideoRatio ReadPixelAspect(ezBitReader& aBits) {
    const std::uint32_t code = aBits.Read(4);
    if (code == kAspectExtended) {
        const std::uint32_t width = aBits.Read(8);
        return VideoRatio::Of(width, aBits.Read(8));
    }
    return code >= 1 && code <= kPixels.size() ? kPixels[code - 1] : VideoRatio();
}

/// Pictures in 1000 seconds; 0 where they may last differently long.
std::uint32_t ReadFrameRate(ezBitReader& aBits) {
    aBits.Require(aBits.ReadFlag());                 // marker_bit, here and below
    const std::uint32_t resolution = aBits.Read(16); // vop_time_increment_resolution
    aBits.Require(aBits.ReadFlag());
    if (!aBits.ReadFlag()) { // fixed_vop_rate
        return 0;
    }
    return VideoClock_FrameRate(aBits.Read(BitsFor(resolution)), resolution); // fixed_vop_time_increment
}

/// VideoObjectLayer (6.2.3); aBytes stand after the start code.
void ReadVOL(const unsigned char* aBytes, std::size_t aSize, VideoFacts& aFacts) {
    ezBitReader bits(aBytes, 8 * aSize);
    bits.Skip(1); // random_accessible_vol
    bits.Skip(8); // video_object_type_indication
    std::uint32_t verid = 1;
    if (bits.ReadFlag()) { // is_object_layer_identifier
        verid = bits.Read(4);
        bits.Skip(3); // video_object_layer_priority
    }
    const VideoRatio pixel = ReadPixelAspect(bits);
    if (bits.ReadFlag()) {
        SkipControl(bits);
    }
    const std::uint32_t shape = bits.Read(2);
    bits.Skip(shape == kShapeGrey && verid != 1 ? 4 : 0); // video_object_layer_shape_extension
    const std::uint32_t frameRate = ReadFrameRate(bits);
    bits.Require(shape == kShapeRectangular);
    bits.Require(bits.ReadFlag());
    const std::uint32_t width = bits.Read(13);
    bits.Require(bits.ReadFlag());
    const std::uint32_t height = bits.Read(13);
    bits.Require(bits.ReadFlag());
    const bool fInterlaced = bits.ReadFlag();
    if (bits.Require(width != 0 && height != 0)) {
        aFacts.mWidth = width;
        aFacts.mHeight = height;
        aFacts.mPixelAspect = pixel;
        aFacts.mFrameRate = frameRate;
        aFacts.mScan = fInterlaced ? kScan_Interlaced : kScan_Progressive;
        aFacts.mBitDepth = aFacts.mProfile == kNBit ? 0 : 8;
        aFacts.mColours = "4:2:0";
    }
}

} // namespace

std::optional<VideoFacts> MPEG4Visual_Read(const unsigned char* aBytes, std::size_t aSize) {
    VideoFacts facts;
    bool fFound = false;
    for (std::size_t i = 0; i + 4 < aSize; ++i) {
        const bool fStart = aBytes[i] == 0 && aBytes[i + 1] == 0 && aBytes[i + 2] == 1;
        const unsigned code = aBytes[i + 3];
        const bool fLayer = fStart && code >= kFirstVOL && code <= kLastVOL;
        fFound = fFound || fLayer || (fStart && code == kVisualObjectSequence);
        if (fLayer) {
            ReadVOL(aBytes + i + 4, aSize - i - 4, facts);
            break;
        }
        if (fStart && code == kVisualObjectSequence) {
            ReadSequence(aBytes[i + 4], facts);
        }
    }
    facts.mCodec = fFound ? "MPEG4" : "";
    return fFound ? std::make_optional(facts) : std::nullopt;
}
