#pragma once

#include "ezFormats/codecs/VideoFacts.h"

#include <cstddef>
#include <optional>

/// From the header of a frame of VP6 (VP6 Bitstream & Decoder Specification, 9), without what a container
/// puts in front: the size that is shown, in blocks of 16 pixels. None where it is no key frame; a stream
/// begins with one.
std::optional<VideoFacts> VP6Video_Read(const unsigned char* aBytes, std::size_t aSize);
