#pragma once

#include <cstddef>
#include <cstdint>

/// Reads and bytes of one parse of an Ogg file. A usual one takes the start and the end; further reads are
/// for a cover before the sound, and for the borders of a chain: to halve 500 MB down to one takes thirteen.
inline constexpr std::uint32_t kOgg_MaxReads = 48;
inline constexpr std::uint64_t kOgg_MaxBytes = std::uint64_t{2} * 1024 * 1024;

/// Streams that play at the same time: a film with some languages and texts.
inline constexpr std::size_t kOgg_MaxStreams = 16;

/// Pages of comments that are read, other streams' included: with a cover of 200 KB, texts after it are read,
/// too.
inline constexpr std::uint32_t kOgg_MaxCommentPages = 6;

/// Pages up to the first of sound. After those of a larger cover a stream is taken to start at its beginning.
inline constexpr std::uint32_t kOgg_MaxHeadPages = 12;

/// What is read at a time of the end, and how often: other streams may fill what stands after the last page
/// of one, which is of 64 KiB at most.
inline constexpr std::uint32_t kOgg_TailSize = std::uint32_t{64} * 1024;
inline constexpr std::uint32_t kOgg_MaxTails = 4;

/// What is read first where a border of a chain is looked for: pages are mostly of 4 to 8 KiB.
inline constexpr std::uint32_t kOgg_ProbeSize = std::uint32_t{16} * 1024;

/// Links of a chain whose lengths are added up, as long as the reads last.
inline constexpr std::uint32_t kOgg_MaxLinks = 64;

/// A stream that starts below this, in microseconds, starts at 0: encoders leave out a little. Others are
/// captures that began in the middle.
inline constexpr std::uint64_t kOgg_MinStart = 1000000;
