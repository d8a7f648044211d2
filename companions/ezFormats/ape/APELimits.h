#pragma once

#include <cstdint>

/// What one parse of an APE file may cost.

/// Reads of one parse: a usual one takes the start and the end; further ones are for a cover and for tags
/// before the sound.
inline constexpr std::uint32_t kAPE_MaxReads = 16;

/// Bytes of one parse: room for all these reads as blocks of 16 KiB.
inline constexpr std::uint64_t kAPE_MaxBytes = std::uint64_t{256} * 1024;

/// Bytes after a leading tag that are read together with its end: both headers fit.
inline constexpr std::uint32_t kAPE_NextSize = 4096;
