#include "ezPlaylists/detail/PlaylistText.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;

/// What Windows-1252 has at 80 to 9F, where Latin-1 has control characters that no title holds. Its five
/// holes stay those.
constexpr std::array<std::uint16_t, 32> kWindows = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

unsigned char ByteAt(std::string_view aText, std::size_t anIndex) {
    return static_cast<unsigned char>(aText[anIndex]);
}

/// Bytes of the UTF-8 character at the start, 0 when there is no valid one (RFC 3629: shortest form, no
/// surrogates, nothing above 10FFFF).
std::size_t CharacterSize(std::string_view aText) {
    struct Form {
        unsigned char mFirst, mLast; ///< of the first byte
        unsigned char mLow, mHigh;   ///< of the second byte
        std::size_t mSize;
    };
    static constexpr std::array<Form, 8> kForms = {{{0xC2, 0xDF, 0x80, 0xBF, 2},
                                                    {0xE0, 0xE0, 0xA0, 0xBF, 3},
                                                    {0xE1, 0xEC, 0x80, 0xBF, 3},
                                                    {0xED, 0xED, 0x80, 0x9F, 3},
                                                    {0xEE, 0xEF, 0x80, 0xBF, 3},
                                                    {0xF0, 0xF0, 0x90, 0xBF, 4},
                                                    {0xF1, 0xF3, 0x80, 0xBF, 4},
                                                    {0xF4, 0xF4, 0x80, 0x8F, 4}}};
    const unsigned char first = ByteAt(aText, 0);
    if (first < 0x80) {
        return 1;
    }
    for (const Form& form : kForms) {
        if (first < form.mFirst || first > form.mLast) {
            continue;
        }
        if (aText.size() < form.mSize || ByteAt(aText, 1) < form.mLow || ByteAt(aText, 1) > form.mHigh) {
            return 0;
        }
        for (std::size_t i = 2; i < form.mSize; ++i) {
            if ((ByteAt(aText, i) & 0xC0U) != 0x80) {
                return 0;
            }
        }
        return form.mSize;
    }
    return 0;
}

/// Bytes at the start that are valid UTF-8.
std::size_t ValidSize(std::string_view aText) {
    std::size_t valid = 0;
    while (valid < aText.size()) {
        const std::size_t size = CharacterSize(aText.substr(valid));
        if (size == 0) {
            break;
        }
        valid += size;
    }
    return valid;
}

/// A character below 10000.
void Append(std::string* aText, std::uint32_t aCharacter) {
    const auto byte = [](std::uint32_t aValue) {
        return static_cast<char>(static_cast<unsigned char>(aValue));
    };
    if (aCharacter < 0x80) {
        aText->push_back(byte(aCharacter));
    } else if (aCharacter < 0x800) {
        aText->push_back(byte(0xC0 | (aCharacter >> 6)));
        aText->push_back(byte(0x80 | (aCharacter & 0x3F)));
    } else {
        aText->push_back(byte(0xE0 | (aCharacter >> 12)));
        aText->push_back(byte(0x80 | ((aCharacter >> 6) & 0x3F)));
        aText->push_back(byte(0x80 | (aCharacter & 0x3F)));
    }
}

ezCString FromLatin1(std::string_view aText) {
    std::string text;
    for (std::size_t i = 0; i < aText.size(); ++i) {
        const unsigned char byte = ByteAt(aText, i);
        const bool fWindows = byte >= 0x80 && byte < 0x80 + kWindows.size();
        Append(&text, fWindows ? kWindows[byte - 0x80U] : byte);
    }
    return ezCString(text);
}

ezCString Mended(std::string_view aText) {
    std::string text;
    while (!aText.empty()) {
        const std::size_t valid = ValidSize(aText);
        text.append(aText.substr(0, valid));
        aText.remove_prefix(valid);
        if (!aText.empty()) {
            Append(&text, kReplacement);
            aText.remove_prefix(1);
        }
    }
    return ezCString(text);
}

bool IsDigit(char aCharacter) {
    return aCharacter >= '0' && aCharacter <= '9';
}

} // namespace

ezCString PlaylistText(std::string_view aText, bool afUTF8) {
    if (ValidSize(aText) == aText.size()) {
        return ezCString(aText);
    }
    return afUTF8 ? Mended(aText) : FromLatin1(aText);
}

uint32 PlaylistSeconds(std::string_view aText, std::string_view* aRest) {
    const bool fNegative = !aText.empty() && aText.front() == '-';
    if (!aText.empty() && (aText.front() == '-' || aText.front() == '+')) {
        aText.remove_prefix(1);
    }
    std::uint64_t seconds = 0;
    for (; !aText.empty() && IsDigit(aText.front()); aText.remove_prefix(1)) {
        seconds =
            std::min<std::uint64_t>(UINT32_MAX, seconds * 10 + static_cast<unsigned>(aText.front() - '0'));
    }
    if (!aText.empty() && aText.front() == '.') {
        aText.remove_prefix(1);
        while (!aText.empty() && IsDigit(aText.front())) {
            aText.remove_prefix(1);
        }
    }
    if (aRest != nullptr) {
        *aRest = aText;
    }
    return fNegative ? 0 : static_cast<uint32>(seconds);
}
