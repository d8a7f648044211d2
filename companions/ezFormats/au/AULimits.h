#pragma once

#include <cstdint>

/// What one parse of an AU file may cost.

/// Reads of one parse: the head of a file tells all. A source that gives less at a time than it is asked for
/// takes more.
inline constexpr std::uint32_t kAU_MaxReads = 1;

/// Bytes of one parse: those of the start, which the stream keeps.
inline constexpr std::uint64_t kAU_MaxBytes = std::uint64_t{8} * 1024;

/// Bytes of the annotation that are looked at: all of one that a person wrote, and within the first read.
inline constexpr std::uint32_t kAU_MaxAnnotation = 4096;
