#pragma once

#include <cstddef>
#include <cstdint>

/// What one parse of an ASF file may cost.

/// Reads of one parse: a usual one takes the start, and where that holds a picture what follows it; further
/// ones are for more pictures, and for the last packets of what was broadcast.
inline constexpr std::uint32_t kASF_MaxReads = 16;

/// Bytes of one parse: room for all these reads as blocks of 64 KiB.
inline constexpr std::uint64_t kASF_MaxBytes = std::uint64_t{1024} * 1024;

/// Objects of one file, those of the header's extension included: writers put a dozen there, and one for each
/// stream.
inline constexpr std::uint32_t kASF_MaxObjects = 512;

/// Streams of one file that are told apart: a film with many languages has a dozen. The format allows 127.
inline constexpr std::size_t kASF_MaxStreams = 32;

/// Languages of one file that are told apart: as many as streams.
inline constexpr std::size_t kASF_MaxLanguages = kASF_MaxStreams;

/// Pictures of one object of attributes that are looked at: each may cost a read, and all but the first few
/// are of the artist and the label.
inline constexpr std::uint32_t kASF_MaxPictures = 4;

/// Bytes of the end that are searched for the last packets at a time: packets are mostly of 1 to 8 KiB.
inline constexpr std::uint32_t kASF_TailSize = std::uint32_t{64} * 1024;

/// Reads of the end, each of the packets before those of the last: zeros may follow a recording that broke
/// off.
inline constexpr std::uint32_t kASF_MaxTails = 3;

/// Bytes of packets from the first on that are looked through for what a stream of video begins with, where
/// its header is not enough: sound and the first picture of several hundred milliseconds.
inline constexpr std::uint32_t kASF_FrameWindow = std::uint32_t{32} * 1024;

/// Bytes of what a stream of video begins with that are looked at: headers of codecs stand there within some
/// hundred.
inline constexpr std::uint32_t kASF_MaxFrame = std::uint32_t{16} * 1024;

/// Milliseconds below which the start of a stream counts as 0: encoders leave out a little. Those that start
/// later are captures that began in the middle.
inline constexpr std::uint32_t kASF_MinStart = 1000;

/// Bits a second below which a stated mean is not believed: the voice codec begins at 4000, and writers leave
/// numbers like 16 there.
inline constexpr std::uint32_t kASF_MinBitRate = 1000;
