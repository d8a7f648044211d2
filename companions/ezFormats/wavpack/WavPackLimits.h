#pragma once

#include <cstdint>

/// What one parse of a WavPack file may cost.

/// Reads of one parse: a usual one takes the start and the end; further ones are for blocks that lie apart,
/// for the last block, and for a cover.
inline constexpr std::uint32_t kWavPack_MaxReads = 8;

/// Bytes of one parse: room for all these reads as blocks of 64 KiB.
inline constexpr std::uint64_t kWavPack_MaxBytes = std::uint64_t{1024} * 1024;

/// Bytes after a leading tag that are read together with its end: the head of the first block, with what a
/// WAV began with.
inline constexpr std::uint32_t kWavPack_NextSize = std::uint32_t{4} * 1024;

/// Blocks of the start that are looked at: those without samples, and those of further channels where the
/// first does not tell their number. More pairs of channels than any cinema has.
inline constexpr std::uint32_t kWavPack_MaxBlocks = 32;

/// Metadata sub-blocks of one block that are looked at: there are some twenty kinds, each at most once.
inline constexpr std::uint32_t kWavPack_MaxSubBlocks = 64;

/// Bytes of the end that are searched for the last block where the count of samples is missing: half a second
/// of two channels of 24 bits fits up to 96 kHz. They are read in parts of 64 KiB.
inline constexpr std::uint64_t kWavPack_SearchSize = std::uint64_t{320} * 1024;

/// Doublings of the sampling rate of DSD: the highest rate that anybody sells takes seven. More are damage.
inline constexpr std::uint32_t kWavPack_MaxShift = 16;
