#pragma once

#include "ezThumbnails/CoverThumbnailProvider.h"
#include "ezThumbnails/detail/CoverFinders.h"

#include "support/Id3Bytes.h"
#include "support/NumberBytes.h"
#include "support/ScriptedThumbnails.h"
#include "support/Str.h"
#include "support/TemporaryFolder.h"

#include "ezPlatform/base/Memory.h"
#include "ezPlatform/streams/MemoryStream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

// Files with covers, byte by byte.

using namespace std::string_literals;

/// A picture as far as anybody looks: the first bytes of a JPEG or PNG, and zeros after 0xFF as JPEG has
/// them.
inline std::string Jpeg(const std::string& aName) {
    return "\xFF\xD8\xFF\xE0"s + aName + "\xFF\0\xFF\xFF\0\xFF\xD9"s;
}
inline std::string Png(const std::string& aName) {
    return "\x89PNG\r\n\x1A\n"s + aName;
}

// --- ID3v2 ---

/// Latin-1, MIME type, type, description, picture.
inline std::string Apic(unsigned aType, const std::string& aPicture,
                        const std::string& aMimeType = "image/jpeg") {
    return "\0"s + aMimeType + "\0"s + Big(aType, 1) + "text\0"s + aPicture;
}

// --- FLAC ---

inline std::string PictureOfFlac(unsigned aType, const std::string& aPicture,
                                 const std::string& aMimeType = "image/jpeg",
                                 const std::string& aDescription = "text") {
    return Big(aType, 4) + Big(aMimeType.size(), 4) + aMimeType + Big(aDescription.size(), 4) + aDescription +
           Big(500, 4) + Big(500, 4) + Big(24, 4) + Big(0, 4) + Big(aPicture.size(), 4) + aPicture;
}
inline std::string FlacBlock(unsigned aType, const std::string& aBody, bool afLast = false) {
    return Big(aType + (afLast ? 0x80U : 0U), 1) + Big(aBody.size(), 3) + aBody;
}
/// A stream with two blocks of other types around those given.
inline std::string Flac(const std::string& aBlocks) {
    return "fLaC" + FlacBlock(0, std::string(34, 's')) + aBlocks + FlacBlock(1, std::string(9, '\0'), true) +
           "frames";
}

// --- MP4 ---

inline std::string Box(const std::string& aType, const std::string& aContent) {
    return Big(8 + aContent.size(), 4) + aType + aContent;
}
/// The same with a size of 64 bits.
inline std::string LongBox(const std::string& aType, const std::string& aContent) {
    return Big(1, 4) + aType + Big(16 + aContent.size(), 8) + aContent;
}
/// A picture: 13 is JPEG, 14 PNG.
inline std::string DataBox(unsigned aType, const std::string& aPicture) {
    return Box("data", Big(aType, 4) + Big(0, 4) + aPicture);
}
inline std::string Ftyp() {
    return Box("ftyp", "M4A " + Big(0, 4));
}
inline std::string Moov(const std::string& aCovr) {
    const std::string handler = Box("hdlr", std::string(25, '\0'));
    const std::string list = Box("ilst", Box("\251nam", DataBox(1, "title")) + Box("covr", aCovr));
    return Box("moov", Box("mvhd", std::string(20, 'h')) +
                           Box("udta", Box("meta", Big(0, 4) + handler + Box("free", "") + list)));
}

// --- Ogg ---

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
inline std::string OggPage(unsigned aSerial, unsigned aFlags, const std::string& aPart, bool afEnds) {
    std::string segments(aPart.size() / 255, '\xFF');
    if (afEnds) {
        segments += Big(aPart.size() % 255, 1);
    }
    return "OggS\0"s + Big(aFlags, 1) + std::string(8, '\0') + Little(aSerial) + Little(0) + Little(0) +
           Big(segments.size(), 1) + segments + aPart;
}
/// A packet on pages that hold aPageSize bytes each, a multiple of 255.
inline std::vector<std::string> OggPages(unsigned aSerial, const std::string& aPacket,
                                         std::size_t aPageSize) {
    std::vector<std::string> pages;
    std::size_t start = 0;
    for (; aPacket.size() - start >= aPageSize; start += aPageSize) {
        pages.push_back(OggPage(aSerial, start == 0 ? 0 : 1, aPacket.substr(start, aPageSize), false));
    }
    pages.push_back(OggPage(aSerial, start == 0 ? 0 : 1, aPacket.substr(start), true));
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
inline std::string VorbisHead(unsigned aSerial) {
    return OggPage(aSerial, 2, "\x01vorbis" + std::string(23, 'i'), true);
}
/// Vorbis with comments, on pages of aPageSize bytes.
inline std::string Vorbis(const std::vector<std::string>& aComments, std::size_t aPageSize = 255 * 255) {
    std::string file = VorbisHead(7);
    for (const std::string& page : OggPages(7, "\x03vorbis" + Comments(aComments) + "\x01", aPageSize)) {
        file += page;
    }
    return file + OggPage(7, 0, "\x05vorbis", true);
}

// --- looking ---

inline ezStreamOwner MemoryFile(const std::string& aBytes) {
    void* const block = ezMalloc(aBytes.size() + 1);
    std::memcpy(block, aBytes.data(), aBytes.size());
    return ezStreamOwner(new ezMemoryStream(block, aBytes.size(), ""));
}

using CoverFinder = Cover (*)(ezStream&);

inline Cover FindCover(CoverFinder aFinder, const std::string& aBytes) {
    const ezStreamOwner stream = MemoryFile(aBytes);
    return aFinder(*stream);
}

/// Lets the candidates be seen.
class SeenCoverProvider : public CoverThumbnailProvider {
public:
    using CoverThumbnailProvider::CoverThumbnailProvider;
    const ezThumbnailSource* Source() const { return mTrySource; }
};

/// All candidates that the provider finds in a file of these bytes, each as its MIME type, a blank, and what
/// its stream gives.
inline std::vector<std::string> CoversOf(const std::string& aBytes) {
    const TemporaryFolder folder;
    ThumbnailTrace trace;
    ScriptedGenerator generator(trace);
    SeenCoverProvider provider(&generator);
    ThumbnailInfo info;
    info.mFilePath = ezPathName::MakeFilePath(Bytes(folder.Write("media", aBytes)));
    std::vector<std::string> covers;
    for (provider.GetFirstPath(&info); provider.SourceToTry(); provider.GetNextPath(&info)) {
        covers.push_back(Str(provider.Source()->GetMimeType()) + " " +
                         ReadAll(provider.Source()->GetStream()));
    }
    return covers;
}

using Covers = std::vector<std::string>;
