#include "ezPlaylists/detail/EntryText.h"

#include <algorithm>
#include <cstdint>
#include <limits>

std::string OneLine(std::string_view aText) {
    constexpr std::string_view kBlanks = " \t\r\n\f\v";
    std::string line;
    for (std::string_view rest = ezTrimmed(aText); !rest.empty();) {
        const std::size_t word = std::min(rest.find_first_of(kBlanks), rest.size());
        line += rest.substr(0, word);
        rest.remove_prefix(word);
        const std::string_view gap = rest.substr(0, rest.find_first_not_of(kBlanks));
        // Blanks between two words are as they were meant; a line end is there for the document alone.
        const bool fOnlyBlanks = gap.find_first_not_of(' ') == std::string_view::npos;
        line += fOnlyBlanks ? gap : std::string_view(" ");
        rest.remove_prefix(gap.size());
    }
    return line;
}

void AddTag(PlaylistParserEntry& anEntry, std::string_view aName, std::string_view aValue) {
    const std::string value = OneLine(aValue);
    if (!value.empty()) {
        const char* separator = anEntry.mSpecificTags.IsEmpty() ? "" : "\n";
        anEntry.mSpecificTags += ezCString(separator) + ezCString(aName) + "=" + ezCString(value);
    }
}

uint32 SecondsOfClock(std::string_view aClock) {
    constexpr std::uint64_t kPartSize = 60;
    constexpr std::size_t kMaximumParts = 3;
    std::string_view rest = ezTrimmed(aClock);
    const std::size_t point = rest.find('.');
    if (point != std::string_view::npos) {
        const std::string_view fraction = rest.substr(point + 1);
        if (fraction.find_first_not_of("0123456789") != std::string_view::npos) {
            return 0;
        }
        rest = rest.substr(0, point);
    }
    std::uint64_t seconds = 0;
    for (std::size_t part = 0; part < kMaximumParts; ++part) {
        const std::size_t colon = rest.find(':');
        uint32 number = 0;
        if (!ezReadDecimal32(rest.substr(0, colon), &number)) {
            return 0;
        }
        seconds = seconds * kPartSize + number; // 32 bits and twice the factor fit 64
        if (colon == std::string_view::npos) {
            return static_cast<uint32>(std::min<std::uint64_t>(seconds, std::numeric_limits<uint32>::max()));
        }
        rest.remove_prefix(colon + 1);
    }
    return 0;
}
