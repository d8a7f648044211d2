#pragma once

#include "ezFormats/codecs/VideoFacts.h"

#include <cstddef>
#include <cstdint>
#include <optional>

// What VC-1 (SMPTE ST 421) tells of its pictures, in whatever holds it. The codec of the simple and the main
// profile is "WMV3" as a record has it, that of the advanced profile "VC1".

/// From a stream of units of the advanced profile (annex E), which may begin and end anywhere, or from what
/// sets a decoder up, which holds the same. None without a sequence header.
///
/// - The size is that of the coded pictures: of the first entry point, or else of the sequence.
/// - The shape of a pixel is stated, or follows from the size of the display, where that is another by more
///   than what rounds a size up to whole macroblocks.
/// - The frame rate is stated as well, or not known.
/// - What may hold interlaced frames is interlaced, unless there are frames in these bytes and none of them
///   is, or it says that the fields of a frame show the same instant.
std::optional<VideoFacts> VC1Video_ReadStream(const unsigned char* aBytes, std::size_t aSize);

/// From what sets a decoder of WMV 9 up, the sequence header of the simple and the main profile (annex J,
/// STRUCT_C): which of them it is. The level stands elsewhere, if at all. None where it is empty.
std::optional<VideoFacts> VC1Video_ReadStructC(const unsigned char* aBytes, std::size_t aSize);

/// From "dvc1" (SMPTE RP 2025), or what an MPEG-4 descriptor has in its place: profile and level, and of the
/// advanced profile all that its sequence header tells. None where it is no such record.
std::optional<VideoFacts> VC1Video_ReadConfig(const unsigned char* aBytes, std::size_t aSize);

/// The level of the simple and the main profile, as a record has it, by the three bits that stand for it in
/// STRUCT_B (annex J) and in "dvc1"; VideoFacts::kNoLevel for those that are reserved.
std::uint32_t VC1Video_GetSimpleMainLevel(std::uint32_t aCode);
