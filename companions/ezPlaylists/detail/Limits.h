#pragma once

#include <cstddef>
#include <cstdint>

/// What playlists of strangers may cost. Each bound lies far above what players write, and keeps the memory
/// of a reader in the reach of a small device.

/// Bytes of a line, its end not counted: the longest path of any system (32,767 UTF-16 units) in UTF-8 fits
/// but for the rarest scripts, and so does every URL that servers take. A longer line is skipped whole, since
/// a location that is cut names something else.
inline constexpr std::size_t kPlaylist_MaxLine = std::size_t{64} * 1024;

/// Bytes of a line that is read over. A longer one is in no playlist, but in a picture, a film or a file that
/// is one hole: the reading ends before it. Covers that players write into a line as base64 are smaller.
inline constexpr std::size_t kPlaylist_MaxSkippedLine = std::size_t{1024} * 1024;

/// Bytes of a playlist that is read line by line; what follows is not read. Half a million entries
/// with long names, and so little that one request over a file without end is over soon.
inline constexpr std::uint64_t kPlaylist_MaxBytes = std::uint64_t{64} * 1024 * 1024;

/// Bytes of one text of a document with markup, which is read as a whole: a longer one counts as absent. What
/// is made of a text on the way to an entry is of its order, and memory for that is not asked for with care.
inline constexpr std::size_t kPlaylist_MaxText = std::size_t{1024} * 1024;

/// Bytes of directive lines that one entry carries; further lines are left out.
inline constexpr std::size_t kPlaylist_MaxTags = std::size_t{64} * 1024;

/// A read at a place that was jumped to fetches little, as an entry is small; one that goes on fetches twice
/// as much each time, up to what makes the system calls cheap.
inline constexpr std::size_t kPlaylist_FirstBlock = std::size_t{4} * 1024;
inline constexpr std::size_t kPlaylist_LastBlock = std::size_t{64} * 1024;

/// Bytes kept before the position, so that going back to an entry whose successor was looked up reads
/// nothing.
inline constexpr std::size_t kPlaylist_KeptBefore = std::size_t{4} * 1024;

/// Bytes at the start of an M3U in which the tags of HLS are looked for. They stand before its first segment.
/// No more is read for it, however long a line is.
inline constexpr std::size_t kPlaylist_HLSLook = std::size_t{64} * 1024;

/// Entries of a playlist that has to be indexed, and bytes of their texts: what follows is left out. About
/// 32 MiB at worst; the whole music library of a home takes an eighth.
inline constexpr std::size_t kPlaylist_MaxIndexed = std::size_t{1} << 18;
inline constexpr std::size_t kPlaylist_MaxIndexedText = std::size_t{24} * 1024 * 1024;

/// Bytes of a playlist that has to be taken into memory as a whole, and of its text in UTF-8; a larger one
/// has no entries. With the index, its growth and the texts of one entry a document takes less than 64 MiB at
/// worst; while one whose stream failed is read again, the index that is there already comes to that.
inline constexpr std::size_t kPlaylist_MaxDocument = std::size_t{16} * 1024 * 1024;

/// Bytes of the bases that locations of a document are put under, counted for each: what follows is left out.
/// A base of 100 bytes for as many entries as are kept.
inline constexpr std::size_t kPlaylist_MaxBased = std::size_t{32} * 1024 * 1024;
