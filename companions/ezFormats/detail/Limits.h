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
