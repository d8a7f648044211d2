#pragma once

#include "ezFormats/codecs/VideoFacts.h"

#include <cstddef>
#include <cstdint>
#include <optional>

class ByteReader;

// What H.264 tells of its pictures, in whatever holds it: codec, profile, level, size, the shape of a pixel,
// frame rate, scan, bit depth, colours, dynamic range, and the rate of its HRD parameters. A sequence that is
// coded as frames alone is progressive. One that may have fields is interlaced where a field or a picture
// timing message that says so is found, progressive where pictures are found without, and interlaced where
// none is found.

/// From a byte stream (ITU-T H.264, annex B), which may begin and end anywhere. None without a sequence
/// parameter set. Further views and layers (MVC, SVC) are passed over.
std::optional<VideoFacts> H264Video_ReadStream(const unsigned char* aBytes, std::size_t aSize);

/// From AVCDecoderConfigurationRecord, "avcC" (ISO/IEC 14496-15, 5.3.3.1). None where it is no such record.
/// @param aFirstSample  the first picture, as much of it as is there, its units each after their size; null
///                      where it is not looked at
std::optional<VideoFacts> H264Video_ReadConfig(ByteReader aConfig, const ByteReader* aFirstSample = nullptr);

/// Profile and level into aFacts, by the three bytes with which a sequence parameter set begins, and which
/// "avcC" has after its version: profile_idc, constraints, level_idc.
void H264Video_TakeProfile(std::uint32_t aProfile, std::uint32_t aConstraints, std::uint32_t aLevel,
                           VideoFacts& aFacts);
