#pragma once

#include "companions/ezFormats/flac/FLACBytes.h"

#include "support/CommentBytes.h"
#include "support/NumberBytes.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// Ogg files, byte by byte.

namespace ogg {

using namespace std::string_literals;

constexpr unsigned kFirst = 2;
constexpr unsigned kGoesOn = 1;
constexpr std::uint64_t kNoGranule = UINT64_MAX;

using Packets = std::vector<std::string>;

/// A page of whole packets.
inline std::string Page(unsigned aSerial, unsigned aFlags, std::uint64_t aGranule, const Packets& aPackets) {
    std::string table;
    std::string body;
    for (const std::string& packet : aPackets) {
        table += std::string(packet.size() / 255, '\xFF') + Big(packet.size() % 255, 1);
        body += packet;
    }
    return "OggS\0"s + Big(aFlags, 1) + Little(aGranule, 8) + Little(aSerial) + Little(0, 8) +
           Big(table.size(), 1) + table + body;
}
/// One of sound: so many packets of a size.
inline std::string Sound(unsigned aSerial, std::uint64_t aGranule, unsigned aPackets = 20,
                         std::size_t aSize = 100) {
    return Page(aSerial, 0, aGranule, Packets(aPackets, std::string(aSize, 's')));
}
/// Pages of sound of 4096 bytes and more, each with so many samples.
inline std::string Sounds(unsigned aSerial, std::uint64_t aFirst, std::uint64_t aStep, unsigned aCount) {
    std::string pages;
    for (unsigned i = 0; i < aCount; ++i) {
        pages += Sound(aSerial, aFirst + i * aStep, 40);
    }
    return pages;
}

// ---- first packets ----

/// Blocks of up to 2048 samples.
inline std::string VorbisHead(std::uint32_t aRate = 44100, unsigned aChannels = 2, std::uint64_t aHighest = 0,
                              std::uint64_t aNominal = 0, std::uint64_t aLowest = 0) {
    return "\x01vorbis" + Little(0) + Big(aChannels, 1) + Little(aRate) + Little(aHighest) +
           Little(aNominal) + Little(aLowest) + "\xB8\x01";
}
inline std::string OpusHead(unsigned aPreSkip = 312, unsigned aVersion = 1, unsigned aChannels = 2) {
    return "OpusHead" + Big(aVersion, 1) + Big(aChannels, 1) + Little(aPreSkip, 2) + Little(44100) +
           Little(0x8000, 2) + "\0"s;
}
inline std::string FLACHead(const flac::Stream& aStream) {
    return "\x7F"
           "FLAC\1\0\0\1fLaC"s +
           FlacBlock(0, aStream.Info());
}
inline std::string SpeexHead(std::uint32_t aRate = 16000, std::uint32_t aChannels = 1,
                             std::uint32_t aBitRate = 27800, bool afVariable = false) {
    return "Speex   1.2"s + std::string(17, '\0') + Little(1) + Little(80) + Little(aRate) + Little(1) +
           Little(4) + Little(aChannels) + Little(aBitRate) + Little(320) + Little(afVariable ? 1 : 0) +
           Little(1) + Little(0, 12);
}
/// 25 pictures a second; the last six bits of a position count from the last key picture.
inline std::string TheoraHead(std::uint32_t aRate = 25, std::uint32_t aScale = 1) {
    return "\x80theora\3\2\1" + Big(10, 2) + Big(10, 2) + std::string(8, '\0') + Big(aRate, 4) +
           Big(aScale, 4) + std::string(10, '\0') + Big(6U << 5U, 2);
}
/// Of OGM: so many samples in so many units of 100 ns.
inline std::string OGMHead(const std::string& aType, const std::string& aTag, std::uint64_t aUnit,
                           std::uint64_t aSamples) {
    return "\x01" + aType + "\0\0\0"s + aTag + Little(56) + Little(aUnit, 8) + Little(aSamples, 8) +
           std::string(12, '\0') + Little(2, 2) + std::string(10, '\0');
}

// ---- files ----

/// First page, comments, sound.
inline std::string File(const std::string& aHead, const std::string& aComments, const std::string& aSound) {
    return Page(7, kFirst, 0, {aHead}) + Page(7, 0, 0, {aComments, "setup"}) + aSound;
}
inline std::string Vorbis(const std::string& aSound, const std::vector<std::string>& aComments = {}) {
    return File(VorbisHead(), "\x03vorbis" + Comments(aComments), aSound);
}
/// A whole link of a chain.
inline std::string Link(unsigned aSerial, std::uint32_t aRate, const std::string& aSound) {
    return Page(aSerial, kFirst, 0, {VorbisHead(aRate)}) +
           Page(aSerial, 0, 0, {"\x03vorbis" + Comments({}), "setup"}) + aSound;
}

} // namespace ogg
