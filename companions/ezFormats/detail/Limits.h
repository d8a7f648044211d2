#pragma once

#include <cstddef>
#include <cstdint>

/// How far a candidate searches before it gives up. One figure for all of them: none leaves earlier than
/// another, and so none wins because of where the packets were cut. Two MiB hold half a second of video at
/// 25 Mbit/s, the distance at which encoders of that rate repeat the headers that a search needs.
inline constexpr std::uint32_t kEltStream_SearchLimit = std::uint32_t{2} * 1024 * 1024;

/// Headers of unstated rate that are remembered while the distance of their frames is looked for. More than
/// a few of them within one frame are not headers.
inline constexpr std::size_t kMPEGAudio_FreeHeaderCount = 8;

/// The longest unit of MPEG video that is kept: an extension with its four matrices is 257 bytes.
inline constexpr std::uint32_t kMPEGVideo_MaxUnitSize = 264;

/// The longest parameter set of H.264 that is kept. All scaling lists, two sets of 32 buffer descriptions and
/// a cycle of 255 reference frames stay below; only slice group maps of large pictures go beyond, and no
/// profile for the home has these.
inline constexpr std::uint32_t kH264_MaxParameterSetSize = 4096;

/// Bytes of a slice within which its header has told what is asked of it: six numbers of at most 63 bits.
inline constexpr std::uint32_t kH264_MaxSliceHeaderSize = 48;

/// The largest frame of any level (6.2) in macroblocks, and the largest width or height that goes with it.
inline constexpr std::uint32_t kH264_MaxFrameSize = 139264;
inline constexpr std::uint32_t kH264_MaxSideSize = 1055;

/// What may be read to see a magic: the start, and after a tag of songs two places of the sound. A third is
/// for a tag after a tag; who writes more of them loses what stands after, unless the name is right.
inline constexpr std::uint32_t kMagic_MaxReads = 4;
inline constexpr std::uint64_t kMagic_MaxBytes = std::uint64_t{64} * 1024;

/// Chunks of a PNG before its picture. A photo has a dozen of them; each that does not lie beside the one
/// before it costs a read.
inline constexpr std::uint32_t kPNG_MaxChunks = 256;
inline constexpr std::uint32_t kPNG_MaxReads = 64;
inline constexpr std::uint64_t kPNG_MaxBytes = std::uint64_t{384} * 1024;

/// Segments of a JPEG before its frame header. Of the longest, of 64 KiB, that is room for 12 MiB of colour
/// profiles, depth maps and edits of a camera.
inline constexpr std::uint32_t kJPEG_MaxSegments = 512;
inline constexpr std::uint32_t kJPEG_MaxReads = 192;
inline constexpr std::uint64_t kJPEG_MaxBytes = std::uint64_t{1024} * 1024;
/// Bytes between segments that belong to none, in all: some cameras pad to sectors.
inline constexpr std::uint32_t kJPEG_MaxJunk = 4096;

/// A table of profile rules: twenty times the built-in one in bytes, and several rules for each profile that
/// DLNA has. They bound what a wrong path, an image as a table, costs, and the check that compares each rule
/// with all before it: of five times as many it takes a desktop's processor a second.
inline constexpr std::size_t kProfileRules_MaxTextSize = std::size_t{256} * 1024;
inline constexpr std::size_t kProfileRules_MaxRules = 2000;

/// Reads and bytes of one parse of an MPEG audio file, the whole file apart. A usual one takes three reads,
/// and seven where no count is stated; the rest is for tags with pictures on either side of the sound.
inline constexpr std::uint32_t kMPEGAudio_MaxReads = 32;
inline constexpr std::uint64_t kMPEGAudio_MaxBytes = std::uint64_t{512} * 1024;

/// How far an MPEG audio file is searched for its first frames, behind the tags. What a station's recorder
/// cut off, or a writer of tags left, is shorter than a frame or a few thousand bytes.
inline constexpr std::uint32_t kMPEGAudio_SearchSize = std::uint32_t{64} * 1024;

/// Frames in a row that make a file MPEG audio, where the first of them stands at its start or behind a tag;
/// and where it is searched for. Each frame behind the first is met by chance once in some 200000 places.
inline constexpr std::uint32_t kMPEGAudio_ChainLength = 4;
inline constexpr std::uint32_t kMPEGAudio_SearchChainLength = 8;

/// Headers of unstated rate that are tried as the first one. Each costs a look at every distance.
inline constexpr std::uint32_t kMPEGAudio_MaxFreeTries = 16;

/// Bytes at each of the places of a file that are looked at where nothing tells its duration: some 40 to 300
/// frames of the usual rates.
inline constexpr std::uint32_t kMPEGAudio_SurveySize = std::uint32_t{16} * 1024;

/// Reads that may be spent on the texts of leading tags, so that pictures among them do not use up what the
/// frames need.
inline constexpr std::uint32_t kMusicTexts_MaxReads = 5;

/// Bytes of one text that are looked at, more than a record keeps of it in any encoding; the items of one
/// text that lists several; and frames or items of one tag.
inline constexpr std::size_t kMusicTexts_MaxSize = 4096;
inline constexpr std::size_t kMusicTexts_MaxCount = 8;
inline constexpr std::uint32_t kMusicTexts_MaxFrames = 512;

/// Sound of a varying rate without a count that is counted whole: so much fits into what any parse may read,
/// beside what the other looks at the file cost.
inline constexpr std::uint32_t kMPEGAudio_CountedSize = std::uint32_t{384} * 1024;

/// Bytes between a frame with a count and the first one with sound: an encoder's own data.
inline constexpr std::uint32_t kMPEGAudio_MaxGapBehindCount = 1024;

/// Bytes that the compressed frames of one tag may have together when they are inflated: texts and a few
/// comments. They are held in memory, and whoever compresses a few kilobytes of frames can ask for a thousand
/// times as many.
inline constexpr std::uint32_t kMusicTexts_MaxInflated = std::uint32_t{64} * 1024;

/// Bytes of the end of a file that are looked at for tags. All but lyrics and pictures fit in; of these the
/// footer tells the size.
inline constexpr std::uint32_t kAudioTail_ReadSize = std::uint32_t{16} * 1024;

/// Tags behind the last frame. There are five kinds.
inline constexpr std::uint32_t kAudioTail_MaxCount = 8;

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

/// Bytes that "moov", as the last box, may state beyond the end of the media: some writers count a head or
/// two twice. They are fewer than any track takes, so none is missing, and what stands last is tags or places
/// of samples. A movie of which more is missing was cut.
inline constexpr std::uint32_t kISO_MaxMissing = 64;

/// Bytes of a movie's header that was compressed, once it is inflated. One of an hour of film and sound has
/// some hundred KiB, and films of that kind were short.
inline constexpr std::uint32_t kISO_MaxInflatedMovie = std::uint32_t{1024} * 1024;

/// Bytes of a table of sample sizes that are added up for an average bit rate: a song of 20 minutes. Of a
/// larger table of audio next to video only the start is read, for an estimate.
inline constexpr std::uint32_t kISO_MaxSizeTable = std::uint32_t{256} * 1024;
inline constexpr std::uint32_t kISO_SizeTableStart = std::uint32_t{32} * 1024;

/// Runs of a table of sample times that are read; a constant frame rate is one or two, a varying one is
/// averaged over the stated duration instead.
inline constexpr std::uint32_t kISO_MaxTimeRuns = 256;

/// Edits of a track. More than a few dozen are no work of an editor.
inline constexpr std::uint32_t kISO_MaxEdits = 1024;

/// Fragments that are looked into for a duration that no header tells, and for rates where one does.
inline constexpr std::uint32_t kISO_MaxFragments = 48;
inline constexpr std::uint32_t kISO_FragmentsForRates = 2;

/// Longer than a year is no recording but a damaged number.
inline constexpr std::uint64_t kISO_MaxSeconds = std::uint64_t{366} * 24 * 60 * 60;

/// Bytes of a decoder's configuration that are looked at. One of MPEG-4 video with all that may stand in it
/// is below 150.
inline constexpr std::uint32_t kISO_MaxDecoderConfig = 256;
