#pragma once

#include <string>
#include <string_view>

/// Puts the languages that a text of a tag states after others, joined by ",", each once: tags of RFC 5646,
/// the shortest that a language has ("en" for "eng").
///
/// Read are codes of ISO 639-2, of either kind and in either case, also several in a row as ID3v2.3 has them
/// ("engfre"); tags of RFC 5646; and several joined by ",", as such a list has them. What states no language
/// ("und", "zxx", "XXX", private codes) adds none, and neither does a language by its name. What would make
/// the list longer than a text may be is left.
void AddLanguages(std::string& aList, std::string_view aText);

/// The same of a language in the 15 bits of ISO media (ISO/IEC 14496-12, 8.4.2.3), three letters of five bits
/// each. Numbers of QuickTime, which are below 0x400, add none: most who write 0, English, state nothing.
void AddPackedLanguage(std::string& aList, unsigned aPacked);

/// True for a code of ISO 639-1, and for one of ISO 639-2 whose language has one of those, in either case:
/// for texts that may as well be other words, of which AddLanguages would take any of two or three letters.
bool IsLanguageCode(std::string_view aText);
