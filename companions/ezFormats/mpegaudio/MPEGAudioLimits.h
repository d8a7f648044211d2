#pragma once

#include <cstdint>

/// Reads and bytes of one parse of an MPEG audio file, the whole file apart. A usual one takes three reads,
/// and seven where no count is stated; the rest is for tags with pictures on either side of the sound.
inline constexpr std::uint32_t kMPEGAudio_MaxReads = 32;
inline constexpr std::uint64_t kMPEGAudio_MaxBytes = std::uint64_t{512} * 1024;

/// How far an MPEG audio file is searched for its first frames, after the tags. What a station's recorder
/// cut off, or a writer of tags left, is shorter than a frame or a few thousand bytes.
inline constexpr std::uint32_t kMPEGAudio_SearchSize = std::uint32_t{64} * 1024;

/// Frames in a row that make a file MPEG audio, where the first of them stands at its start or after a tag;
/// and where it is searched for. Each frame after the first is met by chance once in some 200000 places.
inline constexpr std::uint32_t kMPEGAudio_ChainLength = 4;
inline constexpr std::uint32_t kMPEGAudio_SearchChainLength = 8;

/// Headers of free format that are tried as the first one. Each costs a look at every distance.
inline constexpr std::uint32_t kMPEGAudio_MaxFreeTries = 16;

/// Bytes at each of the places of a file that are looked at where nothing tells its duration: some 40 to 300
/// frames of the usual rates.
inline constexpr std::uint32_t kMPEGAudio_SurveySize = std::uint32_t{16} * 1024;

/// Sound of a varying rate without a count that is counted whole: so much fits into what any parse may read,
/// beside what the other looks at the file cost.
inline constexpr std::uint32_t kMPEGAudio_CountedSize = std::uint32_t{384} * 1024;

/// Bytes between a Xing or VBRI header's frame and the first one with sound: an encoder's own data.
inline constexpr std::uint32_t kMPEGAudio_MaxGapAfterCount = 1024;
