#pragma once

#include "ezFormats/codecs/VideoFacts.h"

#include <cstddef>
#include <optional>

/// Reads the first DIF sequence of a frame of DV (IEC 61834, SMPTE 314M and 370M): the structure as its
/// profile ("25", "50", "100": Mbit/s), size, the shape of a pixel, frame rate, scan, bit depth, and how the
/// colours are sampled. None where none begins there.
std::optional<VideoFacts> DVVideo_Read(const unsigned char* aBytes, std::size_t aSize);
