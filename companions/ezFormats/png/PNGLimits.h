#pragma once

#include <cstdint>

/// What one parse of a PNG may cost. A file that has more before its picture is refused.

/// Chunks before the picture: a photo has a dozen of them.
inline constexpr std::uint32_t kPNG_MaxChunks = 256;

/// Reads of one parse: each chunk that does not lie beside the one before it costs a read.
inline constexpr std::uint32_t kPNG_MaxReads = 64;

/// Bytes of one parse: room for all these reads as first looks of 4 KiB, and for some larger ones.
inline constexpr std::uint64_t kPNG_MaxBytes = std::uint64_t{384} * 1024;
