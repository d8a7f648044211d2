#pragma once

#include "ezFormats/mpegaudio/MPEGAudioParser.h"

#include "support/AwkwardStream.h"
#include "support/Catchers.h"
#include "support/Id3Bytes.h"
#include "support/NumberBytes.h"
#include "support/Record.h"
#include "support/Samples.h"
#include "support/Str.h"
#include "support/TailBytes.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

// MPEG audio files, byte by byte.

namespace mpegaudio {

using namespace std::string_literals;

// --- frames: version and layer | rate, sampling rate | mode ---

constexpr std::uint32_t kMP3 = 0xFFFB9000;      ///< MPEG-1 layer III, 128 kbit/s, 44.1 kHz, stereo: 417 bytes
constexpr std::uint32_t kMP3At32 = 0xFFFB1000;  ///< the same at 32 kbit/s: 104 bytes
constexpr std::uint32_t kMP3At320 = 0xFFFBE000; ///< the same at 320 kbit/s: 1044 bytes
constexpr std::uint32_t kMP2 = 0xFFFDA400;      ///< MPEG-1 layer II, 192 kbit/s, 48 kHz: 576 bytes
constexpr std::uint32_t kMP1 = 0xFFFFC000;      ///< MPEG-1 layer I, 384 kbit/s, 44.1 kHz: 416 bytes
constexpr std::uint32_t kLSF = 0xFFF384C0;      ///< MPEG-2 layer III, 64 kbit/s, 24 kHz, mono: 192 bytes
constexpr std::uint32_t kMPEG25 = 0xFFE348C0;   ///< MPEG-2.5 layer III, 32 kbit/s, 8 kHz, mono: 288 bytes
constexpr std::uint32_t kFree = 0xFFFB0000;     ///< free format at 44.1 kHz

/// A frame of a size whose bytes after the header look like nothing, and differ with aSeed.
inline std::string Frame(std::uint32_t aWord, std::size_t aSize, unsigned aSeed = 0) {
    return Big(aWord, 4) + std::string(aSize - 4, static_cast<char>(0x31 + aSeed % 64));
}
inline std::string Frames(std::uint32_t aWord, std::size_t aSize, unsigned aCount) {
    std::string bytes;
    for (unsigned i = 0; i < aCount; ++i) {
        bytes += Frame(aWord, aSize, i);
    }
    return bytes;
}
/// 38 frames of 1152 samples at 44.1 kHz are 0.993 s, and their size at 128 kbit/s makes 0.991 s.
inline std::string Song(unsigned aCount = 38) {
    return Frames(kMP3, 417, aCount);
}

/// The first frame with a count: "Xing" or "Info" after the side information (32 bytes).
inline std::string CountFrame(const std::string& aName, const std::string& aFields,
                              std::uint32_t aWord = kMP3, std::size_t aSize = 417) {
    std::string frame = Big(aWord, 4) + std::string(32, '\0') + aName + aFields;
    frame.resize(aSize, '\0');
    return frame;
}
/// Frames and bytes.
inline std::string Fields(std::uint64_t aFrames, std::uint64_t aBytes) {
    return Big(3, 4) + Big(aFrames, 4) + Big(aBytes, 4);
}
/// Everything, and an encoder's part with delay and padding in samples.
inline std::string FieldsOfEncoder(std::uint64_t aFrames, std::uint64_t aBytes, unsigned aDelay,
                                   unsigned aPadding, const std::string& anEncoder = "LAME3.100") {
    return Big(15, 4) + Big(aFrames, 4) + Big(aBytes, 4) + std::string(100, '\0') + Big(0, 4) + anEncoder +
           std::string(12, '\0') + Big(std::uint64_t{aDelay} << 12 | aPadding, 3);
}
/// Version, delay, quality, bytes, frames: 32 bytes after the header.
inline std::string VBRIFields(std::uint64_t aFrames, std::uint64_t aBytes) {
    return Big(1, 2) + Big(0, 2) + Big(75, 2) + Big(aBytes, 4) + Big(aFrames, 4);
}

// --- reading ---

inline Record Read(const std::string& aBytes, const Delivery& aDelivery = Delivery()) {
    AwkwardStream stream(aBytes, aDelivery, "/media/song.mp3");
    MPEGAudioParser parser;
    return Record(parser.Parse(stream));
}

/// One value of a record, or "none" without one.
inline std::string Value(const std::string& aBytes, const char* aKey) {
    const Record record = Read(aBytes);
    return record != nullptr ? Str(record->GetCString(aKey, "-")) : "none";
}
/// "seconds method".
inline std::string Length(const std::string& aBytes) {
    return Value(aBytes, "du") + " " + Value(aBytes, "md");
}
/// "title|creator|album|genre".
inline std::string Texts(const std::string& aBytes, MPEGAudioParser& aParser) {
    AwkwardStream stream(aBytes, Delivery(), "/media/song.mp3");
    const Record record(aParser.Parse(stream));
    return record == nullptr ? "none"
                             : Str(record->mTitle) + "|" + Str(record->mCreator) + "|" + Str(record->mAlbum) +
                                   "|" + Str(record->mGenre);
}
inline std::string Texts(const std::string& aBytes) {
    MPEGAudioParser parser;
    return Texts(aBytes, parser);
}
/// Why nothing was read.
inline std::string Refusal(const std::string& aBytes) {
    const LogCatcher log;
    const Record record = Read(aBytes);
    return record != nullptr ? "read" : log.Texts().empty() ? "silent" : log.Texts().back();
}

} // namespace mpegaudio
