#pragma once

#include "ezBytes/ByteReader.h"

#include <cstddef>
#include <cstdint>

// A file of a video CD as a computer shows it: RIFF of the form CDXA, and after its header the sectors of the
// disc (mode 2, form 2), each with a head before what it carries and a check sum after it.

inline constexpr std::size_t kCDXA_HeaderSize = 44;
inline constexpr std::size_t kCDXA_SectorSize = 2352;
inline constexpr std::size_t kCDXA_HeadSize = 24;
inline constexpr std::size_t kCDXA_DataSize = 2324;

/// Whether a file begins there that is one.
bool IsCDXA(ByteReader aBytes);
