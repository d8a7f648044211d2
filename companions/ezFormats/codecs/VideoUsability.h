#pragma once

#include "ezFormats/codecs/DynamicRange.h"

#include <cstdint>

class ezBitReader;

/// What the video usability information of H.264 (annex E) and H.265 (annex E) tells alike.
struct ezVideoUsability {
    /// Width to height of a sample; 0 where it is not told.
    std::uint32_t mAspectWidth = 0;
    std::uint32_t mAspectHeight = 0;
    /// transfer_characteristics (table E-4, E.4)
    std::uint32_t mTransfer = DynamicRange::kTransferUnspecified;
    bool mfRGB = false; ///< matrix_coefficients: samples are of green, blue and red, not of luma and chroma
    /// A clock of mTimeScale ticks a second, of which mUnitsInTick are a field (H.264) or a picture (H.265);
    /// 0 where it is not told.
    std::uint32_t mUnitsInTick = 0;
    std::uint32_t mTimeScale = 0;
};

/// Reads the aspect ratio, overscan, the video signal type and the place of chroma samples, with which both
/// begin. What could not be read is as if it were not told.
void VideoUsability_ReadSigns(ezBitReader& aBits, ezVideoUsability& aUsability);

/// What samples are called in a record, by chroma_format_idc; null for any other number.
const char* VideoUsability_ColoursOf(const ezVideoUsability& aUsability, std::uint32_t aChromaFormat);

/// Pictures in 1000 seconds, of which each takes so many units of the clock; 0 where the clock is not told,
/// or cannot be one of pictures.
std::uint32_t VideoUsability_FrameRateOf(const ezVideoUsability& aUsability, std::uint32_t aUnits);

/// Reads the clock, num_units_in_tick and time_scale.
void VideoUsability_ReadClock(ezBitReader& aBits, ezVideoUsability& aUsability);
