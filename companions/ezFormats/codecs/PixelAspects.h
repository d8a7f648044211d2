#pragma once

#include "ezFormats/codecs/VideoFacts.h"

#include <array>
#include <cstdint>

/// The width to the height of a pixel by a code from 1 on, as the standards of ITU and ISO number them:
/// aspect_ratio_idc of ITU-T H.264 (table E-1) and H.265, of which the older ones have the first. Not known
/// for 0, and beyond the highest code that a standard has.
inline VideoRatio PixelAspect_Of(std::uint32_t aCode, std::uint32_t aHighest) {
    constexpr std::array<VideoRatio, 16> kAspects = {{{1, 1},
                                                      {12, 11},
                                                      {10, 11},
                                                      {16, 11},
                                                      {40, 33},
                                                      {24, 11},
                                                      {20, 11},
                                                      {32, 11},
                                                      {80, 33},
                                                      {18, 11},
                                                      {15, 11},
                                                      {64, 33},
                                                      {160, 99},
                                                      {4, 3},
                                                      {3, 2},
                                                      {2, 1}}};
    const bool fKnown = aCode >= 1 && aCode <= aHighest && aCode <= kAspects.size();
    return fKnown ? kAspects[aCode - 1] : VideoRatio();
}
