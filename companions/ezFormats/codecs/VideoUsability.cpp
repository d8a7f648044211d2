#include "ezFormats/codecs/VideoUsability.h"

#include "ezBytes/BitReader.h"
#include "ezFormats/codecs/PixelAspects.h"

#include <array>

// Clauses are those of ITU-T H.264; those of H.265 tell the same.

namespace {

constexpr std::uint32_t kExtendedAspect = 255; ///< the ratio follows in numbers
constexpr std::uint32_t kAspectHighest = 16;   ///< of aspect_ratio_idc (table E-1)

void ReadAspect(ezBitReader& aBits, ezVideoUsability& aUsability) {
    const std::uint32_t code = aBits.Read(8); // aspect_ratio_idc
    VideoRatio aspect = PixelAspect_Of(code, kAspectHighest);
    if (code == kExtendedAspect) {
        aspect.mWidth = aBits.Read(16);  // sar_width
        aspect.mHeight = aBits.Read(16); // sar_height
    }
    if (aspect.IsKnown()) { // else it is unspecified (E.2.1)
        aUsability.mAspectWidth = aspect.mWidth;
        aUsability.mAspectHeight = aspect.mHeight;
    }
}

} // namespace

void VideoUsability_ReadSigns(ezBitReader& aBits, ezVideoUsability& aUsability) {
    if (aBits.ReadFlag()) { // aspect_ratio_info_present_flag
        ReadAspect(aBits, aUsability);
    }
    if (aBits.ReadFlag()) { // overscan_info_present_flag
        aBits.Skip(1);      // overscan_appropriate_flag
    }
    if (aBits.ReadFlag()) {     // video_signal_type_present_flag
        aBits.Skip(3 + 1);      // video_format, video_full_range_flag
        if (aBits.ReadFlag()) { // colour_description_present_flag
            aBits.Skip(8);      // colour_primaries
            aUsability.mTransfer = aBits.Read(8);
            aUsability.mfRGB = aBits.Read(8) == 0 && !aBits.HasFailed(); // matrix_coefficients (table E-5)
        }
    }
    if (aBits.ReadFlag()) {  // chroma_loc_info_present_flag
        aBits.ReadUEUpTo(5); // chroma_sample_loc_type_top_field
        aBits.ReadUEUpTo(5); // chroma_sample_loc_type_bottom_field
    }
}

void VideoUsability_ReadClock(ezBitReader& aBits, ezVideoUsability& aUsability) {
    const std::uint32_t units = aBits.Read(32); // num_units_in_tick
    const std::uint32_t scale = aBits.Read(32); // time_scale
    if (units != 0 && scale != 0) {
        aUsability.mUnitsInTick = units;
        aUsability.mTimeScale = scale;
    }
}

const char* VideoUsability_ColoursOf(const ezVideoUsability& aUsability, std::uint32_t aChromaFormat) {
    constexpr std::array<const char*, 4> kColours = {"grey", "4:2:0", "4:2:2", "4:4:4"};
    constexpr std::uint32_t kWhole = 3; ///< 4:4:4, the only format of RGB
    if (aUsability.mfRGB && aChromaFormat == kWhole) {
        return "RGB";
    }
    return aChromaFormat < kColours.size() ? kColours[aChromaFormat] : nullptr;
}

std::uint32_t VideoUsability_FrameRateOf(const ezVideoUsability& aUsability, std::uint32_t aUnits) {
    return VideoClock_FrameRate(std::uint64_t{aUsability.mUnitsInTick} * aUnits, aUsability.mTimeScale);
}
