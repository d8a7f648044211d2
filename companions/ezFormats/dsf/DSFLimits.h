#pragma once

#include <cstdint>

/// What one parse of a DSF file may cost.

/// Reads of one parse: a usual one takes the start and the tag at the end; further ones are for texts after a
/// picture.
inline constexpr std::uint32_t kDSF_MaxReads = 16;

/// Bytes of one parse: room for all these reads as blocks of 16 KiB.
inline constexpr std::uint64_t kDSF_MaxBytes = std::uint64_t{256} * 1024;

/// Bytes of the tag that are read at once: all of its texts, where the picture does not stand before them.
inline constexpr std::uint32_t kDSF_TagSize = std::uint32_t{8} * 1024;
