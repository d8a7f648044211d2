#pragma once

#include <cstdint>

/// What one parse of an AIFF file may cost.

/// Reads of one parse: a usual one takes the start, and what follows the sound; further ones are for chunks
/// that lie apart.
inline constexpr std::uint32_t kAIFF_MaxReads = 32;

/// Bytes of one parse: room for all these reads as blocks of 8 KiB.
inline constexpr std::uint64_t kAIFF_MaxBytes = std::uint64_t{256} * 1024;

/// Chunks of one file: the standard has a dozen kinds, of which some may come more than once.
inline constexpr std::uint32_t kAIFF_MaxChunks = 128;
