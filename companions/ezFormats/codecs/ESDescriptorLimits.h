#pragma once

#include <cstdint>

/// Bytes of a decoder's configuration that are looked at: one of MPEG-4 video with all that may stand in it
/// is below 150.
inline constexpr std::uint32_t kESDescriptor_MaxConfig = 256;
