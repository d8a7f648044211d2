#pragma once

#include <string_view>

/// The tag of RFC 5646 of a language by its name as users write it into names of files, in English or in the
/// language itself, or by a code that they use for one of it ("jp"); "" for none. Regardless of the case of A
/// to Z. Codes of ISO 639 are not among them.
std::string_view LanguageByName(std::string_view aWord);
