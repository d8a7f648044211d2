#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Appends a character to a text. What no Unicode character is (a surrogate, a value above U+10FFFF) becomes
/// U+FFFD.
void AppendUtf8(std::string& aText, char32_t aCharacter);

/// One character of a text.
struct Utf8Character {
    char32_t mCodePoint = 0;
    std::size_t mLength = 0; ///< in bytes; 0 where the bytes are not UTF-8
};

/// The character that a text begins with; one of length 0 where it begins with none, and for an empty text.
/// Overlong forms, surrogates and values above U+10FFFF are not UTF-8.
Utf8Character FirstUtf8Character(std::string_view aText);

/// Bytes of the character that a text begins with; 0 where it begins with none, and for an empty text.
std::size_t LengthOfFirstUtf8(std::string_view aText);

/// True when the whole text is UTF-8.
bool IsWholeUtf8(std::string_view aText);

/// A text without the first bytes of a character that was cut at its end: a lead byte and fewer bytes after
/// it than it asks for.
std::string_view WithoutCutUtf8(std::string_view aText);

/// The character of a byte in Windows-1252, of which Latin-1 is a part: letters and quotes stand at 80 to 9F,
/// where Latin-1 has control characters that no title holds. Its five holes stay those.
char32_t FromWindows1252(unsigned char aByte);
