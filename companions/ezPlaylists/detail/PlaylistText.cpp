#include "ezPlaylists/detail/PlaylistText.h"

#include "ezBytes/Utf8.h"

#include <algorithm>
#include <cstdint>
#include <string>

namespace {

constexpr char32_t kReplacement = 0xFFFD;

/// Bytes at the start that are valid UTF-8.
std::size_t ValidSize(std::string_view aText) {
    std::size_t valid = 0;
    while (valid < aText.size()) {
        const std::size_t size = LengthOfFirstUtf8(aText.substr(valid));
        if (size == 0) {
            break;
        }
        valid += size;
    }
    return valid;
}

ezCString FromLatin1(std::string_view aText) {
    std::string text;
    for (const char byte : aText) {
        AppendUtf8(text, FromWindows1252(static_cast<unsigned char>(byte)));
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
            AppendUtf8(text, kReplacement);
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
