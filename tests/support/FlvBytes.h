#pragma once

#include "support/NumberBytes.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

/// Flash video, as bytes.
namespace flv {

constexpr unsigned kSoundTag = 8;
constexpr unsigned kVideoTag = 9;
constexpr unsigned kScriptTag = 18;

/// The header, and the size of no tag. The flags promise 4: sound, 1: video.
inline std::string Header(unsigned aFlags = 5) {
    return std::string("FLV\1") + Big(aFlags, 1) + Big(9, 4) + Big(0, 4);
}

/// A tag without the size after it.
inline std::string OpenTag(unsigned aType, std::uint32_t aTime, const std::string& aContent,
                           unsigned aStream = 0) {
    return Big(aType, 1) + Big(aContent.size(), 3) + Big(aTime & 0xFFFFFFU, 3) + Big(aTime >> 24, 1) +
           Big(aStream, 3) + aContent;
}

inline std::string Tag(unsigned aType, std::uint32_t aTime, const std::string& aContent) {
    return OpenTag(aType, aTime, aContent) + Big(11 + aContent.size(), 4);
}
inline std::string Video(std::uint32_t aTime, const std::string& aContent) {
    return Tag(kVideoTag, aTime, aContent);
}
inline std::string Sound(std::uint32_t aTime, const std::string& aContent) {
    return Tag(kSoundTag, aTime, aContent);
}

// ---- script tags ----

inline std::string NumberValue(double aNumber) {
    std::uint64_t bits = 0;
    static_assert(sizeof(bits) == sizeof(aNumber));
    std::memcpy(&bits, &aNumber, sizeof(bits));
    return Big(0, 1) + Big(bits, 8);
}
inline std::string TextValue(const std::string& aText) {
    return Big(2, 1) + Big(aText.size(), 2) + aText;
}
/// A value under a name.
inline std::string Named(const std::string& aName, const std::string& aValue) {
    return Big(aName.size(), 2) + aName + aValue;
}
inline std::string Number(const std::string& aName, double aNumber) {
    return Named(aName, NumberValue(aNumber));
}
inline std::string Text(const std::string& aName, const std::string& aText) {
    return Named(aName, TextValue(aText));
}
inline std::string End() {
    return Big(9, 3);
}
/// Named values, in an array that says how many they are.
inline std::string Array(const std::string& aValues, std::uint32_t aCount = 1) {
    return Big(8, 1) + Big(aCount, 4) + aValues + End();
}
inline std::string Object(const std::string& aValues) {
    return Big(3, 1) + aValues + End();
}
inline std::string List(const std::string& aValues, std::uint32_t aCount) {
    return Big(10, 1) + Big(aCount, 4) + aValues;
}
inline std::string Script(const std::string& aValues) {
    return Tag(kScriptTag, 0, aValues);
}
/// The tag of metadata with these named values.
inline std::string MetaData(const std::string& aValues) {
    return Script(TextValue("onMetaData") + Array(aValues));
}

// ---- pictures and sound ----

/// The start of a key frame of Sorenson H.263 of a size, and more of it.
inline std::string Sorenson(unsigned aWidth, unsigned aHeight, std::size_t aSize = 20) {
    // After 24 bits of start code, version and time 6 more of that, 3 of a format, 16 and 16 of size, 8 of
    // others.
    const std::uint64_t size = std::uint64_t{aWidth} << 16 | aHeight;
    return Big(0x12, 1) + Big(0x84, 3) + Big(std::uint64_t{1} << 47 | size << 15, 7) +
           std::string(aSize, 'v');
}
/// A frame of MP3: layer III of MPEG-2, 22050 Hz, one channel, 8 kbit/s.
inline std::string MP3(std::size_t aSize = 26) {
    return Big(0x2A, 1) + Big(0xFFF310C4, 4) + std::string(aSize - 4, 's');
}

/// So many milliseconds of pictures at 25 a second and sound, from a time on.
inline std::string Frames(std::uint32_t aMilliseconds, std::uint32_t aFirst = 0, std::size_t aSize = 20) {
    std::string tags;
    for (std::uint32_t time = aFirst; time < aFirst + aMilliseconds; time += 40) {
        tags += Video(time, Sorenson(320, 180, aSize)) + Sound(time, MP3());
    }
    return tags;
}

} // namespace flv
