#pragma once

#include "ezFormats/codecs/VideoFacts.h"

#include <cstddef>
#include <optional>

/// Reads the header of a frame of ProRes (SMPTE RDD 36, 5.1), with the size and "icpf" in front of it or, as
/// Matroska has it, without: size, the shape of a pixel, frame rate, scan, and how the colours are sampled.
/// It tells no profile: that is in the name of the codec. None where it is damaged.
std::optional<VideoFacts> ProResVideo_Read(const unsigned char* aBytes, std::size_t aSize);
