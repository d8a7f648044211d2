#pragma once

#include <cstddef>
#include <cstdint>

/// What all companions bound where they read texts, tags and compressed bytes of strangers.

/// Bytes of a text that a record holds, a title for instance: no screen shows more, and a hostile file cannot
/// fill a library's memory. A longer one is cut between two characters.
inline constexpr std::size_t kCleanText_MaxLength = 1024;

/// Bytes of the name of a code page, the most: no converter has a longer one, and such a name is not asked
/// for.
inline constexpr std::size_t kCodePage_MaxName = 40;

/// Tags in a row before the sound that are stepped over: writers that add one where another stands leave two
/// or three.
inline constexpr std::uint32_t kLeadingTag_MaxCount = 8;

/// Bytes of the end of a file that are looked at for tags: all but lyrics and pictures fit in, and of these
/// the footer tells the size.
inline constexpr std::uint32_t kAudioTail_ReadSize = std::uint32_t{16} * 1024;

/// Tags after the last frame: there are five kinds.
inline constexpr std::uint32_t kAudioTail_MaxCount = 8;

/// Bytes of the key of an item in an APE tag, its end counted: the format allows 255. An item with a longer
/// key ends the tag.
inline constexpr std::size_t kAPEItem_MaxKey = 256;

/// Entries of a directory of Exif that are looked at: a first directory holds some thirty, TIFF would allow
/// 65535.
inline constexpr unsigned kExif_MaxEntries = 1024;

/// Bytes of a date or a zone of Exif: room for a writer who pads. A longer one is not read.
inline constexpr std::uint64_t kExif_MaxText = 32;

/// Bytes of compressed data that are handed to zlib at once: they stand on the stack.
inline constexpr std::size_t kInflated_InputSize = 4096;

/// Bytes that are asked for first for what is inflated: memory grows with what comes, not with what a file
/// states.
inline constexpr std::size_t kInflated_FirstSize = 4096;

/// Bytes of compressed data beyond twice the most that may be inflated: plain blocks cost a thousandth more,
/// and a writer may have flushed often. Empty blocks alone would go on for ever.
inline constexpr std::uint64_t kInflated_MaxOverhead = 1024;

/// Characters of the comment of a picture in which what stands before the picture ends: 3 KiB when decoded.
inline constexpr std::size_t kPictureComment_MaxHead = 4096;

/// Bytes of the key of a Vorbis comment, the most that are compared: the longest one with a meaning has 22. A
/// longer one is passed over.
inline constexpr std::size_t kVorbisComment_MaxKey = 32;

/// Bytes of the name of an attribute of ASF, the most that are compared: the longest one with a meaning has
/// 66 in UTF-16. A longer one is passed over.
inline constexpr std::uint64_t kASF_MaxName = 128;

/// Bytes by which a WAV file may differ from a size that was written as 32 bits and lost the rest: what
/// writers append after it, and what they forget to count.
inline constexpr std::uint64_t kWAV_WrapSlack = std::uint64_t{64} * 1024;

/// Sizes of other chunks that a WAV file's table of large sizes may state: more than a file has that are so
/// large.
inline constexpr std::uint32_t kWAV_MaxLargeChunks = 256;

/// Bytes of a text of EBML that are looked at: more than a record keeps of it, and writers pad with NULs.
inline constexpr std::size_t kEBML_MaxText = 4096;

/// Elements of the head of a Matroska file: there are seven, and a few that nobody writes.
inline constexpr std::uint32_t kMatroska_MaxHeadElements = 32;

/// Parts of a Matroska file that are remembered with their places: writers have some eight, and those that
/// list every cluster list these among them.
inline constexpr std::size_t kMatroska_MaxParts = 64;

/// Tables of places (SeekHead) of a Matroska file that are read where another one names them: the rule is
/// one, and what names more goes in a circle.
inline constexpr std::size_t kMatroska_MaxSeekHeads = 3;

/// Bytes from the start within which parts of a Matroska stream without a size are looked for: whoever reads
/// on there reads all that lies between.
inline constexpr std::uint64_t kMatroska_StreamReach = std::uint64_t{1024} * 1024;

/// Tracks of one file that are told apart: a film with many languages has fifty. Further ones are not looked
/// at.
inline constexpr std::size_t kMatroska_MaxTracks = 128;

/// Blocks from the first cluster on that are looked at for the first frames of the tracks that play: they
/// stand side by side there, and each that is stepped over may cost a read.
inline constexpr std::uint32_t kMatroska_MaxFirstBlocks = 24;

/// Files that a Matroska file holds which are looked at for the cover: each may cost a read, as its bytes are
/// stepped over. A film with many fonts has some twenty.
inline constexpr std::uint32_t kMatroskaAttachments_MaxCount = 24;

/// Bytes of a list of languages that is kept: more than twenty languages fit.
inline constexpr std::size_t kLanguages_MaxSize = 64;

/// Bytes of a text that is read as a language: more than any tag, and than a row of codes that makes sense. A
/// longer one names none.
inline constexpr std::size_t kLanguages_MaxText = 64;
