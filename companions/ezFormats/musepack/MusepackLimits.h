#pragma once

#include <cstdint>

/// What one parse of a Musepack file may cost.

/// Reads of one parse: a usual one takes the start and the end; further ones are for tags with a picture.
inline constexpr std::uint32_t kMusepack_MaxReads = 16;

/// Bytes of one parse: room for all these reads as blocks of 16 KiB.
inline constexpr std::uint64_t kMusepack_MaxBytes = std::uint64_t{256} * 1024;

/// Bytes after a leading tag that are read together with its end: what stands before the sound fits many
/// times.
inline constexpr std::uint32_t kMusepack_NextSize = 4096;

/// Packets before the sound: there are seven kinds, of which only chapters come more than once.
inline constexpr std::uint32_t kMusepack_MaxPackets = 256;
