#pragma once

#include <cstddef>

// The blocks of which frames of DV consist (IEC 61834-2, 11.3; SMPTE 314M, 4), whatever they hold.

inline constexpr std::size_t kDVBlockBytes = 80; ///< of a DIF block
inline constexpr std::size_t kDVBlockHead = 3;   ///< bytes that identify a block
inline constexpr std::size_t kDVPackBytes = 5;   ///< of a pack of auxiliary data, its kind included

/// The first byte of the block with which a sequence begins.
inline constexpr unsigned kDVHeaderSection = 0x1F;
