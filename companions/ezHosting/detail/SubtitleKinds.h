#pragma once

#include "ezHosting/Subtitles.h"

#include <array>
#include <string_view>

/// The extensions of files that are looked at for subtitles, in lower case.
inline constexpr std::array<std::string_view, 12> kSubtitleExtensions = {
    "srt", "vtt", "ass", "ssa", "sub", "idx", "smi", "sami", "sup", "ttml", "dfxp", "txt"};

/// Whether an extension is one of them, in any case.
bool IsSubtitleExtension(std::string_view anExtension);

/// Whether content of a kind is believed under one of them, in any case: VobSub under that of its index
/// alone, and in a text of any content what no other text looks like, SubRip and MicroDVD. Under all others a
/// kind may have the name of another.
bool MayHold(std::string_view anExtension, ezSubtitleKind aKind);
