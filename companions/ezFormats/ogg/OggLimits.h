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

/// Pages of comments that are read, and one more for each other stream: with a cover of 200 KB, texts after
/// it are read, too.
inline constexpr std::uint32_t kOgg_MaxCommentPages = 6;

/// Bytes after the first pages of a film that are read at a time: with the start and the end of the file 128
/// KiB. Most films have the first pages of pictures and of sound there.
inline constexpr std::uint32_t kOgg_FrontSize = std::uint32_t{56} * 1024;

/// Bytes after the first pages that are read where those do not tell when the film starts: the first picture
/// may take more than one page.
inline constexpr std::uint32_t kOgg_LargestFront = std::uint32_t{192} * 1024;

/// Pages of these bytes that are looked at: headers of as many streams as there may be, and 4 KiB a page.
inline constexpr std::uint32_t kOgg_MaxFrontPages = 64;

/// Bytes of the start of a frame of OGM that are looked at: headers of pictures or of sound.
inline constexpr std::size_t kOgg_MaxFrame = std::size_t{4} * 1024;

/// Pages up to the first of sound, where nothing is seen. After those of a larger cover a stream is taken to
/// start at its beginning.
inline constexpr std::uint32_t kOgg_MaxHeadPages = 12;

/// Bytes of the end that are read at a time: a page is of 64 KiB at most.
inline constexpr std::uint32_t kOgg_TailSize = std::uint32_t{64} * 1024;

/// Reads of the end: other streams may fill what stands after the last page of what is heard or seen.
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
