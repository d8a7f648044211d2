#pragma once

#include <cstddef>
#include <cstdint>

/// What the tags of one Matroska file may cost.

/// Bytes of the name of a tag, the most that are compared: the longest one with a meaning has 28. A longer
/// one is passed over.
inline constexpr std::size_t kMatroskaTags_MaxName = 32;

/// Tracks of which the counts of the muxer are kept: a film with many languages has two dozen.
inline constexpr std::size_t kMatroskaTags_MaxTracks = 64;

/// Hours of a track's length in a tag: more than a year, and so far from any overflow.
inline constexpr std::uint32_t kMatroskaTags_MaxHours = 9999;
