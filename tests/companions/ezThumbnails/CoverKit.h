#pragma once

#include "ezThumbnails/CoverThumbnailProvider.h"
#include "ezThumbnails/detail/CoverFinders.h"

#include "support/CommentBytes.h"
#include "support/Id3Bytes.h"
#include "support/NumberBytes.h"
#include "support/ScriptedThumbnails.h"
#include "support/Str.h"
#include "support/TailBytes.h"
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

// --- WAV and AIFF ---

/// A chunk with its stuffing, unless it is the last.
inline std::string WavChunk(const std::string& aName, const std::string& aContent) {
    return aName + Little(aContent.size()) + aContent +
           std::string(aName == "data" ? aContent.size() % 2 : 0, '\0');
}
inline std::string Wav(const std::string& aChunks) {
    return "RIFF" + Little(aChunks.size() + 4) + "WAVE" + aChunks;
}
inline std::string AiffChunk(const std::string& aName, const std::string& aContent) {
    return aName + Big(aContent.size(), 4) + aContent +
           std::string(aName == "SSND" ? aContent.size() % 2 : 0, '\0');
}
inline std::string Aiff(const std::string& aChunks) {
    return "FORM" + Big(aChunks.size() + 4, 4) + "AIFF" + aChunks;
}

// --- APE ---

/// A picture after the name of its file.
inline std::string ApePicture(const std::string& aPicture, const std::string& aKey = "Cover Art (Front)",
                              unsigned aFlags = 2) {
    return APEItem(aKey, "cover.jpg\0"s + aPicture, aFlags);
}

// --- DSD ---

/// A head, and a tag after some sound.
inline std::string Dsf(const std::string& aTag, std::uint64_t aPlace = 97) {
    return "DSD " + Little(28, 8) + Little(97 + aTag.size(), 8) + Little(aPlace, 8) + "fmt " + Little(52, 8) +
           std::string(40, 'f') + "data" + Little(17, 8) + "sound" + aTag;
}
inline std::string DsdiffChunk(const std::string& aName, const std::string& aContent) {
    return aName + Big(aContent.size(), 8) + aContent +
           std::string(aName == "DSD " ? aContent.size() % 2 : 0, '\0');
}
inline std::string Dsdiff(const std::string& aChunks) {
    return "FRM8" + Big(aChunks.size() + 4, 8) + "DSD " + aChunks;
}

// --- Ogg ---

inline std::string VorbisHead(unsigned aSerial) {
    return PageOfOgg(aSerial, 2, "\x01vorbis" + std::string(23, 'i'), true);
}
/// Vorbis with comments, on pages of aPageSize bytes.
inline std::string Vorbis(const std::vector<std::string>& aComments, std::size_t aPageSize = 255 * 255) {
    std::string file = VorbisHead(7);
    for (const std::string& page : PagesOfOgg(7, "\x03vorbis" + Comments(aComments) + "\x01", aPageSize)) {
        file += page;
    }
    return file + PageOfOgg(7, 0, "\x05vorbis", true);
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
