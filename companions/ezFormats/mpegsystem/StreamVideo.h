#pragma once

#include "ezFormats/codecs/VideoFacts.h"
#include "ezFormats/mpegsystem/StreamCodec.h"

#include <cstddef>
#include <optional>

/// Reads the pictures of a track in a transport or program stream.
///
/// @param aCodec  as the tables say, or Unknown: then what the payload looks like decides. Where the payload
///                is of another codec than the tables say, it is believed
/// @param aBytes  the track's payload, of StreamPayload
/// @return the codec's name alone, where it has no reader; none where nothing is found
std::optional<VideoFacts> ReadStreamVideo(StreamCodec aCodec, const unsigned char* aBytes, std::size_t aSize);
