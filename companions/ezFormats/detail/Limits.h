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

/// The longest parameter set of H.264 that is kept. All scaling lists, the HRD parameters of 32 buffers twice
/// and a cycle of 255 reference frames stay below; only slice group maps of large pictures go beyond, and no
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

/// A table of profile rules: twenty times the built-in one in bytes, and several rules for each profile that
/// DLNA has. They bound what a wrong path, an image as a table, costs, and the check that compares each rule
/// with all before it: of five times as many it takes a desktop's processor a second.
inline constexpr std::size_t kProfileRules_MaxTextSize = std::size_t{256} * 1024;
inline constexpr std::size_t kProfileRules_MaxRules = 2000;

/// Sizes of one condition: more than twice the longest list that a profile has. The check compares each of
/// them with each of an earlier rule.
inline constexpr std::size_t kProfileRules_MaxSizes = 64;

/// Reads that may be spent on the texts of leading tags, so that pictures among them do not use up what the
/// frames need.
inline constexpr std::uint32_t kMusicTexts_MaxReads = 5;

/// Bytes of a tag after its picture that are read together with the frames after the tag: writers leave room
/// of one or two KiB there, and a read of its own would tell nothing but that.
inline constexpr std::uint64_t kMusicTexts_RestSize = 8192;

/// Bytes of one text that are looked at, more than a record keeps of it in any encoding; the items of one
/// text that lists several; and frames or items of one tag.
inline constexpr std::size_t kMusicTexts_MaxSize = 4096;
inline constexpr std::size_t kMusicTexts_MaxCount = 8;
inline constexpr std::uint32_t kMusicTexts_MaxFrames = 512;

/// Names of a list that is kept in full, as many as an opera has singers; and bytes of it.
inline constexpr std::size_t kMusicNames_MaxCount = 32;
inline constexpr std::size_t kMusicNames_MaxSize = 4096;

/// The largest number of a track or disc: a ContentDirectory announces them as 32 bits with a sign.
inline constexpr std::uint32_t kMusicNumber_Max = 0x7FFFFFFF;

/// Bytes of a list of languages: of twenty and more.
inline constexpr std::size_t kLanguages_MaxSize = 64;

/// Bytes that the compressed frames of one tag may have together when they are inflated: texts and a few
/// comments. They are held in memory, and whoever compresses a few kilobytes of frames can ask for a thousand
/// times as many.
inline constexpr std::uint32_t kMusicTexts_MaxInflated = std::uint32_t{64} * 1024;

/// Bytes of the end of a file that are looked at for tags. All but lyrics and pictures fit in; of these the
/// footer tells the size.
inline constexpr std::uint32_t kAudioTail_ReadSize = std::uint32_t{16} * 1024;

/// Tags after the last frame. There are five kinds.
inline constexpr std::uint32_t kAudioTail_MaxCount = 8;

/// The longest that a file of sound may last, in seconds: a year. A header that says more is damaged.
inline constexpr std::uint64_t kSound_MaxSeconds = std::uint64_t{366} * 24 * 60 * 60;

/// The longest MIME type of a picture in a tag that is looked at, in bytes: "image/jpeg" fits many times.
inline constexpr std::uint32_t kCoverFacts_MaxText = 256;
