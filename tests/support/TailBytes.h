#pragma once

#include "support/NumberBytes.h"

#include <cstddef>
#include <cstdint>
#include <string>

// Tags that stand after the sound.

inline std::string Padded(std::string aText, std::size_t aSize, char aFiller = '\0') {
    aText.resize(aSize, aFiller);
    return aText;
}
/// Title, artist, album, year, comment, genre.
inline std::string ID3v1(const std::string& aTitle, const std::string& anArtist, const std::string& anAlbum,
                         unsigned aGenre, char aFiller = '\0') {
    return "TAG" + Padded(aTitle, 30, aFiller) + Padded(anArtist, 30, aFiller) +
           Padded(anAlbum, 30, aFiller) + "2001" + Padded("", 30) + Big(aGenre, 1);
}
inline std::string APEItem(const std::string& aKey, const std::string& aValue, unsigned aFlags = 0) {
    return Little(aValue.size()) + Little(aFlags) + aKey + std::string(1, '\0') + aValue;
}
inline std::string APEEnd(unsigned aVersion, std::size_t aItemsSize, std::uint32_t aFlags) {
    return "APETAGEX" + Little(aVersion) + Little(aItemsSize + 32) + Little(1) + Little(aFlags) +
           std::string(8, '\0');
}
/// Version 1 has a footer alone.
inline std::string APE1(const std::string& aItems) {
    return aItems + APEEnd(1000, aItems.size(), 0);
}
inline std::string APE2(const std::string& aItems) {
    return APEEnd(2000, aItems.size(), 0xA0000000) + aItems + APEEnd(2000, aItems.size(), 0x80000000);
}
