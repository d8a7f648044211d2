#pragma once

#include <string>
#include <string_view>

/// Puts a character behind a text. What no Unicode character is (a surrogate, a value above U+10FFFF) becomes
/// U+FFFD.
void AppendUtf8(std::string& aText, char32_t aCharacter);

/// True when the whole text is UTF-8: no overlong form, no surrogate, no value above U+10FFFF.
bool IsWholeUtf8(std::string_view aText);
