#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// What one parse of a Flash video may cost.

/// Reads of one parse: a usual one takes the start and the end; further ones are for a long list of key
/// frames, for tracks that begin late, and for a last tag that is longer than the end that is read.
inline constexpr std::uint32_t kFLV_MaxReads = 8;

/// Bytes of one parse: all windows of the start and of the end, and some.
inline constexpr std::uint64_t kFLV_MaxBytes = std::uint64_t{512} * 1024;

/// Bytes of the metadata that are looked at: the lists of key frames of an hour and a half fit. Length and
/// sizes stand before them in most files; what stands after is left out of longer ones.
inline constexpr std::size_t kFLV_MaxMetadata = std::size_t{64} * 1024;

/// Bytes of the windows after the first read in which tracks are looked for, one after the other: a key frame
/// of some hundred KiB may stand before the first sound.
inline constexpr std::array<std::size_t, 3> kFLV_StartWindows = {
    std::size_t{16} * 1024, std::size_t{64} * 1024, std::size_t{128} * 1024};

/// Tags from the start on that are looked at: those of ten seconds of pictures and sound. A track that begins
/// later is not told of.
inline constexpr std::uint32_t kFLV_MaxStartTags = 512;

/// Bytes of what sets a decoder up that are looked at: parameter sets with all their lists fit.
inline constexpr std::size_t kFLV_MaxConfig = std::size_t{16} * 1024;

/// Bytes of the start of a frame that are looked at: the headers of pictures, and the texts that encoders put
/// in front of the first one.
inline constexpr std::size_t kFLV_MaxFrame = std::size_t{4} * 1024;

/// Bytes of the end that are searched for the last tags, and of what precedes it where there are none: with
/// the start they are the 64 KiB of a usual file.
inline constexpr std::array<std::size_t, 2> kFLV_EndWindows = {std::size_t{48} * 1024,
                                                               std::size_t{64} * 1024};

/// Bytes before a last tag that is longer than these windows, which are read with its header: tags of the
/// other track stand there.
inline constexpr std::size_t kFLV_LastTagWindow = std::size_t{12} * 1024;

/// Microseconds that a last frame lasts, the most, by the time since the one before it: more is a pause.
inline constexpr std::uint64_t kFLV_MaxFrameTime = std::uint64_t{1000} * 1000;

/// Microseconds by which a stated length may go beyond the last tags: pictures are shown later than they are
/// decoded, and writers round up. More, and the file was cut.
inline constexpr std::uint64_t kFLV_MaxExcess = std::uint64_t{1000} * 1000;

/// Microseconds by which a stated length may fall short of the last frames, when it is longer than their
/// start: what fills the last frame of sound is cut off, and 1024 samples at 22 kHz are 46 milliseconds.
inline constexpr std::uint64_t kFLV_MaxShortage = std::uint64_t{50} * 1000;

/// Bits a second of a film, the most that a stated length is believed with where no tag confirms it: more
/// than any player of Flash plays.
inline constexpr std::uint32_t kFLV_MaxBitRate = 400'000'000;

/// Pixels of a side of a picture that only the metadata states: more is damage.
inline constexpr std::uint32_t kFLV_MaxSide = 16384;

/// Containers within each other that the values of a script tag may have: writers have three. What is nested
/// deeper ends the reading.
inline constexpr std::size_t kAMF0_MaxDepth = 16;

/// Bytes of a name of a value, the most that are compared: the longest known one has some twenty. A longer
/// one is cut.
inline constexpr std::size_t kAMF0_MaxName = 64;
