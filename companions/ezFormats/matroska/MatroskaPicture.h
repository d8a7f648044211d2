#pragma once

#include "ezFormats/codecs/VideoFacts.h"

#include "ezBytes/ByteReader.h"

#include <cstdint>

/// What the settings of a track of video say of its pictures (RFC 9559, 5.1.4.1.28): size after cropping,
/// shape of a pixel, scan, colours, and how they are turned.
VideoFacts ReadMatroskaPicture(const ByteReader& aVideo, std::uint32_t& aBudget);

/// Takes what a mapping of additional data says (RFC 9559, 5.1.4.1.17): that of Dolby Vision, and that of
/// metadata that change from scene to scene.
void TakeMatroskaMapping(const ByteReader& aMapping, std::uint32_t& aBudget, VideoFacts& aFacts);
