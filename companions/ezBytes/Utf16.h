#pragma once

#include <cstddef>
#include <string_view>

/// The 16-bit unit at a place of a text, both of whose bytes are there.
inline char32_t Utf16UnitAt(std::string_view aBytes, std::size_t aPlace, bool afLittle) {
    const auto first = static_cast<unsigned char>(aBytes[aPlace]);
    const auto second = static_cast<unsigned char>(aBytes[aPlace + 1]);
    return static_cast<char32_t>(afLittle ? second << 8 | first : first << 8 | second);
}

/// Hands the characters of a text in UTF-16 (RFC 2781) to a function, until that gives false. A surrogate
/// without its other half comes as it is, which is no character: AppendUtf8 makes U+FFFD of it. A last byte
/// that is half a unit comes to nothing.
template <typename Taker>
void ForEachUtf16(std::string_view aBytes, bool afLittle, const Taker& aTaker) {
    bool fGoOn = true;
    for (std::size_t i = 0; fGoOn && i + 1 < aBytes.size(); i += 2) {
        char32_t character = Utf16UnitAt(aBytes, i, afLittle);
        const bool fFirstHalf = character >= 0xD800 && character <= 0xDBFF;
        const char32_t next =
            fFirstHalf && i + 3 < aBytes.size() ? Utf16UnitAt(aBytes, i + 2, afLittle) : U'\0';
        if (next >= 0xDC00 && next <= 0xDFFF) {
            character = 0x10000 + ((character - 0xD800) << 10) + (next - 0xDC00);
            i += 2;
        }
        fGoOn = aTaker(character);
    }
}
