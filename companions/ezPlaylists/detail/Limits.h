#pragma once

#include <cstddef>
#include <cstdint>

/// What playlists of strangers may cost. Each bound lies far above what players write, and keeps the memory
/// of a reader in the reach of a small device.

/// Bytes of a line, its end not counted: the longest path of any system (32,767 UTF-16 units) in UTF-8 fits
/// but for the rarest scripts, and so does every URL that servers take. A longer line is skipped whole, since
/// a location that is cut names something else.
inline constexpr std::size_t kPlaylist_MaxLine = std::size_t{64} * 1024;

/// Bytes of a line that is read over: covers that players write into a line as base64 are smaller. A longer
/// one is in no playlist, but in a picture, a film or a file that is one hole: the reading ends before it.
inline constexpr std::size_t kPlaylist_MaxSkippedLine = std::size_t{1024} * 1024;

/// Bytes of a playlist that is read line by line: half a million entries with long names, and so little that
/// one request over a file without end is over soon. What follows is not read.
inline constexpr std::uint64_t kPlaylist_MaxBytes = std::uint64_t{64} * 1024 * 1024;

/// Bytes of one text of a document with markup, which is read as a whole: what is made of a text on the way
/// to an entry is of its order, and memory for that is not asked for with care. A longer one counts as
/// absent.
inline constexpr std::size_t kPlaylist_MaxText = std::size_t{1024} * 1024;

/// Bytes of directive lines that one entry carries: players write a few lines. Further ones are left out.
inline constexpr std::size_t kPlaylist_MaxTags = std::size_t{64} * 1024;

/// Bytes of a read at a place that was jumped to: an entry is small. One that goes on fetches twice as many
/// each time.
inline constexpr std::size_t kPlaylist_FirstBlock = std::size_t{4} * 1024;

/// Bytes of one read, the most: so many make the system calls cheap.
inline constexpr std::size_t kPlaylist_LastBlock = std::size_t{64} * 1024;

/// Bytes that are held when a line is looked for, before a block more is read: the longest line and its end,
/// two units of 16 bits.
inline constexpr std::size_t kPlaylist_MaxBuffered = kPlaylist_MaxLine + 4;

/// Bytes that a search for a line end looks at in one go: most lines end within them.
inline constexpr std::size_t kPlaylist_LookAhead = 1'024;

/// Bytes of an M3U that are passed over in one go where its entries are only counted: thousands of short
/// lines, and soon buffered.
inline constexpr std::size_t kPlaylist_SkippedAtOnce = kPlaylist_MaxLine / 8;

/// Bytes that are kept before the position: going back to an entry whose successor was looked up then reads
/// nothing.
inline constexpr std::size_t kPlaylist_KeptBefore = std::size_t{4} * 1024;

/// Bytes at the start of an M3U in which the tags of HLS are looked for: they stand before its first segment.
/// No more is read for it, however long a line is.
inline constexpr std::size_t kPlaylist_HLSLook = std::size_t{64} * 1024;

/// Entries of a playlist that has to be indexed: the whole music library of a home takes an eighth. What
/// follows is left out.
inline constexpr std::size_t kPlaylist_MaxIndexed = std::size_t{1} << 18;

/// Bytes of the texts of those entries: with the index about 32 MiB at worst. What follows is left out.
inline constexpr std::size_t kPlaylist_MaxIndexedText = std::size_t{24} * 1024 * 1024;

/// Bytes of a playlist that has to be taken into memory as a whole, and of its text in UTF-8: with the index,
/// its growth and the texts of one entry a document takes less than 64 MiB at worst; while one whose stream
/// failed is read again, the index that is there already comes to that. A larger one has no entries.
inline constexpr std::size_t kPlaylist_MaxDocument = std::size_t{16} * 1024 * 1024;

/// Bytes of one base that locations of a document are put under: every location carries it, and thousands of
/// them must fit into memory. A longer one is not applied.
inline constexpr std::size_t kPlaylist_MaxBase = 2'048;

/// Bytes of the bases that locations of a document are put under, counted for each: a base of 100 bytes for
/// as many entries as are kept. What follows is left out.
inline constexpr std::size_t kPlaylist_MaxBased = std::size_t{32} * 1024 * 1024;

/// Bytes at the start of a document in which its XML declaration ends: a long first line is not searched as a
/// whole.
inline constexpr std::size_t kMarkup_MaxDeclaration = 256;

/// Bytes of a reference to a character (`&amp;`) from its "&" to its ";": those that are known are shorter,
/// and what stands between a stray "&" and the next ";" is not searched.
inline constexpr std::size_t kMarkup_MaxEntity = 12;

/// Bytes of a name of a tag or attribute that are kept: no reader knows a longer one.
inline constexpr std::size_t kMarkup_MaxName = 64;

/// Attributes of a tag that are kept: each takes many times the memory of its two bytes in the document.
/// Further ones are dropped.
inline constexpr std::size_t kMarkup_MaxAttributes = 32;

/// Levels of open elements whose names are kept, to see that each is closed by its own: formats nest less
/// deeply. Below them any end tag closes.
inline constexpr std::size_t kXml_NamedLevels = 8;
