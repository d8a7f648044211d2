#pragma once

#include <cstddef>
#include <cstdint>

/// What one parse of an ISO media file may cost, and how much of its tables counts.

/// Boxes that are stepped over, all levels together: a film with dozens of tracks and all its tags has some
/// hundred.
inline constexpr std::uint32_t kISO_MaxBoxes = 4096;

/// Reads of one parse: a film with all its tables unread takes about ten, one a jump over a table. The rest
/// is for many tracks, and for fragments, of which each costs a read.
inline constexpr std::uint32_t kISO_MaxReads = 96;

/// Bytes of one parse: room for these reads at a usual size, and for the tables that are added up.
inline constexpr std::uint64_t kISO_MaxBytes = std::uint64_t{1024} * 1024;

/// Bytes that are read at once where a jump to the next box at the top leads out of any block: "moov" may
/// stand there.
inline constexpr std::uint32_t kISO_TailSize = std::uint32_t{64} * 1024;

/// Brands of a file that are looked at: segments of streams list some ten.
inline constexpr std::uint32_t kISO_MaxBrands = 32;

/// Bytes that "moov", as the last box, may state beyond the end of the file: some writers count a head or
/// two twice. They are fewer than any track takes, so none is missing, and what stands last is tags or places
/// of samples. A movie of which more is missing was cut.
inline constexpr std::uint32_t kISO_MaxMissing = 64;

/// Bytes of a movie's header that was compressed, once it is inflated: one of an hour of film and sound has
/// some hundred KiB, and films of that kind were short.
inline constexpr std::uint32_t kISO_MaxInflatedMovie = std::uint32_t{1024} * 1024;

/// Bytes of a sample size table ("stsz") that are added up for an average bit rate: a song of 20 minutes.
inline constexpr std::uint32_t kISO_MaxSizeTable = std::uint32_t{256} * 1024;

/// Bytes of a larger sample size table, of audio next to video, that are read: its start is enough for an
/// estimate.
inline constexpr std::uint32_t kISO_SizeTableStart = std::uint32_t{32} * 1024;

/// Names of items of QuickTime's metadata that are looked at: phones have some ten.
inline constexpr std::uint32_t kISO_MaxItemNames = 64;

/// Bytes of such a name that are looked at: more than any that is known here has. A longer one is none of
/// these.
inline constexpr std::uint64_t kISO_MaxItemName = 64;

/// Tracks of chapters that are told from subtitles: one movie has one of texts, and one of pictures.
inline constexpr std::uint32_t kISO_MaxChapterTracks = 16;

/// Tracks of subtitles that are counted: a film has some fifty at most.
inline constexpr std::uint32_t kISO_MaxSubtitleTracks = 256;

/// Bytes of the language of a track ("elng") that are looked at: more than any tag has.
inline constexpr std::uint64_t kISO_MaxLanguageTag = 64;

/// Entries of a time-to-sample table ("stts") that are read: a constant frame rate is one or two, a varying
/// one shows in the first, and is averaged over the stated duration instead.
inline constexpr std::uint32_t kISO_MaxTimeRuns = 256;

/// Entries of an edit list that count: more than a few dozen are no work of an editor.
inline constexpr std::uint32_t kISO_MaxEdits = 1024;

/// Movie fragments that are looked into for a duration that no header tells: each costs a read.
inline constexpr std::uint32_t kISO_MaxFragments = 48;

/// Movie fragments that are looked into for rates where a header tells the duration: the first tell enough.
inline constexpr std::uint32_t kISO_FragmentsForRates = 2;

/// Bytes of the first sample of video that are looked at: its headers stand in front, and of a picture no
/// more than that is asked for.
inline constexpr std::size_t kISO_MaxSample = std::size_t{4} * 1024;
