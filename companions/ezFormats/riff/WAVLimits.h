#pragma once

#include <cstddef>
#include <cstdint>

/// What one parse of a WAV file may cost.

/// Reads of one parse: a usual one takes the start, and what follows the sound; further ones are for chunks
/// that lie apart, and for sound that begins with silence.
inline constexpr std::uint32_t kWAV_MaxReads = 32;

/// Bytes of one parse: room for all these reads as blocks of 8 KiB.
inline constexpr std::uint64_t kWAV_MaxBytes = std::uint64_t{256} * 1024;

/// Chunks of one file, those within a list included: recorders write a dozen, and a list of texts has as
/// many.
inline constexpr std::uint32_t kWAV_MaxChunks = 256;

/// Bytes of the sound that are looked at for a coded stream in place of samples: a burst of AC-3, the longest
/// of those that occur, repeats after 6144.
inline constexpr std::size_t kWAV_DisguiseLookSize = 6144 + 8;

/// Bytes of the sound that are looked at for one where all of it is silence: so long do streams begin late.
inline constexpr std::size_t kWAV_DisguiseSilenceSize = std::size_t{64} * 1024;

/// Places that look like the start of such a stream and turn out to be samples: each of them may cost a read.
inline constexpr std::uint32_t kWAV_MaxDisguiseTries = 4;

/// Bytes after a tag before the file that are read together with the end of that tag: the chunks that usual
/// files begin with.
inline constexpr std::uint32_t kWAV_NextSize = 8192;

/// How many times a stated count of samples may be longer or shorter than the mean rate makes the sound:
/// writers of varying rates state the one that they aimed at.
inline constexpr std::uint64_t kWAV_MaxMeanError = 8;
