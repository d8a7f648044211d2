#pragma once

#include <cstdint>

/// Boxes of an ISO media file that are stepped over, all levels together: a film with dozens of tracks and
/// all its tags has some hundred.
inline constexpr std::uint32_t kISO_MaxBoxes = 4096;

/// Reads and bytes of one parse of an ISO media file. A film with all its tables unread takes about ten
/// reads: one a jump over a table. The rest is for many tracks, and for fragments, of which each costs a
/// read.
inline constexpr std::uint32_t kISO_MaxReads = 96;
inline constexpr std::uint64_t kISO_MaxBytes = std::uint64_t{1024} * 1024;

/// A jump to the next box at the top that leads out of any block lands where "moov" may stand; so much of it
/// is read at once.
inline constexpr std::uint32_t kISO_TailSize = std::uint32_t{64} * 1024;

/// Brands of a file that are looked at. Segments of streams list some ten.
inline constexpr std::uint32_t kISO_MaxBrands = 32;

/// Bytes that "moov", as the last box, may state beyond the end of the file: some writers count a head or
/// two twice. They are fewer than any track takes, so none is missing, and what stands last is tags or places
/// of samples. A movie of which more is missing was cut.
inline constexpr std::uint32_t kISO_MaxMissing = 64;

/// Bytes of a movie's header that was compressed, once it is inflated. One of an hour of film and sound has
/// some hundred KiB, and films of that kind were short.
inline constexpr std::uint32_t kISO_MaxInflatedMovie = std::uint32_t{1024} * 1024;

/// Bytes of a sample size table ("stsz") that are added up for an average bit rate: a song of 20 minutes. Of
/// a larger table of audio next to video only the start is read, for an estimate.
inline constexpr std::uint32_t kISO_MaxSizeTable = std::uint32_t{256} * 1024;
inline constexpr std::uint32_t kISO_SizeTableStart = std::uint32_t{32} * 1024;

/// Names of items of QuickTime's metadata that are looked at; phones have some ten.
inline constexpr std::uint32_t kISO_MaxItemNames = 64;

/// Entries of a time-to-sample table ("stts") that are read; a constant frame rate is one or two, a varying
/// one is averaged over the stated duration instead.
inline constexpr std::uint32_t kISO_MaxTimeRuns = 256;

/// Entries of an edit list. More than a few dozen are no work of an editor.
inline constexpr std::uint32_t kISO_MaxEdits = 1024;

/// Movie fragments that are looked into for a duration that no header tells, and for rates where one does.
inline constexpr std::uint32_t kISO_MaxFragments = 48;
inline constexpr std::uint32_t kISO_FragmentsForRates = 2;

/// Longer than a year is not a recording but a damaged number.
inline constexpr std::uint64_t kISO_MaxSeconds = std::uint64_t{366} * 24 * 60 * 60;

/// Bytes of a decoder's configuration that are looked at. One of MPEG-4 video with all that may stand in it
/// is below 150.
inline constexpr std::uint32_t kISO_MaxDecoderConfig = 256;
