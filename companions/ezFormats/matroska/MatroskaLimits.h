#pragma once

#include <cstddef>
#include <cstdint>

/// What one parse of a Matroska file may cost.

/// Reads of one parse: a usual one takes the start, and a place each of what the SeekHead names; further ones
/// look for the last blocks of a file that states no length.
inline constexpr std::uint32_t kMatroska_MaxReads = 48;

/// Bytes of one parse: room for all these reads as blocks of 64 KiB, and some.
inline constexpr std::uint64_t kMatroska_MaxBytes = std::uint64_t{4} * 1024 * 1024;

/// Elements of one file that are looked at, those that are stepped over included: a film has some hundred
/// before its first cluster, thousands of blocks lie within the end that is searched for the last ones.
inline constexpr std::uint32_t kMatroska_MaxElements = 50'000;

/// Bytes of what sets a decoder up that are looked at: parameter sets with all their lists fit.
inline constexpr std::size_t kMatroska_MaxPrivate = std::size_t{16} * 1024;

/// Bytes of the start of a frame that are looked at: the headers of pictures, and those of sound with what
/// extends them.
inline constexpr std::size_t kMatroska_MaxFrame = std::size_t{4} * 1024;

/// Bytes that were cut off in front of every frame: writers cut a few that all frames have.
inline constexpr std::uint64_t kMatroska_MaxStripped = 256;

/// Bytes of an id of a codec, the most that are compared: the longest known one has 19. A longer one is cut.
inline constexpr std::size_t kMatroska_MaxCodecId = 32;

/// Mappings of additional data of one track that are looked at: there is one of Dolby Vision and one of other
/// metadata.
inline constexpr std::size_t kMatroska_MaxMappings = 8;

/// Bytes of the end of the clusters that are searched for the last one, and then walked: clusters hold some
/// seconds, of a megabyte or two. Both fit into the bytes of a parse.
inline constexpr std::uint64_t kMatroska_TailSize = std::uint64_t{1792} * 1024;

/// Microseconds by which a stated length may go beyond the last blocks that are found, before it is taken for
/// that of a stray one: the last frames may last a while, and subtitles stay a little longer.
inline constexpr std::uint64_t kMatroska_MaxExcess = std::uint64_t{2} * 1000 * 1000;

/// Bits a second of a film, the fewest that are believed without a look at the last blocks: pictures and
/// sound that nobody would watch have more.
inline constexpr std::uint32_t kMatroska_MinFilmRate = 20'000;

/// Bytes of the end of the cues that the last one is searched in: one takes some twenty.
inline constexpr std::uint64_t kMatroska_CueTailSize = std::uint64_t{4} * 1024;

/// Elements of tags of one file that are read: writers put all into one, editors may add another.
inline constexpr std::size_t kMatroska_MaxTags = 8;

/// Pixels of a side of a picture, or what else its shown size is counted in: more is damage, and the products
/// of two sides fit 64 bits.
inline constexpr std::uint64_t kMatroska_MaxSide = 0x7FFFFFFF;

/// Bits of a sample of a picture: cameras and masters have 16. More is damage, and not told.
inline constexpr std::uint64_t kMatroska_MaxSampleBits = 16;

/// Bytes that are read at once from the first cluster on, or from where the buffered bytes end: of a
/// film of 2 Mbit/s a quarter of a second, of the fastest ones the sound between two pictures.
inline constexpr std::size_t kMatroska_PaceSize = std::size_t{64} * 1024;

/// Blocks of those bytes that are looked at: a second of sound and pictures has a hundred.
inline constexpr std::uint32_t kMatroska_MaxPaceBlocks = 128;

/// Pictures by whose times a frame rate is told, the fewest: three distances between them.
inline constexpr std::size_t kMatroska_LeastPictures = 4;
