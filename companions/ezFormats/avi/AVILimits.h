#pragma once

#include <cstddef>
#include <cstdint>

/// What one parse of an AVI file may cost.

/// Reads of one parse: a usual one takes the start, the first frames, and what follows them all; further ones
/// are for texts after the index, and for the places of a film whose length nothing states.
inline constexpr std::uint32_t kAVI_MaxReads = 32;

/// Bytes of one parse: room for the windows of an estimate, or for an index that is counted, and the rest.
inline constexpr std::uint64_t kAVI_MaxBytes = std::uint64_t{1024} * 1024;

/// Bytes of the start that are read at once: the headers of usual files, with the room that their writers
/// leave for indexes, and what follows them.
inline constexpr std::uint64_t kAVI_HeaderSize = std::uint64_t{48} * 1024;

/// Chunks of one file that are looked at, the frames included: a header has some hundred, with texts, and a
/// film that is counted some thousand.
inline constexpr std::uint32_t kAVI_MaxChunks = 16'384;

/// Streams of one file: their numbers have two digits.
inline constexpr std::size_t kAVI_MaxStreams = 100;

/// Chunks after the frames that are looked at: the index, texts, stuffing, and the next part, which ends it.
inline constexpr std::uint32_t kAVI_MaxTailChunks = 8;

/// Chunks from the first frame on among which the first frames of the tracks are looked for: sound may come
/// a second after the pictures. Those that lie apart cost a read each.
inline constexpr std::uint32_t kAVI_MaxFirstChunks = 24;

/// Bytes of the start of a frame that are looked at: the headers of pictures, and those of sound with what
/// extends them.
inline constexpr std::size_t kAVI_MaxFrame = std::size_t{4} * 1024;

/// Bytes of the format of a stream that are kept: a palette has a kilobyte, and parameter sets some hundred.
inline constexpr std::size_t kAVI_MaxFormat = std::size_t{4} * 1024;

/// Bytes of the name of a language, or of a date in words, that are looked at: the longest date has 26.
inline constexpr std::size_t kAVI_MaxText = 64;

/// Entries of an index of indexes that are counted: one is for a part of a gigabyte, or of some minutes.
inline constexpr std::uint32_t kAVI_MaxIndexes = 4096;

/// Bytes of an index that is counted: 16 for each frame, so that of a film of some minutes fits.
inline constexpr std::uint64_t kAVI_MaxIndex = std::uint64_t{256} * 1024;

/// Bytes of a place that is looked at where nothing states the length: ten frames of usual films.
inline constexpr std::size_t kAVI_PlaceSize = std::size_t{48} * 1024;

/// Places that are looked at for the length: the more there are, the less of a film's quiet scenes are
/// missed. All of them are two thirds of the bytes of a parse.
inline constexpr std::uint32_t kAVI_Places = 14;

/// Bytes of frames that are counted one by one where nothing states the length: as many as the places would
/// be.
inline constexpr std::uint64_t kAVI_CountedSize = std::uint64_t{kAVI_Places} * kAVI_PlaceSize;

/// Part by which the length of places may be wrong at the least: pictures that move more come in scenes that
/// places miss.
inline constexpr std::uint64_t kAVI_PlaceError = 8;

/// Bytes of a frame, the most that are believed where one is looked for: uncompressed pictures of 4096 by
/// 2160 have 35 million.
inline constexpr std::uint32_t kAVI_MaxChunk = std::uint32_t{64} * 1024 * 1024;

/// Seconds before the first unit of a stream, the most that are believed: pictures and sound begin within
/// seconds of each other, and writers leave any number there.
inline constexpr std::uint64_t kAVI_MaxDelay = 3600;

/// Part of the longer of pictures and sound by which they may differ for the longer to count: more, and one
/// of both is not what the file plays.
inline constexpr std::uint64_t kAVI_SoundShare = 10;
