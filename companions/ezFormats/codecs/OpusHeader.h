#pragma once

#include "ezBytes/ByteReader.h"

#include <cstdint>

/// Hz of Opus when it is decoded (RFC 7845, 4), whatever rate its encoder was given.
inline constexpr std::uint32_t kOpus_SamplingRate = 48000;

/// What the first header of an Opus stream tells (RFC 7845, 5.1).
struct OpusHeader {
    std::uint32_t mChannels = 0; ///< 0 for what is no such header, and for one of a version to come
    std::uint32_t mPreSkip = 0;  ///< samples that are not heard
};

/// Reads it. aPacket stands at its start.
OpusHeader ReadOpusHeader(ByteReader aPacket);
