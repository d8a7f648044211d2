#pragma once

#include <array>
#include <cstdint>

/// Hz by index, in ADTS as in MPEG-4 (ISO/IEC 14496-3, 1.6.3.4); the next two are reserved, and 15 asks
/// for a number, for which ADTS has no place.
inline constexpr std::array<std::uint32_t, 13> kAACSamplingRates = {
    96000, 88200, 64000, 48000, 44100, 32000, 24000, 22050, 16000, 12000, 11025, 8000, 7350};
