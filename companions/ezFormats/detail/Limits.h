#pragma once

#include <cstddef>
#include <cstdint>

/// What parsing may cost that several formats share: reads, the start of a file, tags, elementary streams and
/// tables of rules. Those of one format stand in its folder.

/// Bytes of the reason for which a file is refused: a line for people, most of ours have some fifty. A longer
/// one is cut.
inline constexpr std::size_t kRefusal_MaxText = 255;

/// Bytes of a first look at a new place of a file: a header and what follows it fit. Each read that goes
/// straight on takes twice as many.
inline constexpr std::size_t kMediaBytes_LeastBlock = std::size_t{4} * 1024;

/// Bytes of one read of a file: more at once makes no system call cheaper, and is memory of each request.
inline constexpr std::size_t kMediaBytes_LargestBlock = std::size_t{64} * 1024;

/// Bytes of one read of a stream whose facts stand anywhere: its windows of 256 KiB are doubled, and with so
/// many at once both ends of a film of 40 Mbit/s take no more than twenty reads.
inline constexpr std::size_t kMediaBytes_LargestWindow = std::size_t{512} * 1024;

/// Reads to see a magic: the start, and after a tag of songs two places of the sound. A fourth is for a tag
/// after a tag; who writes more of them loses what stands after, unless the name is right.
inline constexpr std::uint32_t kMagic_MaxReads = 4;

/// Bytes to see a magic: three times what these reads usually take.
inline constexpr std::uint64_t kMagic_MaxBytes = std::uint64_t{64} * 1024;

/// Bytes that a candidate searches before it gives up, one figure for all of them: none leaves earlier than
/// another, and so none wins because of where the packets were cut. Half a second of video at 25 Mbit/s fits,
/// the distance at which encoders of that rate repeat the headers that a search needs.
inline constexpr std::uint32_t kEltStream_SearchLimit = std::uint32_t{2} * 1024 * 1024;

/// Bytes of a stream of frames that are kept from one packet to the next, as far as they may be the start of
/// a header: what is left of the bytes before and one request fit.
inline constexpr std::uint32_t kEltStream_WindowSize = 256;

/// Headers of unstated rate that are remembered while the distance of their frames is looked for: more than
/// a few of them within one frame are not headers.
inline constexpr std::size_t kMPEGAudio_FreeHeaderCount = 8;

/// Bytes of an extension of DTS that are looked at: all of its header, but for texts of a kilobyte.
inline constexpr std::uint32_t kDTS_ExtensionLookSize = 512;

/// Bytes of a unit of MPEG video that are kept: an extension with its four matrices is 257 bytes.
inline constexpr std::uint32_t kMPEGVideo_MaxUnitSize = 264;

/// Bytes of a unit of MPEG-4 video that are kept: a layer up to its scan, with all that may stand before
/// that, takes 24.
inline constexpr std::uint32_t kMPEG4_MaxUnitSize = 32;

/// Bytes of a parameter set of H.264 that are kept: all scaling lists, the HRD parameters of 32 buffers twice
/// and a cycle of 255 reference frames stay below. Only slice group maps of large pictures go beyond, and no
/// profile for the home has these.
inline constexpr std::uint32_t kH264_MaxParameterSetSize = 4096;

/// Bytes of a slice within which its header has told what is asked of it: six numbers of at most 63 bits.
inline constexpr std::uint32_t kH264_MaxSliceHeaderSize = 48;

/// Macroblocks of a frame of H.264: those of the highest level, 6.2. A parameter set that states more is not
/// believed.
inline constexpr std::uint32_t kH264_MaxFrameSize = 139264;

/// Macroblocks of a frame's width or height: the longest side that goes with the largest frame.
inline constexpr std::uint32_t kH264_MaxSideSize = 1055;

/// Bytes of a parameter set of H.265 that are kept: those of encoders have some 60, and 64 sets of reference
/// pictures with all scaling lists stay below.
inline constexpr std::uint32_t kH265_MaxParameterSetSize = 4096;

/// Bytes of a slice of H.265 within which its header has told what is asked of it: two flags and a number.
inline constexpr std::uint32_t kH265_MaxSliceHeaderSize = 12;

/// Pixels of a picture of H.265: those of the highest level, 7.2. A parameter set that states more is not
/// believed.
inline constexpr std::uint32_t kH265_MaxPicture = 142606336;

/// Pixels of a picture's width or height: the longest side that goes with the largest picture.
inline constexpr std::uint32_t kH265_MaxSide = 33776;

/// Pictures of a set of reference pictures of H.265: as many as a decoder keeps.
inline constexpr std::uint32_t kH265_MaxRefPictures = 16;

/// Sets of reference pictures of one parameter set: what H.265 allows.
inline constexpr std::uint32_t kH265_MaxRefPicSets = 64;

/// Pictures of long-term reference that one parameter set names: what H.265 allows.
inline constexpr std::uint32_t kH265_MaxLongTermPictures = 32;

/// Columns of tiles of a picture of H.265: those of the highest level.
inline constexpr std::uint32_t kH265_MaxTileColumns = 40;

/// Rows of tiles of a picture of H.265: those of the highest level.
inline constexpr std::uint32_t kH265_MaxTileRows = 44;

/// Bytes of supplemental information of one unit that are looked at: what tells of the dynamic range and of
/// fields has some hundred, and comes before the texts that encoders add.
inline constexpr std::uint32_t kVideoSEI_MaxSize = 4096;

/// Units that a codec's configuration or the first picture of a file is asked for: a few parameter sets and
/// messages, and of each picture some slices. Further ones are not looked at.
inline constexpr std::uint32_t kNALUnits_MaxCount = 64;

/// Pictures in 1000 seconds, the most: no level of H.264, H.265 or AV1 has faster ones. A codec's clock that
/// says so ticks for something else.
inline constexpr std::uint32_t kVideo_MaxFrameRate = 300'000;

/// Bytes of a table of profile rules: four times the built-in one. It bounds what a wrong path, an image as
/// a table, costs.
inline constexpr std::size_t kProfileRules_MaxTextSize = std::size_t{256} * 1024;

/// Rules of a table: several for each profile that DLNA has. The check compares each with all before it; of
/// five times as many it takes a desktop's processor a second.
inline constexpr std::size_t kProfileRules_MaxRules = 2000;

/// Sizes of one condition: more than twice the longest list that a profile has. The check compares each of
/// them with each of an earlier rule.
inline constexpr std::size_t kProfileRules_MaxSizes = 64;

/// Endings that a table of profile rules may have: more than twice those of transport streams. Each rule with
/// endings looks for them among all.
inline constexpr std::size_t kProfileRules_MaxEndings = 8;

/// Digits of a number in a rule, with its dot: more than any fact can have, and their value fits 64 bits. A
/// longer number is a mistake that the reading tells.
inline constexpr std::size_t kProfileRules_MaxDigits = 16;

/// Characters of a wrong word that a message about a table repeats: enough to find it by. What is cut ends
/// in dots.
inline constexpr std::size_t kProfileRules_MaxQuoted = 40;

/// Reads that may be spent on the texts of leading tags: pictures among them do not use up what the frames
/// need.
inline constexpr std::uint32_t kMusicTexts_MaxReads = 5;

/// Bytes of a tag after its picture that are read together with the frames after the tag: writers leave room
/// of one or two KiB there, and a read of its own would tell nothing but that.
inline constexpr std::uint64_t kMusicTexts_RestSize = 8192;

/// Bytes of one text that are looked at: more than a record keeps of it in any encoding.
inline constexpr std::size_t kMusicTexts_MaxSize = 4096;

/// Items of one text that lists several: songs have a few genres or dates. Further ones are not looked at.
inline constexpr std::size_t kMusicTexts_MaxCount = 8;

/// Frames or items of one tag: files have some thirty. What follows is not looked at.
inline constexpr std::uint32_t kMusicTexts_MaxFrames = 512;

/// Bytes that the compressed frames of one tag may have together when they are inflated: texts and a few
/// comments. They are held in memory, and whoever compresses a few kilobytes of frames can ask for a thousand
/// times as many.
inline constexpr std::uint32_t kMusicTexts_MaxInflated = std::uint32_t{64} * 1024;

/// Names of a list that is kept in full: as many as an opera has singers.
inline constexpr std::size_t kMusicNames_MaxCount = 32;

/// Bytes of a list of names that is kept in full: those of so many singers fit, and no library's memory is
/// filled by one song.
inline constexpr std::size_t kMusicNames_MaxSize = 4096;

/// Number of a track or disc, the largest: a ContentDirectory announces them as 32 bits with a sign.
inline constexpr std::uint32_t kMusicNumber_Max = 0x7FFFFFFF;

/// Bytes of the end that are read for the tags after the sound where a usual file costs 16 KiB in all: all
/// but lyrics and pictures fit in, and of these the footer tells the size.
inline constexpr std::uint32_t kTailTags_ShortSize = std::uint32_t{8} * 1024;

/// Seconds of a file, the most: longer than a year is not a recording but a damaged number.
inline constexpr std::uint64_t kMedia_MaxSeconds = std::uint64_t{366} * 24 * 60 * 60;

/// Bytes of the MIME type of a picture in a tag, the most that are looked at: "image/jpeg" fits many times.
inline constexpr std::uint32_t kCoverFacts_MaxText = 256;

/// Hertz of a sampling rate that is stated as a floating point number: far above any rate of sound, and below
/// what 32 bits hold. A larger one is not believed.
inline constexpr std::uint32_t kSamplingRate_MaxFloat = 10'000'000;

/// Bits of a sample, the most: a floating point number of double precision has so many. More is a damaged
/// number, which is left out.
inline constexpr std::uint32_t kSound_MaxBits = 64;

/// Bits a second of a sound, the fewest: no codec has fewer. Where a stated length makes of its bytes fewer,
/// it is damaged.
inline constexpr std::uint32_t kSound_MinBitRate = 100;

/// Bits a second of a sound, the most: no codec has more. Where a stated length makes of its bytes more, it
/// is damaged.
inline constexpr std::uint32_t kSound_MaxBitRate = 400'000'000;

/// Bits a second of a film, the most that are believed: uncompressed pictures of 1920 by 1080 at 60 a second
/// have 3 Gbit/s.
inline constexpr std::uint32_t kFilm_MaxBitRate = 4'000'000'000;
