#pragma once

#include <cstdint>

/// What one parse of an MPEG audio file may cost, and what is believed of it.

/// Reads of one parse, those of the whole file apart: a usual one takes three, and seven where no count is
/// stated. The rest is for tags with pictures on either side of the sound.
inline constexpr std::uint32_t kMPEGAudio_MaxReads = 32;

/// Bytes of one parse, those of the whole file apart: what these reads may take, and what is counted whole.
inline constexpr std::uint64_t kMPEGAudio_MaxBytes = std::uint64_t{512} * 1024;

/// Bytes after the tags in which the first frames are searched: what a station's recorder cut off, or a
/// writer of tags left, is shorter than a frame or a few thousand bytes.
inline constexpr std::uint32_t kMPEGAudio_SearchSize = std::uint32_t{64} * 1024;

/// Frames in a row that make a file MPEG audio, where the first of them stands at its start or after a tag:
/// each after the first is met by chance once in some 200000 places.
inline constexpr std::uint32_t kMPEGAudio_ChainLength = 4;

/// Frames in a row that make a file MPEG audio, where they are searched for: there are thousands of places at
/// which chance may meet the first.
inline constexpr std::uint32_t kMPEGAudio_SearchChainLength = 8;

/// Headers of free format that are tried as the first one: each costs a look at every distance.
inline constexpr std::uint32_t kMPEGAudio_MaxFreeTries = 16;

/// Bytes at each of the places of a file that are looked at where nothing tells its duration: some 40 to 300
/// frames of the usual rates.
inline constexpr std::uint32_t kMPEGAudio_SurveySize = std::uint32_t{16} * 1024;

/// Bytes of sound of a varying rate without a count that is counted whole: so much fits into what any parse
/// may read, beside what the other looks at the file cost.
inline constexpr std::uint32_t kMPEGAudio_CountedSize = std::uint32_t{384} * 1024;

/// Bytes that are read at once, and that may stand between two frames, where all frames are counted: a gap
/// that is longer ends the sound.
inline constexpr std::uint32_t kMPEGAudio_CountedStep = std::uint32_t{64} * 1024;

/// Bytes between a Xing or VBRI header's frame and the first one with sound: an encoder's own data.
inline constexpr std::uint32_t kMPEGAudio_MaxGapAfterCount = 1024;

/// Bytes of a file that its duration is computed from: with the factors of rates and times they fit into 64
/// bits. A larger one counts as so large.
inline constexpr std::uint64_t kMPEGAudio_MaxFileSize = std::uint64_t{1} << 44;
