#pragma once

#include <cstdint>

/// Reads and bytes of one parse of a CAF file. A usual one takes the start, and what follows the sound;
/// further reads are for chunks that lie apart.
inline constexpr std::uint32_t kCAF_MaxReads = 32;
inline constexpr std::uint64_t kCAF_MaxBytes = std::uint64_t{256} * 1024;

/// Chunks of one file: there are some twenty kinds.
inline constexpr std::uint32_t kCAF_MaxChunks = 128;

/// The longest key of a text that is compared: "recorded date" fits twice.
inline constexpr std::uint32_t kCAF_MaxKey = 32;
