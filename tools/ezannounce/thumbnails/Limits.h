#pragma once

#include <cstddef>
#include <cstdint>

/// What the tool keeps of thumbnails.

/// Bytes of all thumbnails in the cache: those of a home's media. What was not used for the longest time goes
/// first.
inline constexpr std::uint64_t kThumbnails_CacheBytes = std::uint64_t{128} << 20;

/// Thumbnails in the cache: as many of a usual size as its bytes hold. What was not used for the longest time
/// goes first.
inline constexpr std::size_t kThumbnails_CacheFiles = 20'000;
