#pragma once

#include <cstdint>

/// What one parse of a DSDIFF file may cost.

/// Reads of one parse: a usual one takes the start, and what follows the sound; further ones are for chunks
/// that lie apart.
inline constexpr std::uint32_t kDSDIFF_MaxReads = 16;

/// Bytes of one parse: room for all these reads as blocks of 16 KiB.
inline constexpr std::uint64_t kDSDIFF_MaxBytes = std::uint64_t{256} * 1024;

/// Chunks of one file, those in others counted: the standard has some thirty kinds, of which the comments and
/// markers may come more than once.
inline constexpr std::uint32_t kDSDIFF_MaxChunks = 128;
