#pragma once

#include "ezBytes/EBMLWalk.h"

/// @name Elements of a TrackEntry (RFC 9559, 5.1.4.1)
/// @{
inline constexpr EBMLId kMatroska_TrackEntry = 0xAE;
inline constexpr EBMLId kMatroska_TrackNumber = 0xD7;
inline constexpr EBMLId kMatroska_TrackType = 0x83;
inline constexpr EBMLId kMatroska_CodecId = 0x86;
/// @}

/// @name What TrackType says (5.1.4.1.3)
/// @{
inline constexpr std::uint64_t kMatroska_TypeVideo = 1;
inline constexpr std::uint64_t kMatroska_TypeSound = 2;
inline constexpr std::uint64_t kMatroska_TypeSubtitles = 17;
/// @}
