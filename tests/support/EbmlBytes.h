#pragma once

#include "support/NumberBytes.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>
#include <utility>

/// Matroska and WebM files as bytes (RFC 8794, RFC 9559).
namespace ebml {

/// An id, its marker among its digits.
inline std::string Id(std::uint32_t anId) {
    std::size_t count = 4;
    while (count > 1 && anId >> 8 * (count - 1) == 0) {
        --count;
    }
    return Big(anId, count);
}

/// A size of so many bytes; 0: of as few as hold it. All ones, which mean that it is not known, are left to
/// Unknown.
inline std::string Size(std::uint64_t aValue, unsigned aBytes = 0) {
    unsigned count = aBytes;
    if (count == 0) {
        for (count = 1; count < 8 && aValue >= (std::uint64_t{1} << 7 * count) - 1; ++count) {
        }
    }
    return Big(aValue | std::uint64_t{1} << 7 * count, count);
}

inline std::string Element(std::uint32_t anId, const std::string& aContent) {
    return Id(anId) + Size(aContent.size()) + aContent;
}
/// One that states another size than it has.
inline std::string Stating(std::uint32_t anId, std::uint64_t aSize, const std::string& aContent) {
    return Id(anId) + Size(aSize, 8) + aContent;
}
/// One of unknown size.
inline std::string Unknown(std::uint32_t anId, const std::string& aContent, unsigned aBytes = 8) {
    return Id(anId) + Size((std::uint64_t{1} << 7 * aBytes) - 1, aBytes) + aContent;
}

/// A number without a sign, of as few bytes as hold it, or of so many.
inline std::string Number(std::uint32_t anId, std::uint64_t aValue, std::size_t aBytes = 0) {
    std::size_t count = aBytes;
    if (count == 0) {
        for (count = 1; count < 8 && aValue >> 8 * count != 0; ++count) {
        }
    }
    return Element(anId, Big(aValue, count));
}
inline std::string Float(std::uint32_t anId, double aValue) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &aValue, sizeof bits);
    return Element(anId, Big(bits, 8));
}
inline std::string Float32(std::uint32_t anId, float aValue) {
    std::uint32_t bits = 0;
    std::memcpy(&bits, &aValue, sizeof bits);
    return Element(anId, Big(bits, 4));
}

/// The head of a document.
inline std::string Head(const std::string& aDocType = "matroska") {
    return Element(0x1A45DFA3, Number(0x4286, 1) + Number(0x42F7, 1) + Number(0x42F2, 4) + Number(0x42F3, 8) +
                                   Element(0x4282, aDocType) + Number(0x4287, 4) + Number(0x4285, 2));
}

inline std::string Segment(const std::string& aContent) {
    return Element(0x18538067, aContent);
}
inline std::string Info(const std::string& aContent) {
    return Element(0x1549A966, aContent);
}
inline std::string Tracks(const std::string& aEntries) {
    return Element(0x1654AE6B, aEntries);
}
inline std::string Void(std::size_t aSize) {
    return Element(0xEC, std::string(aSize, '\0'));
}

/// An entry of a SeekHead: the id of an element, and where that stands, from the segment's content on.
inline std::string Seek(std::uint32_t anId, std::uint64_t aPosition) {
    return Element(0x4DBB, Element(0x53AB, Id(anId)) + Number(0x53AC, aPosition, 8));
}
inline std::string SeekHead(const std::string& aEntries) {
    return Element(0x114D9B74, aEntries);
}

/// What a tag is of: a level (0: not stated), and elements that name a track, a chapter ...
inline std::string Targets(unsigned aLevel, const std::string& aUIDs = "") {
    return Element(0x63C0, (aLevel != 0 ? Number(0x68CA, aLevel) : "") + aUIDs);
}
inline std::string OfTrack(std::uint64_t aUID) {
    return Number(0x63C5, aUID);
}

/// A name and a text.
inline std::string SimpleTag(const std::string& aName, const std::string& aText,
                             const std::string& aRest = "") {
    return Element(0x67C8, Element(0x45A3, aName) + Element(0x4487, aText) + aRest);
}
using Texts = std::initializer_list<std::pair<const char*, const char*>>;
inline std::string Tag(const std::string& aTargets, const std::string& aSimpleTags) {
    return Element(0x7373, aTargets + aSimpleTags);
}
/// The same of texts of one level.
inline std::string Tag(unsigned aLevel, Texts aTexts, const std::string& aUIDs = "") {
    std::string tags;
    for (const auto& [name, text] : aTexts) {
        tags += SimpleTag(name, text);
    }
    return Tag(Targets(aLevel, aUIDs), tags);
}
inline std::string Tags(const std::string& aContent) {
    return Element(0x1254C367, aContent);
}

inline std::string AttachedFile(const std::string& aName, const std::string& aType,
                                const std::string& aData) {
    return Element(0x61A7, Element(0x466E, aName) + Element(0x4660, aType) + Number(0x46AE, 1) +
                               Element(0x465C, aData));
}
inline std::string Attachments(const std::string& aFiles) {
    return Element(0x1941A469, aFiles);
}

} // namespace ebml
