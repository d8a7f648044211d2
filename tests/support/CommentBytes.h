#pragma once

#include "support/NumberBytes.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// Vorbis comments, with pictures in them, and what holds them: blocks of FLAC and pages of Ogg.

/// The block of a picture, without its header.
inline std::string PictureOfFlac(unsigned aType, const std::string& aPicture,
                                 const std::string& aMimeType = "image/jpeg",
                                 const std::string& aDescription = "text") {
    return Big(aType, 4) + Big(aMimeType.size(), 4) + aMimeType + Big(aDescription.size(), 4) + aDescription +
           Big(500, 4) + Big(500, 4) + Big(24, 4) + Big(0, 4) + Big(aPicture.size(), 4) + aPicture;
}
/// A block of metadata.
inline std::string FlacBlock(unsigned aType, const std::string& aBody, bool afLast = false) {
    return Big(aType + (afLast ? 0x80U : 0U), 1) + Big(aBody.size(), 3) + aBody;
}
inline std::string Base64(const std::string& aBytes) {
    static const char* const kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t i = 0; i < aBytes.size(); i += 3) {
        const std::string group = aBytes.substr(i, 3);
        std::uint32_t bits = 0;
        for (std::size_t j = 0; j < 3; ++j) {
            bits = bits << 8 | (j < group.size() ? static_cast<unsigned char>(group[j]) : 0U);
        }
        for (std::size_t j = 0; j < 4; ++j) {
            text.push_back(j <= group.size() ? kAlphabet[bits >> (18 - 6 * j) & 63] : '=');
        }
    }
    return text;
}

/// One page that holds a part of a packet, and with afEnds its end.
inline std::string PageOfOgg(unsigned aSerial, unsigned aFlags, const std::string& aPart, bool afEnds,
                             std::uint64_t aGranule = 0) {
    std::string segments(aPart.size() / 255, '\xFF');
    if (afEnds) {
        segments += Big(aPart.size() % 255, 1);
    }
    return std::string("OggS\0", 5) + Big(aFlags, 1) + Little(aGranule, 8) + Little(aSerial) + Little(0) +
           Little(0) + Big(segments.size(), 1) + segments + aPart;
}
/// A packet on pages that hold aPageSize bytes each, a multiple of 255.
inline std::vector<std::string> PagesOfOgg(unsigned aSerial, const std::string& aPacket,
                                           std::size_t aPageSize) {
    std::vector<std::string> pages;
    std::size_t start = 0;
    for (; aPacket.size() - start >= aPageSize; start += aPageSize) {
        pages.push_back(PageOfOgg(aSerial, start == 0 ? 0 : 1, aPacket.substr(start, aPageSize), false));
    }
    pages.push_back(PageOfOgg(aSerial, start == 0 ? 0 : 1, aPacket.substr(start), true));
    return pages;
}
inline std::string Comments(const std::vector<std::string>& aComments) {
    std::string text = Little(6) + "writer" + Little(aComments.size());
    for (const std::string& comment : aComments) {
        text += Little(comment.size()) + comment;
    }
    return text;
}
inline std::string PictureComment(const std::string& aBlock) {
    return "metadata_block_PICTURE=" + Base64(aBlock);
}
