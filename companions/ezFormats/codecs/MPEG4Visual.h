#pragma once

#include "ezFormats/codecs/VideoFacts.h"

#include <cstddef>
#include <optional>

/// Reads the headers of MPEG-4 video (ISO/IEC 14496-2), up to the first video object layer that has a size:
/// of what sets a decoder up, or from the start of a stream. Profile ("Simple", "AdvancedSimple" and so on)
/// and level (of Simple 0b it is 9, of Advanced Simple 3b 39), size, the shape of a pixel, the frame rate
/// where it is constant, and whether the layer is interlaced; of the Studio profiles profile and level alone.
/// None where there is neither a profile nor a layer: pictures with a short header (short_video_header),
/// which are those of H.263, tell nothing here.
std::optional<VideoFacts> MPEG4Visual_Read(const unsigned char* aBytes, std::size_t aSize);
