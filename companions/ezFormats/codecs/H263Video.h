#pragma once

#include "ezFormats/codecs/VideoFacts.h"

#include <cstddef>
#include <optional>

// What H.263 tells of its pictures, in whatever holds it: codec, size, the shape of a pixel, and that they
// are whole frames. A rate is told where a picture states a clock of its own; the usual clock only says when
// pictures may come. Profile and level stand in what holds the stream.

/// From the header of a picture (ITU-T H.263, 5.1), with which a stream begins. None where it states no size,
/// as pictures do that go on as the one before.
std::optional<VideoFacts> H263Video_Read(const unsigned char* aBytes, std::size_t aSize);

/// From "d263" (3GPP TS 26.244, 6.8): profile by its number ("0", "3"), the level as it is named (10, 45),
/// and the rates of a "bitr" in it.
std::optional<VideoFacts> H263Video_ReadConfig(const unsigned char* aBytes, std::size_t aSize);

/// From the header of a picture of Sorenson H.263 (Adobe Flash Video File Format 10.1, E.4.3.2), "Sorenson".
std::optional<VideoFacts> SorensonVideo_Read(const unsigned char* aBytes, std::size_t aSize);
