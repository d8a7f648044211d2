#pragma once

#include "support/NumberBytes.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

/// ASF files as bytes (Advanced Systems Format 1.2).
namespace asf {

/// Bytes written as hexadecimal digits: a GUID as it is stored.
inline std::string Hex(const std::string& aDigits) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < aDigits.size(); i += 2) {
        bytes.push_back(static_cast<char>(std::stoi(aDigits.substr(i, 2), nullptr, 16)));
    }
    return bytes;
}

inline const std::string kHeader = Hex("3026B2758E66CF11A6D900AA0062CE6C");
inline const std::string kData = Hex("3626B2758E66CF11A6D900AA0062CE6C");
inline const std::string kFileProperties = Hex("A1DCAB8C47A9CF118EE400C00C205365");
inline const std::string kStreamProperties = Hex("9107DCB7B7A9CF118EE600C00C205365");
inline const std::string kHeaderExtension = Hex("B503BF5F2EA9CF118EE300C00C205365");
inline const std::string kContentDescription = Hex("3326B2758E66CF11A6D900AA0062CE6C");
inline const std::string kExtendedContent = Hex("40A4D0D207E3D21197F000A0C95EA850");
inline const std::string kStreamBitRates = Hex("CE75F87B8D46D1118D82006097C9A2B2");
inline const std::string kExtendedStream = Hex("CBA5E61472C632438399A96952065B5A");
inline const std::string kMetadata = Hex("EACBF8C5AF5B77488467AA8C44FA4CCA");
inline const std::string kMetadataLibrary = Hex("941C23449894D149A1411D134E457054");
inline const std::string kLanguageList = Hex("A946437CE0EFFC4BB229393EDE415C85");
inline const std::string kBitRateExclusion = Hex("DC29E2D6DA35D111903400A0C90349BE");
inline const std::string kAdvancedExclusion = Hex("CF4986A0754770468A166E35357566CD");
inline const std::string kContentEncryption = Hex("FBB3112223BDD211B4B700A0C955FC6E");
inline const std::string kExtendedEncryption = Hex("14E68A292226174CB935DAE07EE9289C");
inline const std::string kAdvancedEncryption = Hex("338505438169E6499B74AD12CB86D58C");
inline const std::string kDigitalSignature = Hex("FCB3112223BDD211B4B700A0C955FC6E");
inline const std::string kPadding = Hex("74D40618DFCA0945A4BA9AABCB96AAE8");
inline const std::string kIndex = Hex("90080033B1E5CF1189F400A0C90349CB");

inline const std::string kAudioMedia = Hex("409E69F84D5BCF11A8FD00805F5C442B");
inline const std::string kVideoMedia = Hex("C0EF19BC4D5BCF11A8FD00805F5C442B");
inline const std::string kCommandMedia = Hex("C0CFDA59E659D011A3AC00A0C90348F6");
inline const std::string kByLanguage = Hex("002AE2D6DA35D111903400A0C90349BE");
inline const std::string kByBitRate = Hex("012AE2D6DA35D111903400A0C90349BE");
inline const std::string kBinaryMedia = Hex("E265FB3AEF47F240AC2C70A90D71D343");

inline std::string Object(const std::string& aKind, const std::string& aContent) {
    return aKind + Little(24 + aContent.size(), 8) + aContent;
}

inline std::string Header(const std::string& anObjects, unsigned aCount = 3) {
    return Object(kHeader, Little(aCount) + "\1\2" + anObjects);
}

/// Letters of ASCII in UTF-16, with the zeros at their end.
inline std::string Utf16(const std::string& aText, bool afEnd = true) {
    std::string units;
    for (const char letter : aText) {
        units += letter + std::string(1, '\0');
    }
    return units + std::string(afEnd ? 2 : 0, '\0');
}

/// What File Properties say.
struct File {
    std::uint64_t mPackets = 0;
    std::uint64_t mPlay = 0;    ///< 100 ns
    std::uint64_t mPreroll = 0; ///< milliseconds
    unsigned mFlags = 2;
    std::uint32_t mPacketSize = 0;
    std::uint32_t mMaxBitRate = 0;
    std::uint32_t mMaxPacketSize = 0; ///< 0: the same
    std::uint64_t mSend = 0;          ///< 100 ns

    std::string Bytes() const {
        return Object(kFileProperties, std::string(16, 'i') + Little(0, 8) + Little(0, 8) +
                                           Little(mPackets, 8) + Little(mPlay, 8) + Little(mSend, 8) +
                                           Little(mPreroll, 8) + Little(mFlags) + Little(mPacketSize) +
                                           Little(mMaxPacketSize != 0 ? mMaxPacketSize : mPacketSize) +
                                           Little(mMaxBitRate));
    }
};

/// A WAVEFORMATEX.
struct Wave {
    unsigned mTag = 0x161;
    unsigned mChannels = 2;
    unsigned mRate = 44100;
    unsigned mAverage = 16000; ///< bytes a second
    unsigned mBlock = 743;
    unsigned mBits = 16;
    std::string mRest; ///< the extension

    std::string Bytes() const {
        return Little(mTag, 2) + Little(mChannels, 2) + Little(mRate) + Little(mAverage) + Little(mBlock, 2) +
               Little(mBits, 2) + Little(mRest.size(), 2) + mRest;
    }
};

inline std::string Stream(unsigned aNumber, const std::string& aMedia, const std::string& aFormat,
                          unsigned aFlags = 0) {
    return Object(kStreamProperties, aMedia + std::string(16, 'e') + Little(0, 8) + Little(aFormat.size()) +
                                         Little(3) + Little(aNumber | aFlags, 2) + Little(0) + aFormat +
                                         "abc");
}
inline std::string Sound(const Wave& aFormat, unsigned aNumber = 1, unsigned aFlags = 0) {
    return Stream(aNumber, kAudioMedia, aFormat.Bytes(), aFlags);
}

/// A BITMAPINFOHEADER, and what sets a decoder up.
inline std::string Bitmap(const std::string& aCodec, unsigned aWidth, unsigned aHeight,
                          const std::string& aData = "") {
    return Little(40 + aData.size()) + Little(aWidth) + Little(aHeight) + Little(1, 2) + Little(24, 2) +
           aCodec + std::string(20, '\0') + aData;
}
/// Sizes, and that.
inline std::string VideoFormat(const std::string& aCodec, unsigned aWidth, unsigned aHeight,
                               const std::string& aData = "") {
    return Little(aWidth) + Little(aHeight) + "\2" + Little(40 + aData.size(), 2) +
           Bitmap(aCodec, aWidth, aHeight, aData);
}
inline std::string Video(const std::string& aCodec = "WMV2", unsigned aNumber = 2,
                         const std::string& aData = "", unsigned aFlags = 0) {
    return Stream(aNumber, kVideoMedia, VideoFormat(aCodec, 320, 240, aData), aFlags);
}

/// @name Of a stream in another file's form: what it holds, how its format is laid, and codecs
/// @{
inline const std::string kBinarySound = Hex("6175647300001000800000AA00389B71");
inline const std::string kBinaryVideo = Hex("7669647300001000800000AA00389B71");
inline const std::string kFormWave = Hex("819F580556C3CE11BF0100AA0055595A");
inline const std::string kFormVideo = Hex("809F580556C3CE11BF0100AA0055595A");
inline const std::string kFormVideo2 = Hex("A0762AF70AEBD011ACE40000C0CC16BA");
inline const std::string kFormMPEG2Video = Hex("E3806DE046DBCF11B4D100805F6CBBEA");
inline const std::string kSubtypeMPEG2Video = Hex("26806DE046DBCF11B4D100805F6CBBEA");
inline const std::string kSubtypeMPEG2Audio = Hex("2B806DE046DBCF11B4D100805F6CBBEA");
inline const std::string kSubtypeAC3 = Hex("2C806DE046DBCF11B4D100805F6CBBEA");
/// @}

inline std::string Binary(const std::string& aMajor, const std::string& aForm, const std::string& aFormat,
                          unsigned aNumber, const std::string& aSubtype = std::string(16, 's')) {
    return Stream(aNumber, kBinaryMedia,
                  aMajor + aSubtype + Little(0) + Little(0) + Little(0) + aForm + Little(aFormat.size()) +
                      aFormat);
}

inline std::string HeaderExtension(const std::string& anObjects) {
    return Object(kHeaderExtension,
                  std::string(16, 'r') + Little(6, 2) + Little(anObjects.size()) + anObjects);
}

inline std::string ExtendedStream(unsigned aNumber, std::uint32_t aBitRate, const std::string& anObjects = "",
                                  const std::vector<std::string>& aNames = {},
                                  const std::vector<std::string>& anExtensions = {},
                                  std::uint64_t aFrameTime = 3689348814740704323U, unsigned aLanguage = 0) {
    std::string lists;
    for (const std::string& name : aNames) {
        lists += Little(0, 2) + Little(name.size(), 2) + name;
    }
    for (const std::string& extension : anExtensions) {
        lists += std::string(16, 'x') + Little(4, 2) + Little(extension.size()) + extension;
    }
    return Object(kExtendedStream, Little(0, 8) + Little(0, 8) + Little(aBitRate) + std::string(20, 'b') +
                                       Little(0) + Little(0) + Little(aNumber, 2) + Little(aLanguage, 2) +
                                       Little(aFrameTime, 8) + Little(aNames.size(), 2) +
                                       Little(anExtensions.size(), 2) + lists + anObjects);
}

inline std::string BitRates(const std::vector<std::pair<unsigned, std::uint32_t>>& aRates) {
    std::string lines = Little(aRates.size(), 2);
    for (const auto& [number, rate] : aRates) {
        lines += Little(number, 2) + Little(rate);
    }
    return Object(kStreamBitRates, lines);
}

inline std::string Languages(const std::vector<std::string>& aNames) {
    std::string lines = Little(aNames.size(), 2);
    for (const std::string& name : aNames) {
        lines += Little(Utf16(name).size(), 1) + Utf16(name);
    }
    return Object(kLanguageList, lines);
}

/// Streams of which only one is played.
inline std::string Exclusion(const std::string& aKind, const std::string& aReason,
                             const std::vector<unsigned>& aNumbers) {
    std::string lines = aReason + Little(aNumbers.size(), 2);
    for (const unsigned number : aNumbers) {
        lines += Little(number, 2);
    }
    return Object(aKind, lines);
}

/// Texts in UTF-16.
inline std::string Description(const std::string& aTitle, const std::string& anAuthor) {
    return Object(kContentDescription, Little(aTitle.size(), 2) + Little(anAuthor.size(), 2) + Little(0, 2) +
                                           Little(0, 2) + Little(0, 2) + aTitle + anAuthor);
}

struct Attribute {
    std::string mName; ///< letters of ASCII
    std::string mValue;
    unsigned mType = 0;
    unsigned mStream = 0;

    std::string Content() const {
        const std::string name = Utf16(mName);
        return Little(name.size(), 2) + name + Little(mType, 2) + Little(mValue.size(), 2) + mValue;
    }
    std::string Library() const {
        const std::string name = Utf16(mName);
        return Little(0, 2) + Little(mStream, 2) + Little(name.size(), 2) + Little(mType, 2) +
               Little(mValue.size()) + name + mValue;
    }
};
/// One with a text of ASCII.
inline Attribute Text(const std::string& aName, const std::string& aText) {
    return {aName, Utf16(aText)};
}

inline std::string ExtendedContent(const std::vector<Attribute>& aList) {
    std::string all = Little(aList.size(), 2);
    for (const Attribute& attribute : aList) {
        all += attribute.Content();
    }
    return Object(kExtendedContent, all);
}
inline std::string Library(const std::vector<Attribute>& aList, const std::string& aKind = kMetadataLibrary) {
    std::string all = Little(aList.size(), 2);
    for (const Attribute& attribute : aList) {
        all += attribute.Library();
    }
    return Object(aKind, all);
}

/// The value of a picture.
inline std::string Picture(unsigned aType, const std::string& aPicture,
                           const std::string& aMimeType = "image/jpeg",
                           const std::string& aDescription = "") {
    return Little(aType, 1) + Little(aPicture.size()) + Utf16(aMimeType) + Utf16(aDescription) + aPicture;
}
inline Attribute PictureAttribute(unsigned aType, const std::string& aPicture) {
    return {"WM/Picture", Picture(aType, aPicture), 1};
}

/// The packets, of the size and number that the object states.
inline std::string Data(const std::string& aPackets, std::uint64_t aCount) {
    return Object(kData, std::string(16, 'i') + Little(aCount, 8) + "\1\1" + aPackets);
}

/// A payload that fills a packet of that size: of a stream, presented then.
inline std::string Packet(std::size_t aSize, unsigned aStream, std::uint32_t aTime) {
    std::string packet = "\x82" + std::string(2, '\0') + "\x08\x5D"; // no sizes but that of the padding
    const std::string payload =
        Little(aStream | 0x80U, 1) + Little(0, 1) + Little(0) + "\x08" + Little(50) + Little(aTime);
    packet += Little(0, 1) + Little(aTime) + Little(100, 2) + payload;
    packet.resize(std::max(aSize, packet.size()), '\x11');
    return packet;
}

/// A piece of a media object.
struct Piece {
    unsigned mStream = 2;
    unsigned mObject = 0;
    std::uint32_t mOffset = 0;
    std::string mBytes;
};
/// A packet of several payloads.
inline std::string PacketOf(std::size_t aSize, const std::vector<Piece>& aPieces) {
    std::string packet = "\x01\x5D" + Little(0) + Little(0, 2) + Little(0x80 | aPieces.size(), 1);
    for (const Piece& piece : aPieces) {
        packet += Little(piece.mStream | 0x80U, 1) + Little(piece.mObject, 1) + Little(piece.mOffset) +
                  "\x08" + Little(50) + Little(3000) + Little(piece.mBytes.size(), 2) + piece.mBytes;
    }
    packet.resize(std::max(aSize, packet.size()), '\0');
    return packet;
}

} // namespace asf
