#pragma once

#include <string>
#include <string_view>

/// The kinds of subtitles that are written in elements. A text is UTF-8, or in a code page in which plain
/// letters are those of ASCII, without a byte order mark.

/// Whether a text begins with the element of SAMI. Comments and a declaration may stand before it.
bool IsSAMI(std::string_view aText);
/// The languages of its classes (".ENCC { Name: English; lang: en-US; }"), tags of RFC 5646, joined by ",".
std::string SAMILanguages(std::string_view aText);

/// Whether a text begins with the element of TTML (W3C TTML2, 8.1.1), of any prefix. Comments and
/// declarations may stand before it.
bool IsTTML(std::string_view aText);
/// The language that the element states (xml:lang), a tag of RFC 5646; "" for none.
std::string TTMLLanguage(std::string_view aText);
