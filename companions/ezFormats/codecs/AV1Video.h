#pragma once

#include "ezFormats/codecs/VideoFacts.h"

#include <cstddef>
#include <optional>

// What AV1 tells of its pictures, in whatever holds it: profile ("Main", "High", "Professional"), level, the
// largest size, frame rate where it is constant, bit depth, colours and dynamic range. It has no fields, and
// its pixels have no shape of their own. The level is that of the first operating point, which is all of the
// stream; the tier is no part of a record.

/// From the start of a stream of units that state their size (AV1 Bitstream & Decoding Process, 5.3 and
/// 5.5), cut anywhere. None without a sequence header.
std::optional<VideoFacts> AV1Video_Read(const unsigned char* aBytes, std::size_t aSize);

/// From "av1C" (AV1 Codec ISO Media File Format Binding, 2.3): its sequence header, and where it has none its
/// own fields, which tell no size. Nothing where it is damaged.
std::optional<VideoFacts> AV1Video_ReadConfig(const unsigned char* aBytes, std::size_t aSize);
