#pragma once

#include "companions/ezFormats/codecs/TheoraBytes.h"
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
constexpr unsigned kLast = 4;
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
/// Of 320x240, 25 pictures a second; the last six bits of a position count from the last key picture.
inline std::string Theora(std::uint32_t aRate = 25, std::uint32_t aScale = 1) {
    TheoraHead head;
    head.mRate = aRate;
    head.mRateDivisor = aScale;
    return head.Bytes();
}
/// Of OGM: so many samples in so many units of 100 ns, packets of a default length in samples; and what
/// tells of the kind.
inline std::string OGMHead(const std::string& aType, const std::string& aTag, std::uint64_t aUnit,
                           std::uint64_t aSamples, unsigned aLength = 0, const std::string& aRest = "") {
    const std::string rest = aRest.empty() ? Little(2, 2) + std::string(10, '\0') : aRest;
    return "\x01" + aType + std::string(8 - aType.size(), '\0') + aTag + Little(56) + Little(aUnit, 8) +
           Little(aSamples, 8) + Little(aLength) + Little(0) + Little(16) + rest;
}
/// A packet of OGM that holds a frame, its length in no bytes.
inline std::string OGMFrame(const std::string& aFrame) {
    return std::string(1, '\0') + aFrame;
}
/// The mapping of VP8.
inline std::string VP8Head(unsigned aWidth = 320, unsigned aHeight = 240, std::uint32_t aRate = 25,
                           std::uint32_t aDivisor = 1, unsigned aVersion = 1) {
    return "OVP80\1" + Big(aVersion, 1) + Big(0, 1) + Big(aWidth, 2) + Big(aHeight, 2) + Big(12, 3) +
           Big(11, 3) + Big(aRate, 4) + Big(aDivisor, 4);
}
inline std::string KateHead(const std::string& aLanguage) {
    return "\x80kate\0\0\0\0"s + std::string(23, '\0') + aLanguage +
           std::string(16 - aLanguage.size(), '\0') + std::string(16, '\0');
}
/// Skeleton: the first that is shown, and where positions count from, both in milliseconds.
inline std::string SkeletonHead(std::uint64_t aShown, std::uint64_t aBase = 0) {
    return "fishead\0\4\0\0\0"s + Little(aShown, 8) + Little(1000, 8) + Little(aBase, 8) + Little(1000, 8) +
           std::string(36, '\0');
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
