#pragma once

#include <cstdint>

/// Reads and bytes of one parse of an AU file: its head tells all. A source that gives less at a time than it
/// is asked for takes more reads.
inline constexpr std::uint32_t kAU_MaxReads = 1;
inline constexpr std::uint64_t kAU_MaxBytes = std::uint64_t{8} * 1024;

/// Bytes of the annotation that are looked at: all of one that a person wrote, and within the first read.
inline constexpr std::uint32_t kAU_MaxAnnotation = 4096;
