#pragma once

#include <cstdint>

/// What is believed of a DTS file. What a parse may cost is that of all files of frames
/// (frames/FrameLimits.h).

/// Chunks of a file with a head of its own: writers have a dozen.
inline constexpr std::uint32_t kDTS_MaxChunks = 64;
