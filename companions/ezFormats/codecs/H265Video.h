#pragma once

#include "ezFormats/codecs/VideoFacts.h"

#include <cstddef>
#include <cstdint>
#include <optional>

class ByteReader;

// What H.265 tells of its pictures, in whatever holds it: codec, profile, level, size, the shape of a pixel,
// frame rate, scan, bit depth, colours, dynamic range, and the rate of its HRD parameters. The tier is no
// part of a record. Where pictures are fields a frame is two of them: twice the height, half the rate.

/// From a byte stream (ITU-T H.265, annex B), which may begin and end anywhere. None without a sequence
/// parameter set. Further layers (of views, of scales) are passed over.
std::optional<VideoFacts> H265Video_ReadStream(const unsigned char* aBytes, std::size_t aSize);

/// From HEVCDecoderConfigurationRecord, "hvcC" (ISO/IEC 14496-15, 8.3.3.1). None where it is no such record.
/// @param aFirstSample  the first picture, as much of it as is there, its units each after their size; null
///                      where it is not looked at
std::optional<VideoFacts> H265Video_ReadConfig(ByteReader aConfig, const ByteReader* aFirstSample = nullptr);
