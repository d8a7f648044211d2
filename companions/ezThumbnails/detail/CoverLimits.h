#pragma once

#include <cstddef>
#include <cstdint>

/// What looking for a cover in a file of strangers may cost. A cover beyond a bound is not found.

/// Bytes of the blocks by which a finder reads its file, one kept: a step over a box, frame or page costs one
/// at most.
inline constexpr std::size_t kCover_BlockSize = 4096;

/// Blocks that a finder reads, 16 MiB in all: a walk over thousands of boxes, frames or pages fits, and so
/// does a tag of the largest size that has to be read byte by byte. Then it gives up.
inline constexpr std::uint32_t kCover_MaxBlocks = 4096;

/// Bytes of a picture that stays in the file: what the 24 bits of a FLAC block can hold. Covers are below one
/// MiB.
inline constexpr std::uint32_t kCover_MaxSize = std::uint32_t{16} * 1024 * 1024;

/// Bytes of a picture, as it is stored, that is gathered in memory: it is there next to the decoder's own.
inline constexpr std::uint32_t kCover_MaxHeldSize = std::uint32_t{8} * 1024 * 1024;

/// Bytes of the MIME type or description before a picture in an ID3 tag: a title fits many times.
inline constexpr std::uint32_t kCover_MaxText = 4096;

/// Bytes that a compressed frame inflates to, what stands before the picture included: a picture is
/// compressed already and does not shrink, so what is larger than the largest that is gathered is no cover.
inline constexpr std::uint32_t kCover_MaxInflatedSize = kCover_MaxHeldSize;

/// Bytes of a compressed frame that are inflated while a cover is looked for: the encoding, the longest MIME
/// type, the type of the picture, the longest description with its two zeros, and twelve bytes that tell a
/// picture.
inline constexpr std::uint32_t kCover_MaxInflatedHead = 1 + kCover_MaxText + 1 + kCover_MaxText + 2 + 12;

/// Compressed pictures of a tag whose head is inflated: there are 21 types of picture, and a tag of the
/// smallest frames would have hundreds of thousands. More are passed over.
inline constexpr std::uint32_t kCover_MaxCompressedPictures = 64;

/// Boxes of an MP4 that are stepped over, all levels together: a film in fragments has some thousand at the
/// top, after the box with the cover.
inline constexpr std::uint32_t kCover_MaxBoxes = 4096;

/// Objects of the header of an ASF file that are stepped over: writers put a dozen there, and one for each
/// stream.
inline constexpr std::uint32_t kCover_MaxObjects = 512;

/// Elements of a Matroska file that are looked at, all levels together: before the first cluster stand some
/// hundred, and a SeekHead may name each cluster.
inline constexpr std::uint32_t kCover_MaxElements = 16384;

/// Chunks of a WAV, an AIFF or a DSDIFF that are stepped over: recorders write a dozen.
inline constexpr std::uint32_t kCover_MaxChunks = 256;

/// Pages of an Ogg up to the end of the comments, other streams' included: the largest picture in pages of 4
/// KiB, as low-delay encoders write them, fits.
inline constexpr std::uint32_t kCover_MaxPages = 3072;
