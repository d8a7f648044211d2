#pragma once

#include <cstdint>

/// The rate of AMR, bits a second, by what its frames take in a file: that of the frame type which so many
/// bytes a frame, on average, stand for. A file holds whole bytes with one of header, so the bytes alone tell
/// up to a tenth more than any frame type has (RFC 4867, 5; 3GPP TS 26.101 and 26.201). 0 for more bytes than
/// a frame of that band has, and where there is no frame.
/// @param afWide  AMR-WB, not AMR
std::uint32_t AMRFrames_BitRate(std::uint64_t aBytes, std::uint64_t aFrames, bool afWide);

/// Bytes of the largest frame in a file, of AMR-WB.
inline constexpr std::uint32_t kAMRMaxFrameSize = 61;

/// Bytes of a frame in a file, header included, by the type in its header: speech, comfort noise (SID), or
/// nothing. 0 for a type that is reserved, or of another system.
std::uint32_t AMRFrames_SizeOf(unsigned aType, bool afWide);
