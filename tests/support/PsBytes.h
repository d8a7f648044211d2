#pragma once

#include "support/NumberBytes.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

/// MPEG program streams, and the system streams of MPEG-1, as bytes.
namespace ps {

constexpr std::uint64_t kSecond = 90000; ///< ticks of the clock

/// A stamp of 33 bits with its marker bits, after four bits of its own.
inline std::string Stamp(unsigned aMark, std::uint64_t aTicks) {
    return Big(aMark << 4 | (aTicks >> 30 & 7U) << 1 | 1U, 1) + Big((aTicks >> 15 & 0x7FFFU) << 1 | 1U, 2) +
           Big((aTicks & 0x7FFFU) << 1 | 1U, 2);
}

// ---- packs ----

inline std::string Code(unsigned aCode) {
    return Big(0x100 | aCode, 4);
}

/// A pack header of a program stream.
inline std::string Pack(std::uint64_t aClock, unsigned aStuffing = 0, std::uint32_t aMuxRate = 25200) {
    const std::uint64_t clock = std::uint64_t{1} << 46 | (aClock >> 30 & 7U) << 43 | std::uint64_t{1} << 42 |
                                (aClock >> 15 & 0x7FFFU) << 27 | std::uint64_t{1} << 26 |
                                (aClock & 0x7FFFU) << 11 | 1U << 10 | 1U;
    return Code(0xBA) + Big(clock, 6) + Big(aMuxRate << 2 | 3U, 3) + Big(0xF8 | aStuffing, 1) +
           std::string(aStuffing, '\xFF');
}

/// That of a system stream.
inline std::string PackMPEG1(std::uint64_t aClock, std::uint32_t aMuxRate = 3528) {
    return Code(0xBA) + Stamp(2, aClock) + Big(0x800001 | aMuxRate << 1, 3);
}

inline std::string End() {
    return Code(0xB9);
}

// ---- packets ----

/// One of a stream without a header of its own: a system header, a map, navigation, padding.
inline std::string Plain(unsigned aCode, const std::string& aContent) {
    return Code(aCode) + Big(aContent.size(), 2) + aContent;
}

/// One of an elementary stream, of MPEG-2.
inline std::string Packet(unsigned aStream, const std::string& aPayload,
                          std::optional<std::uint64_t> aStamp = std::nullopt, unsigned aScrambling = 0) {
    const std::string stamp = aStamp ? Stamp(2, *aStamp) : "";
    return Plain(aStream, Big(0x80 | aScrambling << 4, 1) + Big(aStamp ? 0x80 : 0, 1) + Big(stamp.size(), 1) +
                              stamp + aPayload);
}

/// The same of MPEG-1.
inline std::string PacketMPEG1(unsigned aStream, const std::string& aPayload,
                               std::optional<std::uint64_t> aStamp = std::nullopt) {
    return Plain(aStream, (aStamp ? Stamp(2, *aStamp) : std::string("\x0F")) + aPayload);
}

/// The content of a packet of private stream 1: the substream, frames that begin there, and where the first
/// of them does.
inline std::string Sub(unsigned aNumber, const std::string& aPayload) {
    return Big(aNumber, 1) + Big(1, 1) + Big(1, 2) + aPayload;
}

/// An entry for each stream: its type and its id.
inline std::string Map(const std::string& anEntries) {
    return Plain(0xBC, Big(0xE1FF, 2) + Big(0, 2) + Big(anEntries.size(), 2) + anEntries + Big(0, 4));
}
inline std::string MapEntry(unsigned aType, unsigned aStream, const std::string& aDescriptors = "") {
    return Big(aType, 1) + Big(aStream, 1) + Big(aDescriptors.size(), 2) + aDescriptors;
}

/// The packets of navigation that begin each unit of a DVD, of a video object and of one of its cells.
inline std::string Navigation(unsigned anObject, unsigned aCell = 1) {
    std::string search(1017, '\0');
    search.replace(24, 2, Big(anObject, 2));
    search.replace(27, 1, Big(aCell, 1));
    return Plain(0xBF, std::string(980, '\0')) + Plain(0xBF, "\1" + search);
}

// ---- sound ----

/// A frame of layer II: 48 kHz, two channels, 192 kbit/s, 24 ms.
inline std::string LayerII() {
    return std::string("\xFF\xFD\xA4\0", 4) + std::string(572, '\x55');
}
constexpr std::uint64_t kLayerIITicks = 2160;

/// A frame of AC-3: 48 kHz, six channels, 448 kbit/s, 32 ms.
inline std::string AC3() {
    return std::string("\x0B\x77\0\0\x1E\x40\xE1", 7) + std::string(1785, '\x55');
}
constexpr std::uint64_t kAC3Ticks = 2880;

/// What stands before the samples of a DVD: those of 20 ms.
inline std::string LPCM(unsigned aForm = 0x01, std::size_t aSize = 3840) {
    return std::string(1, '\0') + Big(aForm, 1) + "\x80" + std::string(aSize, '\x11');
}

// ---- discs ----

/// A stream as the sectors of a video CD carry it, in a RIFF file.
inline std::string CDXA(const std::string& aStream) {
    std::string sectors;
    for (std::size_t place = 0; place < aStream.size(); place += 2324) {
        std::string data = aStream.substr(place, 2324);
        data.resize(2324, '\0');
        sectors += std::string(1, '\0') + std::string(10, '\xFF') + std::string(1, '\0') +
                   std::string("\0\2\x10\2\1\1\x62\x0F\1\1\x62\x0F", 12) + data + std::string(4, '\x5A');
    }
    return "RIFF" + Little(sectors.size() + 36) + "CDXAfmt " + Little(16) + std::string(16, '\0') + "data" +
           Little(sectors.size()) + sectors;
}

} // namespace ps
