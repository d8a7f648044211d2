#pragma once

#include <cstddef>
#include <cstdint>

/// What one parse of a stream of video without a container may cost.

/// Reads of one parse: a usual one takes the start and the rest of the first window, and one more where no
/// stream is found in that. The rest is for sources that give less at a time than they are asked for.
inline constexpr std::uint32_t kVideoStream_MaxReads = 8;

/// Bytes of one parse: the longer window, and the end.
inline constexpr std::uint64_t kVideoStream_MaxBytes = std::uint64_t{512} * 1024;

/// Bytes from the start that are looked at first: headers come before the first picture, and the
/// second field of most streams of a home lies within.
inline constexpr std::size_t kVideoStream_WindowSize = std::size_t{128} * 1024;

/// Bytes from the start within which a stream has to show itself: what a recorder cut off, or junk, is
/// shorter than half a second at 6 Mbit/s, the distance at which broadcasts repeat their headers.
inline constexpr std::size_t kVideoStream_MaxWindow = std::size_t{384} * 1024;

/// Bytes that each format that races on the window gets at a time: most headers fit, so that one format's
/// search goes no further than another's find.
inline constexpr std::size_t kVideoStream_PacketSize = std::size_t{2} * 1024;

/// Bytes at the start of a file by which it is known under any name: parsers that were asked before have read
/// so many.
inline constexpr std::size_t kVideoStream_MagicSize = std::size_t{8} * 1024;

/// Bytes at the end within which the last picture of MPEG video of a constant rate is looked for: two
/// pictures of the highest rate that broadcasts have.
inline constexpr std::size_t kVideoStream_EndSize = std::size_t{128} * 1024;

/// Microseconds by which a length from size and constant rate may be off, where no picture says more: what
/// the buffer of a decoder holds when the stream begins and ends. Those of discs and broadcasts hold less.
inline constexpr std::uint64_t kVideoStream_BufferTime = 1000000;

/// Bits a second of a stream, the most that a length is told by: coded pictures of a home have less, and a
/// player stops where a length that is too short ends.
inline constexpr std::uint32_t kVideoStream_MaxBitRate = 400'000'000;

/// Pixels of a side of the pictures of a file with the head of VC-1: four times the largest that a level of
/// its profiles has. More, and it is no such head.
inline constexpr std::uint32_t kRCV_MaxSide = 8192;
