#pragma once

#include <cstddef>
#include <string_view>

/// Texts regardless of case. Case is that of A to Z, whatever the locale; every other byte is compared as it
/// is. Names of protocols and formats are compared so: MIME types, extensions, schemes, directives.

/// The lower-case form of one byte.
constexpr char ezLower(char aCharacter) {
    return aCharacter >= 'A' && aCharacter <= 'Z' ? static_cast<char>(aCharacter - 'A' + 'a') : aCharacter;
}

/// True when both texts are of the same length and differ in case alone.
constexpr bool ezIsEqualNoCase(std::string_view aLeft, std::string_view aRight) {
    if (aLeft.size() != aRight.size()) {
        return false;
    }
    // From the end on: texts that are compared often begin alike, as MIME types and the files of a series do.
    for (std::size_t i = aLeft.size(); i > 0; --i) {
        const char left = aLeft[i - 1];
        const char right = aRight[i - 1];
        if (left != right && ezLower(left) != ezLower(right)) { // most are equal as they stand
            return false;
        }
    }
    return true;
}

/// True when aText begins with aStart, or with what differs from it in case alone; every text begins with "".
constexpr bool ezStartsWithNoCase(std::string_view aText, std::string_view aStart) {
    return ezIsEqualNoCase(aText.substr(0, aStart.size()), aStart);
}

/// Below, equal to or above 0 as aLeft sorts before, with or after aRight, byte by byte as unsigned numbers
/// with A to Z taken as a to z.
constexpr int ezCompareNoCase(std::string_view aLeft, std::string_view aRight) {
    for (std::size_t i = 0; i < aLeft.size() && i < aRight.size(); ++i) {
        const auto left = static_cast<unsigned char>(ezLower(aLeft[i]));
        const auto right = static_cast<unsigned char>(ezLower(aRight[i]));
        if (left != right) {
            return left < right ? -1 : 1;
        }
    }
    if (aLeft.size() == aRight.size()) {
        return 0;
    }
    return aLeft.size() < aRight.size() ? -1 : 1;
}
