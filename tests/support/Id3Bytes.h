#pragma once

#include "support/NumberBytes.h"

#include <cstdint>
#include <string>

// Tags of ID3v2, byte by byte.

/// Four bytes of seven bits.
inline std::string Syncsafe(std::uint64_t aValue) {
    return Big(
        (aValue & 0x7F) | (aValue & 0x3F80) << 1 | (aValue & 0x1FC000) << 2 | (aValue & 0xFE00000) << 3, 4);
}

/// With a zero after every 0xFF, as a careful writer does it everywhere.
inline std::string Unsynchronised(const std::string& aBytes) {
    std::string bytes;
    for (const char byte : aBytes) {
        bytes.push_back(byte);
        if (byte == '\xFF') {
            bytes.push_back('\0');
        }
    }
    return bytes;
}

/// A tag of version 2.<aVersion>.0.
inline std::string ID3(unsigned aVersion, unsigned aFlags, const std::string& aContent) {
    return "ID3" + Big(aVersion, 1) + Big(0, 1) + Big(aFlags, 1) + Syncsafe(aContent.size()) + aContent;
}

/// @name A frame of a tag of version 2.2, 2.3, 2.4
/// @{
inline std::string Frame22(const std::string& anID, const std::string& aBody) {
    return anID + Big(aBody.size(), 3) + aBody;
}
inline std::string Frame23(const std::string& anID, const std::string& aBody, unsigned aFlags = 0) {
    return anID + Big(aBody.size(), 4) + Big(aFlags, 2) + aBody;
}
inline std::string Frame24(const std::string& anID, const std::string& aBody, unsigned aFlags = 0) {
    return anID + Syncsafe(aBody.size()) + Big(aFlags, 2) + aBody;
}
/// @}
