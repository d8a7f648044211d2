#pragma once

#include "support/EbmlBytes.h"

#include <cstdint>
#include <string>

/// Tracks and blocks of Matroska as bytes (RFC 9559).
namespace matroska {

using ebml::Element;
using ebml::Number;

inline constexpr std::uint32_t kCluster = 0x1F43B675;

/// The settings of a track's video.
inline std::string Picture(unsigned aWidth = 320, unsigned aHeight = 240, const std::string& aRest = "") {
    return Element(0xE0, Number(0xB0, aWidth) + Number(0xBA, aHeight) + aRest);
}
/// Those of a track's sound.
inline std::string Sound(double aRate = 48000, unsigned aChannels = 2, const std::string& aRest = "") {
    return Element(0xE1, ebml::Float(0xB5, aRate) + Number(0x9F, aChannels) + aRest);
}

/// An entry: kind 1 is video, 2 sound, 17 subtitles. Its UID is 100 more than its number.
inline std::string Track(unsigned aNumber, unsigned aKind, const std::string& aCodecId,
                         const std::string& aRest = "") {
    return Element(0xAE, Number(0xD7, aNumber) + Number(0x73C5, aNumber + 100) + Number(0x83, aKind) +
                             Element(0x86, aCodecId) + aRest);
}
inline std::string Private(const std::string& aBytes) {
    return Element(0x63A2, aBytes);
}

/// What a block holds: the head, and a frame or laced ones.
inline std::string BlockBody(unsigned aTrack, int aTime, const std::string& aFrames, unsigned aFlags = 0x80) {
    return ebml::Size(aTrack) + Big(static_cast<std::uint16_t>(aTime), 2) + Big(aFlags, 1) + aFrames;
}
inline std::string Block(unsigned aTrack, int aTime, const std::string& aFrames = "frame",
                         unsigned aFlags = 0x80) {
    return Element(0xA3, BlockBody(aTrack, aTime, aFrames, aFlags));
}
/// One that states how long it is.
inline std::string LongBlock(unsigned aTrack, int aTime, std::uint64_t aDuration,
                             const std::string& aFrames = "frame") {
    return Element(0xA0, Element(0xA1, BlockBody(aTrack, aTime, aFrames, 0)) + Number(0x9B, aDuration));
}
inline std::string Cluster(std::uint64_t aTime, const std::string& aBlocks) {
    return Element(kCluster, Number(0xE7, aTime) + aBlocks);
}
/// One of unknown size.
inline std::string OpenCluster(std::uint64_t aTime, const std::string& aBlocks) {
    return ebml::Unknown(kCluster, Number(0xE7, aTime) + aBlocks);
}

/// Ticks of a millisecond that a file lasts.
inline std::string Duration(double aTicks) {
    return ebml::Float(0x4489, aTicks);
}

/// A cue: a time, and where its cluster stands from the segment's content on.
inline std::string Cue(std::uint64_t aTime, std::uint64_t aPosition) {
    return Element(0xBB, Number(0xB3, aTime) + Element(0xB7, Number(0xF7, 1) + Number(0xF1, aPosition, 8)));
}
inline std::string Cues(const std::string& aCues) {
    return Element(0x1C53BB6B, aCues);
}

} // namespace matroska
