#pragma once

#include <cstdint>

/// What one parse of a CAF file may cost.

/// Reads of one parse: a usual one takes the start, and what follows the sound; further ones are for chunks
/// that lie apart.
inline constexpr std::uint32_t kCAF_MaxReads = 32;

/// Bytes of one parse: room for all these reads as blocks of 8 KiB.
inline constexpr std::uint64_t kCAF_MaxBytes = std::uint64_t{256} * 1024;

/// Chunks of one file: there are some twenty kinds.
inline constexpr std::uint32_t kCAF_MaxChunks = 128;

/// Bytes of the key of a text, the most that are compared: "recorded date" fits twice.
inline constexpr std::uint32_t kCAF_MaxKey = 32;
