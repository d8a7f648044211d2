#pragma once

#include <cstdint>

/// Segments of a JPEG before its frame header. Of the longest, of 64 KiB, that is room for 12 MiB of colour
/// profiles, depth maps and edits of a camera.
inline constexpr std::uint32_t kJPEG_MaxSegments = 512;
inline constexpr std::uint32_t kJPEG_MaxReads = 192;
inline constexpr std::uint64_t kJPEG_MaxBytes = std::uint64_t{1024} * 1024;
/// Bytes between segments that belong to none, in all: some cameras pad to sectors.
inline constexpr std::uint32_t kJPEG_MaxJunk = 4096;
