#pragma once

#include "companions/ezFormats/PictureBytes.h"
#include "companions/ezFormats/SparseStream.h"

#include "ezPlatform/media/MediaInfo.h"

#include "support/Id3Bytes.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// Files of chunks as bytes, RIFF and its kin, and what a parser says to them.
namespace chunks {

using pictures::ValueOf;

// ---- RIFF ----

/// A chunk with the stuffing that an odd one needs.
inline std::string Chunk(const std::string& aName, const std::string& aContent) {
    return aName + Little(aContent.size()) + aContent + std::string(aContent.size() % 2, '\0');
}

/// The same that states another size than it has.
inline std::string Lying(const std::string& aName, std::uint64_t aSize, const std::string& aContent) {
    return aName + Little(aSize) + aContent;
}

inline std::string Riff(const std::string& aChunks, const std::string& aKind = "RIFF",
                        const std::string& aForm = "WAVE") {
    return aKind + Little(aChunks.size() + 4) + aForm + aChunks;
}

/// What a "fmt " chunk holds.
struct Fmt {
    unsigned mTag = 1;
    unsigned mChannels = 1;
    unsigned mRate = 8000;
    unsigned mAverage = 16000;
    unsigned mBlock = 2;
    unsigned mBits = 16;
    std::string mRest; ///< the size of the extension, and that

    std::string Bytes(std::string (*aNumber)(std::uint64_t, std::size_t) = Little) const {
        return aNumber(mTag, 2) + aNumber(mChannels, 2) + aNumber(mRate, 4) + aNumber(mAverage, 4) +
               aNumber(mBlock, 2) + aNumber(mBits, 2) + mRest;
    }
};

/// The extension that has the tag in a GUID.
inline std::string Extension(unsigned aValidBits, unsigned aTag, std::uint32_t aMask = 3) {
    return Little(22, 2) + Little(aValidBits, 2) + Little(aMask) + Little(aTag, 2) +
           std::string("\0\0\0\0\x10\0\x80\0\0\xAA\0\x38\x9B\x71", 14);
}

/// A list of texts, each a name and a text.
inline std::string Info(const std::vector<std::pair<std::string, std::string>>& aTexts) {
    std::string items = "INFO";
    for (const auto& [name, text] : aTexts) {
        items += Chunk(name, text + std::string(1, '\0'));
    }
    return Chunk("LIST", items);
}

inline std::string Sound(std::size_t aSize) {
    return std::string(aSize, '\x11');
}

// ---- IFF ----

inline std::string BigChunk(const std::string& aName, const std::string& aContent) {
    return aName + Big(aContent.size(), 4) + aContent + std::string(aContent.size() % 2, '\0');
}

// ---- tags ----

inline std::string Apic(unsigned aType, const std::string& aPicture) {
    return std::string(1, '\0') + "image/jpeg" + std::string(1, '\0') + Big(aType, 1) + std::string(1, '\0') +
           aPicture;
}

/// A tag with a title, an artist and a front cover of 20 bytes.
inline std::string TagWithCover() {
    return ID3(3, 0,
               Frame23("TIT2", std::string(1, '\0') + "Tagged") +
                   Frame23("TPE1", std::string(1, '\0') + "Tagger") +
                   Frame23("APIC", Apic(3, "\xFF\xD8\xFF\xE0" + std::string(16, 'j'))));
}

// ---- what is said to them ----

/// Some values of a record, separated by "|"; why there is none.
template <typename Parser>
std::string Values(const std::string& aBytes, const std::vector<const char*>& aKeys,
                   const Delivery& aDelivery = Delivery()) {
    const std::string record = pictures::Parsed<Parser>(aBytes, aDelivery);
    if (record == "null\n") {
        return pictures::Refusal<Parser>(aBytes, aDelivery);
    }
    std::string values;
    for (const char* const key : aKeys) {
        values += ValueOf(record, key) + "|";
    }
    return values.substr(0, values.size() - 1);
}

/// What a parse of a file with parts at some places costs, and one value of the record.
template <typename Parser>
std::string SparseValue(SparseStream& aStream, const char* aKey) {
    Parser parser;
    return ValueOf(DumpRecord(Record(parser.Parse(aStream)).get()), aKey);
}

} // namespace chunks
