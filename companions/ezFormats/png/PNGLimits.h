#pragma once

#include <cstdint>

/// Chunks of a PNG before its picture. A photo has a dozen of them; each that does not lie beside the one
/// before it costs a read.
inline constexpr std::uint32_t kPNG_MaxChunks = 256;
inline constexpr std::uint32_t kPNG_MaxReads = 64;
inline constexpr std::uint64_t kPNG_MaxBytes = std::uint64_t{384} * 1024;
