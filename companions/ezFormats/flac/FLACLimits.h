#pragma once

#include <cstdint>

/// What one parse of a FLAC file may cost.

/// Reads of one parse: a usual one takes the start; further ones are for a picture between the texts and for
/// the end, where the count of samples is not to be believed.
inline constexpr std::uint32_t kFLAC_MaxReads = 16;

/// Bytes of one parse: room for all these reads as blocks of 64 KiB.
inline constexpr std::uint64_t kFLAC_MaxBytes = std::uint64_t{1024} * 1024;

/// Metadata blocks of one file: some write a picture of each type, and there are 21.
inline constexpr std::uint32_t kFLAC_MaxBlocks = 128;

/// Bytes after a leading tag that are read together with its end: the texts stand there.
inline constexpr std::uint32_t kFLAC_NextSize = std::uint32_t{8} * 1024;

/// Bytes of the end that are searched for the last frame: one of eight channels of 24 bits can be longer, and
/// then the count of the header stands.
inline constexpr std::uint32_t kFLAC_TailSize = std::uint32_t{64} * 1024;
