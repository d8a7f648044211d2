#pragma once

#include <cstddef>
#include <cstdint>

/// What one parse of an Ogg file may cost.

/// Reads of one parse: a usual one takes the start and the end; further ones are for a cover before the
/// sound, and for the borders of a chain: to halve 500 MB down to one takes thirteen.
inline constexpr std::uint32_t kOgg_MaxReads = 48;

/// Bytes of one parse: room for these reads, of which those of ends are of 64 KiB.
inline constexpr std::uint64_t kOgg_MaxBytes = std::uint64_t{2} * 1024 * 1024;

/// Streams that play at the same time: a film with some languages and texts.
inline constexpr std::size_t kOgg_MaxStreams = 16;

/// Pages of comments that are read, other streams' included: with a cover of 200 KB, texts after it are read,
/// too.
inline constexpr std::uint32_t kOgg_MaxCommentPages = 6;

/// Pages up to the first of sound. After those of a larger cover a stream is taken to start at its beginning.
inline constexpr std::uint32_t kOgg_MaxHeadPages = 12;

/// Bytes of the end that are read at a time: a page is of 64 KiB at most.
inline constexpr std::uint32_t kOgg_TailSize = std::uint32_t{64} * 1024;

/// Reads of the end for one stream: others may fill what stands after its last page.
inline constexpr std::uint32_t kOgg_MaxTails = 4;

/// Bytes that are read first where a border of a chain is looked for: pages are mostly of 4 to 8 KiB.
inline constexpr std::uint32_t kOgg_ProbeSize = std::uint32_t{16} * 1024;

/// Links of a chain whose lengths are added up: as many as the reads last for. Of more the rest is estimated.
inline constexpr std::uint32_t kOgg_MaxLinks = 64;

/// Microseconds below which the start of a stream counts as 0: encoders leave out a little. Those that start
/// later are captures that began in the middle.
inline constexpr std::uint64_t kOgg_MinStart = 1000000;

/// Samples of a frame of Speex that are believed: those of its modes are 160 to 640.
inline constexpr std::uint32_t kOgg_MaxSpeexSamples = 10000;

/// Frames of a packet of Speex that are believed: two seconds of them.
inline constexpr std::uint32_t kOgg_MaxSpeexFrames = 100;
