#pragma once

#include "ezFormats/codecs/VideoFacts.h"

#include "ezBytes/ByteReader.h"

#include <cstddef>
#include <optional>

// Video that a BITMAPINFOHEADER describes, as AVI, ASF and Matroska have it: the size, four characters that
// name the codec, and after 40 bytes what sets its decoder up.

/// Reads it, and what the codec's own headers tell. These may stand in the first frame alone; a codec that
/// they contradict is that of the headers. A codec that nobody knows goes by its four characters. None of
/// what ends before them.
/// @param aFrame  what the first frame begins with, borrowed; null where it is not looked at
std::optional<VideoFacts> BitmapVideo_Read(ByteReader aHeader, const unsigned char* aFrame,
                                           std::size_t aFrameSize);
