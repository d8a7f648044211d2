#pragma once

#include "ezHosting/Subtitles.h"

#include <optional>
#include <string>
#include <string_view>

/// What the first bytes of a file of subtitles tell.
struct SubtitleContent {
    ezSubtitleKind mKind = ezSubtitleKind::SubRip;
    std::string mLanguages; ///< tags of RFC 5646, joined by ",", of the kinds that state them
    std::string mEncoding;  ///< "" for pictures
};

/// Recognises the content of a file. Nothing for what is none of the kinds, and for the pictures of VobSub,
/// which their index tells of.
///
/// @param aHead      its first bytes
/// @param afWhole    they are all; else the last character may be cut
/// @param aCodePage  the name of the encoding of text that is not Unicode
std::optional<SubtitleContent> ReadSubtitleContent(std::string_view aHead, bool afWhole,
                                                   const std::string& aCodePage);
