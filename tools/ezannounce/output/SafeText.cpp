#include "output/SafeText.h"

#include "ezBytes/Utf8.h"

#include <algorithm>
#include <array>
#include <clocale> // with newlocale and uselocale, which POSIX adds
#include <cwchar>
#include <vector>

namespace {

constexpr std::string_view kHexDigits = "0123456789abcdef";

struct Range {
    char32_t mFirst;
    char32_t mLast;
};

/// What is never shown as it is: control characters, line and paragraph separators, and what turns the
/// direction of writing, by which a name could pass for another.
constexpr std::array<Range, 8> kUnsafe = {{{0x00, 0x1F},
                                           {0x7F, 0x9F},
                                           {0x061C, 0x061C},
                                           {0x200B, 0x200F},
                                           {0x2028, 0x202E},
                                           {0x2060, 0x206F},
                                           {0xFEFF, 0xFEFF},
                                           {0xE0000, 0xE007F}}};

bool IsUnsafe(char32_t aCodePoint) {
    return std::any_of(kUnsafe.begin(), kUnsafe.end(), [&](const Range& aRange) {
        return aCodePoint >= aRange.mFirst && aCodePoint <= aRange.mLast;
    });
}

void AppendEscaped(std::string& aText, std::string_view aBytes) {
    for (const char byte : aBytes) {
        const auto value = static_cast<unsigned char>(byte);
        aText += "\\x";
        aText += kHexDigits[value >> 4U];
        aText += kHexDigits[value & 0xFU];
    }
}

void AppendUtf16Escape(std::string& aText, char32_t aUnit) {
    aText += "\\u";
    for (const unsigned shift : {12U, 8U, 4U, 0U}) {
        aText += kHexDigits[(aUnit >> shift) & 0xFU];
    }
}

/// JSON writes what lies above U+FFFF as two surrogates (RFC 8259, section 7).
void AppendJsonEscape(std::string& aText, char32_t aCodePoint) {
    if (aCodePoint < 0x10000) {
        AppendUtf16Escape(aText, aCodePoint);
        return;
    }
    const char32_t offset = aCodePoint - 0x10000;
    AppendUtf16Escape(aText, 0xD800 + (offset >> 10U));
    AppendUtf16Escape(aText, 0xDC00 + (offset & 0x3FFU));
}

const char* ShortEscape(char aCharacter) {
    switch (aCharacter) {
    case '\\':
        return "\\\\";
    case '\n':
        return "\\n";
    case '\t':
        return "\\t";
    case '\r':
        return "\\r";
    default:
        return nullptr;
    }
}

/// Columns of one character, whatever locale the person has set.
std::size_t WidthOf(char32_t aCodePoint) {
    static const locale_t sUtf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    if (aCodePoint < 0x80 || sUtf8 == nullptr) {
        return 1;
    }
    const locale_t before = uselocale(sUtf8);
    const int width = wcwidth(static_cast<wchar_t>(aCodePoint));
    uselocale(before);
    return width < 0 ? 1 : static_cast<std::size_t>(width);
}

} // namespace

std::string ForTerminal(std::string_view aText) {
    std::string safe;
    safe.reserve(aText.size());
    while (!aText.empty()) {
        const Utf8Character character = FirstUtf8Character(aText);
        const std::string_view bytes = aText.substr(0, std::max<std::size_t>(character.mLength, 1));
        if (const char* escape = ShortEscape(bytes[0])) {
            safe += escape;
        } else if (character.mLength == 0 || IsUnsafe(character.mCodePoint)) {
            AppendEscaped(safe, bytes);
        } else {
            safe += bytes;
        }
        aText.remove_prefix(bytes.size());
    }
    return safe;
}

std::string WithoutUnsafe(std::string_view aText, char aReplacement) {
    std::string safe;
    safe.reserve(aText.size());
    while (!aText.empty()) {
        const Utf8Character character = FirstUtf8Character(aText);
        const std::string_view bytes = aText.substr(0, std::max<std::size_t>(character.mLength, 1));
        if (character.mLength == 0 || IsUnsafe(character.mCodePoint)) {
            safe.append(bytes.size(), aReplacement);
        } else {
            safe += bytes;
        }
        aText.remove_prefix(bytes.size());
    }
    return safe;
}

std::string JsonForTerminal(std::string_view aJson) {
    std::string safe;
    safe.reserve(aJson.size());
    while (!aJson.empty()) {
        const Utf8Character character = FirstUtf8Character(aJson);
        const std::size_t length = std::max<std::size_t>(character.mLength, 1);
        if (character.mLength != 0 && IsUnsafe(character.mCodePoint)) {
            AppendJsonEscape(safe, character.mCodePoint);
        } else {
            safe += aJson.substr(0, length);
        }
        aJson.remove_prefix(length);
    }
    return safe;
}

std::size_t TerminalWidth(std::string_view aText) {
    std::size_t width = 0;
    while (!aText.empty()) {
        const Utf8Character character = FirstUtf8Character(aText);
        width += WidthOf(character.mCodePoint);
        aText.remove_prefix(std::max<std::size_t>(character.mLength, 1));
    }
    return width;
}

std::string CutToTerminalWidth(std::string_view aText, std::size_t aWidth) {
    std::size_t width = 0;
    std::size_t end = 0;
    while (end < aText.size()) {
        const Utf8Character character = FirstUtf8Character(aText.substr(end));
        width += WidthOf(character.mCodePoint);
        if (width > aWidth) {
            break;
        }
        end += std::max<std::size_t>(character.mLength, 1);
    }
    return std::string(aText.substr(0, end));
}

std::string CutInMiddle(std::string_view aText, std::size_t aWidth) {
    constexpr std::string_view kDots = "...";
    constexpr std::size_t kPartOfStart = 3;
    std::vector<std::string> characters; // whole, so that no escape is cut through
    std::size_t width = 0;
    while (!aText.empty()) {
        const std::size_t length = std::max<std::size_t>(FirstUtf8Character(aText).mLength, 1);
        characters.push_back(ForTerminal(aText.substr(0, length)));
        width += TerminalWidth(characters.back());
        aText.remove_prefix(length);
    }
    std::size_t start = 0;
    std::size_t end = characters.size();
    std::string cut;
    if (width > aWidth) {
        const std::size_t room = aWidth - std::min(aWidth, kDots.size());
        std::size_t left = room / kPartOfStart;
        for (; TerminalWidth(characters[start]) <= left; ++start) {
            left -= TerminalWidth(characters[start]);
            cut += characters[start];
        }
        cut += kDots.substr(0, aWidth);
        left += room - room / kPartOfStart;
        for (; TerminalWidth(characters[end - 1]) <= left; --end) {
            left -= TerminalWidth(characters[end - 1]);
        }
        // What combines does so with what is left out.
        start = end;
        while (start < characters.size() && TerminalWidth(characters[start]) == 0) {
            ++start;
        }
        end = characters.size();
    }
    for (; start < end; ++start) {
        cut += characters[start];
    }
    return cut;
}

std::string HexBytes(std::string_view aBytes) {
    std::string text;
    text.reserve(aBytes.size() * 2);
    for (const char byte : aBytes) {
        const auto value = static_cast<unsigned char>(byte);
        text += kHexDigits[value >> 4U];
        text += kHexDigits[value & 0xFU];
    }
    return text;
}
