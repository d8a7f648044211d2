#pragma once

#include <cstdint>

/// What one parse of a True Audio file may cost.

/// Reads of one parse: a usual one takes the start and the end; further ones are for tags with a picture.
inline constexpr std::uint32_t kTTA_MaxReads = 16;

/// Bytes of one parse: room for all these reads as blocks of 16 KiB.
inline constexpr std::uint64_t kTTA_MaxBytes = std::uint64_t{256} * 1024;

/// Bytes after a leading tag that are read together with its end: the header, and nothing after it.
inline constexpr std::uint32_t kTTA_NextSize = 4096;
