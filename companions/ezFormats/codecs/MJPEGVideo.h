#pragma once

#include "ezFormats/codecs/VideoFacts.h"

#include <cstddef>
#include <optional>

/// Reads the start of a picture of Motion JPEG (ITU-T T.81), up to its frame header: size, bit depth, how the
/// colours are sampled, and the scan, where one of the segments in use with AVI ("AVI1") and QuickTime
/// ("mjpg") says whether it is one of two fields; the size is then that of both. None where no frame header
/// is found.
std::optional<VideoFacts> MJPEGVideo_Read(const unsigned char* aBytes, std::size_t aSize);
