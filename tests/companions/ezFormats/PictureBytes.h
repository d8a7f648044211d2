#pragma once

#include "ez/MediaParser.h"

#include "support/AwkwardStream.h"
#include "support/Catchers.h"
#include "support/NumberBytes.h"
#include "support/Record.h"

#include "ezPlatform/media/MediaInfo.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

/// PNG and JPEG files as bytes, and what a parser says to them.
namespace pictures {

// ---- PNG ----

/// A chunk: the length of its content, a type of four letters, the content, and a check sum over the last
/// two.
inline std::string Chunk(const std::string& aType, const std::string& aContent) {
    std::uint32_t sum = 0xFFFFFFFF;
    for (const char byte : aType + aContent) {
        sum ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            sum = (sum & 1U) != 0 ? sum >> 1 ^ 0xEDB88320U : sum >> 1;
        }
    }
    return Big(aContent.size(), 4) + aType + aContent + Big(~sum, 4);
}

/// The content of a header.
struct PNGHeader {
    std::uint32_t mWidth = 320;
    std::uint32_t mHeight = 240;
    unsigned mBitDepth = 8;
    unsigned mColourType = 2; ///< RGB
    unsigned mCompression = 0;
    unsigned mFilter = 0;
    unsigned mInterlacing = 0;

    std::string Bytes() const {
        return Big(mWidth, 4) + Big(mHeight, 4) + Big(mBitDepth, 1) + Big(mColourType, 1) +
               Big(mCompression, 1) + Big(mFilter, 1) + Big(mInterlacing, 1);
    }
};

inline const std::string kPNGSignature = "\x89PNG\r\n\x1A\n";

/// A PNG with some chunks before its picture, which no parser here decodes, and some after.
inline std::string PNG(const PNGHeader& aHeader = {}, const std::string& aBefore = "",
                       const std::string& aAfter = "") {
    return kPNGSignature + Chunk("IHDR", aHeader.Bytes()) + aBefore + Chunk("IDAT", "the picture") + aAfter +
           Chunk("IEND", "");
}

// ---- JPEG ----

inline std::string Segment(unsigned aMarker, const std::string& aContent) {
    return "\xFF" + Big(aMarker, 1) + Big(aContent.size() + 2, 2) + aContent;
}

/// A frame header.
struct JPEGFrameHeader {
    unsigned mMarker = 0xC0; ///< baseline
    unsigned mPrecision = 8;
    unsigned mHeight = 240;
    unsigned mWidth = 320;
    std::vector<unsigned> mFactors = {0x22, 0x11, 0x11}; ///< across and down, of each component: 4:2:0
    std::string mIDs = std::string("\1\2\3\4\5", 5);

    std::string Bytes() const {
        std::string content = Big(mPrecision, 1) + Big(mHeight, 2) + Big(mWidth, 2) + Big(mFactors.size(), 1);
        for (std::size_t i = 0; i < mFactors.size(); ++i) {
            content += mIDs[i] + Big(mFactors[i], 1) + Big(i == 0 ? 0 : 1, 1);
        }
        return Segment(mMarker, content);
    }
};

/// A JPEG with some segments before its frame header; the picture is not one that could be decoded.
inline std::string JPEG(const JPEGFrameHeader& aFrame = {}, const std::string& aBefore = "") {
    return "\xFF\xD8" + aBefore + aFrame.Bytes() + Segment(0xDA, "scan") + "the picture" + "\xFF\xD9";
}

inline std::string JFIF() {
    return Segment(0xE0, std::string("JFIF\0\1\2\0\0\1\0\1\0\0", 14));
}

inline std::string Adobe(unsigned aTransform) {
    return Segment(0xEE, "Adobe" + Big(100, 2) + Big(0, 4) + Big(aTransform, 1));
}

// ---- Exif ----

/// A TIFF block of one directory with some entries, the picture's width in all but the last, which is its
/// orientation; the directory stands after aGap bytes.
inline std::string Tiff(unsigned anOrientation, bool afLittle = false, std::size_t aGap = 0,
                        unsigned aCount = 2) {
    const auto number = afLittle ? Little : Big;
    const auto entry = [&](unsigned aTag, unsigned aValue) { // a short, and one of it
        return number(aTag, 2) + number(3, 2) + number(1, 4) + number(aValue, 2) + number(0, 2);
    };
    std::string tiff = (afLittle ? "II" : "MM") + number(42, 2) + number(8 + aGap, 4) +
                       std::string(aGap, '\0') + number(aCount, 2);
    for (unsigned i = 1; i < aCount; ++i) {
        tiff += entry(0x0100, 7);
    }
    return tiff + entry(0x0112, anOrientation) + number(0, 4);
}

/// An entry of the directory of a photo: a text, which stands elsewhere where it has more than four bytes.
struct TextEntry {
    unsigned mTag;
    std::string mText;
    unsigned mType = 2;
};

/// A TIFF block of a first directory, with the orientation 6, and of the one for photos, with some texts.
inline std::string PhotoTiff(const std::vector<TextEntry>& aTexts, bool afLittle = false) {
    const auto number = afLittle ? Little : Big;
    constexpr std::size_t kSecond = 8 + 2 + 2 * 12 + 4;
    const std::string first = number(2, 2) + number(0x0112, 2) + number(3, 2) + number(1, 4) + number(6, 2) +
                              number(0, 2) + number(0x8769, 2) + number(4, 2) + number(1, 4) +
                              number(kSecond, 4) + number(0, 4);
    std::string entries = number(aTexts.size(), 2);
    std::string texts;
    for (const TextEntry& entry : aTexts) {
        const std::size_t place = kSecond + 2 + aTexts.size() * 12 + 4 + texts.size();
        const bool fLong = entry.mText.size() > 4;
        std::string value = fLong ? number(place, 4) : entry.mText;
        value.resize(4, '\0');
        entries += number(entry.mTag, 2) + number(entry.mType, 2) + number(entry.mText.size(), 4) + value;
        texts += fLong ? entry.mText : "";
    }
    return (afLittle ? "II" : "MM") + number(42, 2) + number(8, 4) + first + entries + number(0, 4) + texts;
}

inline std::string Exif(const std::string& aTiff) {
    return Segment(0xE1, std::string("Exif\0\0", 6) + aTiff);
}

// ---- parsing ----

/// The record of some bytes as text; "null\n" for none.
template <typename Parser>
std::string Parsed(const std::string& aBytes, const Delivery& aDelivery = Delivery(),
                   AwkwardStream::Costs* aCosts = nullptr) {
    AwkwardStream stream(aBytes, aDelivery);
    Parser parser;
    std::string record = DumpRecord(Record(parser.Parse(stream)).get());
    if (aCosts != nullptr) {
        *aCosts = stream.GetCosts();
    }
    return record;
}

/// Why there is no record: the line that is logged, without its end. The record, where there is one.
template <typename Parser>
std::string Refusal(const std::string& aBytes, const Delivery& aDelivery = Delivery()) {
    const LogCatcher log;
    std::string record = Parsed<Parser>(aBytes, aDelivery);
    if (record != "null\n") {
        return record;
    }
    const std::string text = log.Texts().empty() ? "" : log.Texts().back();
    return text.substr(0, text.find('\n'));
}

/// The value of a key in a record's text, quotes and all; "" when it is not there.
inline std::string ValueOf(const std::string& aRecord, const std::string& aKey) {
    const std::size_t at = ("\n" + aRecord).find("\n" + aKey + "=");
    if (at == std::string::npos) {
        return "";
    }
    const std::size_t start = at + aKey.size() + 1;
    return aRecord.substr(start, aRecord.find('\n', start) - start);
}

/// True when a record says all that every record must.
inline bool IsComplete(const std::string& aRecord) {
    return !ValueOf(aRecord, "mt").empty() && !ValueOf(aRecord, "cn").empty() &&
           !ValueOf(aRecord, "dl").empty();
}

} // namespace pictures
