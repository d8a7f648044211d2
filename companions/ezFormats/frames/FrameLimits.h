#pragma once

#include <cstdint>

/// What a file of frames without a container may cost, and what is believed of it.

/// Bytes of a header that a reader may look at: those of DTS-HD and TrueHD fit.
inline constexpr std::uint32_t kFrames_MaxHeaderSize = 32;

/// Frames in a row that make a file one of the format, where the first of them stands at its start or after
/// a tag: with a header of some 28 fixed bits, none is met by chance.
inline constexpr std::uint32_t kFrames_ChainLength = 4;

/// Bytes after the tags in which the first frames are searched: what a station's recorder cut off is shorter
/// than a frame or a few thousand bytes.
inline constexpr std::uint32_t kFrames_SearchSize = std::uint32_t{64} * 1024;

/// Bytes at a place, the most: one read has no more.
inline constexpr std::uint32_t kFrames_MaxPlaceSize = std::uint32_t{64} * 1024;

/// Frames that a place has room for, at the least: in large ones it is longer than is usual.
inline constexpr std::uint32_t kFrames_PlaceLength = 6;

/// Bytes of a frame of DTS with its extensions, the most: 24.5 Mbit/s, the highest rate, has half of it.
inline constexpr std::uint32_t kFrames_MaxDTSSize = std::uint32_t{64} * 1024;

/// Parts that one frame may have: E-AC-3 has eight dependent substreams for each of eight programmes.
inline constexpr std::uint32_t kFrames_MaxParts = 64;

/// Bytes at each place of a file that is looked at: some forty frames of the usual rates.
inline constexpr std::uint32_t kFrames_PlaceSize = std::uint32_t{16} * 1024;

/// Places between the start and the end that are looked at where the rate varies: with those two they are
/// eight, a read each.
inline constexpr std::uint32_t kFrames_InnerPlaces = 6;

/// Bytes of sound of a varying rate that are counted whole: what the eight places would cost.
inline constexpr std::uint32_t kFrames_CountedSize = 8 * kFrames_PlaceSize;

/// Bytes that are read at once, and that may stand between two frames, where all frames are counted: a gap
/// that is longer ends the sound.
inline constexpr std::uint32_t kFrames_CountedStep = std::uint32_t{64} * 1024;

/// Places in a row at the start that are counted where silence stands there: of frames of 17 bytes, three
/// minutes.
inline constexpr std::uint32_t kFrames_SilentPlaces = 8;

/// Reads of one parse: a usual one takes four, and nine where the rate varies. The rest is for tags with
/// pictures on either side of the sound, and for silence at its start.
inline constexpr std::uint32_t kFrames_MaxReads = 32;

/// Bytes of one parse: three times what is usual where the rate varies, for the same reason.
inline constexpr std::uint64_t kFrames_MaxBytes = std::uint64_t{512} * 1024;
