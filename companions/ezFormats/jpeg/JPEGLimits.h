#pragma once

#include <cstddef>
#include <cstdint>

/// What one parse of a JPEG may cost. A file that has more before its frame header is refused.

/// Segments before the frame header: of the longest, of 64 KiB, that is room for 12 MiB of colour profiles,
/// depth maps and edits of a camera.
inline constexpr std::uint32_t kJPEG_MaxSegments = 512;

/// Reads of one parse: each long segment that is stepped over costs a read.
inline constexpr std::uint32_t kJPEG_MaxReads = 192;

/// Bytes of one parse: room for all these reads as first looks of 4 KiB, and for some larger ones.
inline constexpr std::uint64_t kJPEG_MaxBytes = std::uint64_t{1024} * 1024;

/// Bytes between segments that belong to none, in all: some cameras pad to sectors.
inline constexpr std::uint32_t kJPEG_MaxJunk = 4096;

/// Components of a frame: more than four mean no colours that a screen has. A picture with more is refused.
inline constexpr std::size_t kJPEG_MaxComponents = 4;
