#pragma once

#include "ezFormats/avi/AVIParser.h"

#include "companions/ezFormats/ChunkBytes.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// AVI files as bytes, and what the parser says to them.
namespace avi {

using chunks::Chunk;

inline std::string List(const std::string& aKind, const std::string& aChunks) {
    return Chunk("LIST", aKind + aChunks);
}

/// The format of pictures. What sets the decoder up follows it.
inline std::string Bitmap(const std::string& aCompression, unsigned aWidth = 320, unsigned aHeight = 240,
                          const std::string& aPrivate = "") {
    return Little(40) + Little(aWidth) + Little(aHeight) + Little(1, 2) + Little(24, 2) + aCompression +
           std::string(20, '\0') + aPrivate;
}

/// A stream: of pictures, unless it is said otherwise.
struct Stream {
    std::string mKind = "vids";
    std::string mHandler = "none"; ///< no codec that there is: it must not count
    std::uint32_t mFlags = 0;
    std::uint32_t mScale = 1;
    std::uint32_t mRate = 25;
    std::uint32_t mStart = 0;
    std::uint32_t mLength = 100;
    std::uint32_t mUnitSize = 0;
    std::string mFormat = Bitmap("XXXX");
    std::string mRest; ///< chunks after the format

    std::string Header() const {
        return Chunk("strh", mKind + mHandler + Little(mFlags) + Little(0, 8) + Little(mScale) +
                                 Little(mRate) + Little(mStart) + Little(mLength) + Little(0, 8) +
                                 Little(mUnitSize) + Little(0, 8));
    }
    std::string Bytes() const { return List("strl", Header() + Chunk("strf", mFormat) + mRest); }
};

/// One of sound: plain samples of 8 bits, one channel at 8000 Hz, 4 s, unless it is said otherwise.
inline Stream Sound(const chunks::Fmt& aFormat = {1, 1, 8000, 8000, 1, 8, ""}) {
    Stream stream;
    stream.mKind = "auds";
    stream.mScale = aFormat.mBlock;
    stream.mRate = aFormat.mAverage;
    stream.mLength = aFormat.mAverage / aFormat.mBlock * 4;
    stream.mUnitSize = aFormat.mBlock;
    stream.mFormat = aFormat.Bytes();
    return stream;
}

/// Sound of which each frame is a unit, 4 s.
inline Stream FramedSound(const chunks::Fmt& aFormat, unsigned aSamples) {
    Stream stream = Sound(aFormat);
    stream.mScale = aSamples;
    stream.mRate = aFormat.mRate;
    stream.mLength = aFormat.mRate * 4 / aSamples;
    stream.mUnitSize = 0;
    return stream;
}

/// What "indx" of a stream holds: an index of indexes, each the place, the size, and the units.
struct SuperIndex {
    struct Part {
        std::uint64_t mPlace;
        std::uint32_t mSize;
        std::uint32_t mUnits;
    };
    std::vector<Part> mParts;
    unsigned mType = 0;
    std::uint32_t mCount = UINT32_MAX; ///< all of them

    std::string Bytes() const {
        std::string entries;
        for (const Part& part : mParts) {
            entries += Little(part.mPlace, 8) + Little(part.mSize) + Little(part.mUnits);
        }
        const std::uint64_t count = mCount != UINT32_MAX ? mCount : mParts.size();
        return Chunk("indx", Little(4, 2) + Little(0, 1) + Little(mType, 1) + Little(count) + "00dc" +
                                 Little(0, 12) + entries);
    }
};

/// Frames of one kind.
inline std::string Frames(std::size_t aCount, std::size_t aSize = 1000, const std::string& aName = "00dc") {
    std::string frames;
    for (std::size_t i = 0; i < aCount; ++i) {
        frames += Chunk(aName, std::string(aSize, '\x33'));
    }
    return frames;
}

/// Entries of an index.
inline std::string Entries(std::size_t aCount, const std::string& aName = "00dc",
                           std::uint32_t aSize = 1000) {
    std::string entries;
    for (std::size_t i = 0; i < aCount; ++i) {
        entries += aName + Little(16) + Little(4 + i * (aSize + 8)) + Little(aSize);
    }
    return entries;
}

struct Film {
    std::uint32_t mMicroseconds = 40000;
    std::uint32_t mFrames = 0; ///< as the header of all has them
    std::uint32_t mWidth = 320;
    std::uint32_t mHeight = 240;
    std::vector<Stream> mStreams = {Stream()};
    std::string mHead;   ///< chunks after the streams
    std::string mBefore; ///< chunks before the frames
    std::string mMovi = Frames(100);
    std::string mAfter;

    std::string Main() const {
        return Chunk("avih", Little(mMicroseconds) + Little(0, 12) + Little(mFrames) + Little(0) +
                                 Little(mStreams.size()) + Little(0) + Little(mWidth) + Little(mHeight) +
                                 Little(0, 16));
    }
    std::string Header() const {
        std::string header = Main();
        for (const Stream& stream : mStreams) {
            header += stream.Bytes();
        }
        return List("hdrl", header + mHead);
    }
    std::string Bytes() const {
        return chunks::Riff(Header() + mBefore + List("movi", mMovi) + mAfter, "RIFF", "AVI ");
    }
};

inline std::string Values(const std::string& aBytes, const std::vector<const char*>& aKeys,
                          const Delivery& aDelivery = Delivery()) {
    return chunks::Values<AVIParser>(aBytes, aKeys, aDelivery);
}
inline std::string Length(const std::string& aBytes, const Delivery& aDelivery = Delivery()) {
    return Values(aBytes, {"dm", "md"}, aDelivery);
}
inline std::string Refusal(const std::string& aBytes) {
    return pictures::Refusal<AVIParser>(aBytes);
}

} // namespace avi
