#include "ezBytes/Utf8.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kHighest = 0x10FFFF;

/// The forms of a character of several bytes.
struct Form {
    unsigned mMask;
    unsigned mLead;
    char32_t mMinimum;
    std::size_t mLength;
};
constexpr std::array<Form, 4> kForms = {
    {{0x80, 0x00, 0x0, 1}, {0xE0, 0xC0, 0x80, 2}, {0xF0, 0xE0, 0x800, 3}, {0xF8, 0xF0, 0x10000, 4}}};

bool IsCharacter(char32_t aCodePoint) {
    return aCodePoint <= kHighest && (aCodePoint < 0xD800 || aCodePoint > 0xDFFF);
}

/// What Windows-1252 has at 80 to 9F.
constexpr std::array<char16_t, 32> kWindows1252 = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

} // namespace

void AppendUtf8(std::string& aText, char32_t aCharacter) {
    if (aCharacter < 0x80) { // nearly all
        aText += static_cast<char>(aCharacter);
        return;
    }
    const char32_t character = IsCharacter(aCharacter) ? aCharacter : kReplacement;
    const auto form = std::find_if(kForms.rbegin(), kForms.rend(),
                                   [&](const Form& aForm) { return character >= aForm.mMinimum; });
    std::size_t shift = 6 * (form->mLength - 1);
    aText += static_cast<char>(form->mLead | (character >> shift));
    while (shift > 0) {
        shift -= 6;
        aText += static_cast<char>(0x80U | ((character >> shift) & 0x3FU));
    }
}

Utf8Character FirstUtf8Character(std::string_view aText) {
    if (aText.empty()) {
        return {};
    }
    const unsigned lead = static_cast<unsigned char>(aText[0]);
    if (lead < 0x80) {
        return {lead, 1};
    }
    const auto* form = std::find_if(kForms.begin(), kForms.end(),
                                    [&](const Form& aForm) { return (lead & aForm.mMask) == aForm.mLead; });
    if (form == kForms.end() || aText.size() < form->mLength) {
        return {};
    }
    char32_t codePoint = lead & ~form->mMask;
    for (std::size_t i = 1; i < form->mLength; ++i) {
        const unsigned byte = static_cast<unsigned char>(aText[i]);
        if ((byte & 0xC0U) != 0x80U) {
            return {};
        }
        codePoint = (codePoint << 6U) | (byte & 0x3FU);
    }
    const bool fWellFormed = codePoint >= form->mMinimum && IsCharacter(codePoint);
    return fWellFormed ? Utf8Character{codePoint, form->mLength} : Utf8Character();
}

std::size_t LengthOfFirstUtf8(std::string_view aText) {
    return FirstUtf8Character(aText).mLength;
}

bool IsWholeUtf8(std::string_view aText) {
    while (!aText.empty()) {
        const std::size_t length = LengthOfFirstUtf8(aText);
        if (length == 0) {
            return false;
        }
        aText.remove_prefix(length);
    }
    return true;
}

std::string_view WithoutCutUtf8(std::string_view aText) {
    for (std::size_t count = 1; count <= 3 && count <= aText.size(); ++count) {
        const auto byte = static_cast<unsigned char>(aText[aText.size() - count]);
        if (byte >= 0xC2 && byte < 0xF5) {
            const std::size_t asked = byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
            return count < asked ? aText.substr(0, aText.size() - count) : aText;
        }
        if ((byte & 0xC0U) != 0x80U) {
            break;
        }
    }
    return aText;
}

char32_t FromWindows1252(unsigned char aByte) {
    const bool fSpecial = aByte >= 0x80 && aByte < 0x80 + kWindows1252.size();
    return fSpecial ? kWindows1252[aByte - 0x80U] : aByte;
}
