#pragma once

#include "fuzz/support/CodecDoor.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/ByteSource.h"

/// The readers of a codec of NAL units.
struct UnitReaders {
    std::optional<VideoFacts> (*mReadStream)(const unsigned char* aBytes, std::size_t aSize);
    std::optional<VideoFacts> (*mReadConfig)(ByteReader aConfig, const ByteReader* aFirstSample);
    CodecBounds mBounds;
};

/// A byte stream, or where the first two bytes are not 0 a configuration of so many bytes and a first sample.
inline int UnitsDoor_Enter(const std::uint8_t* aData, std::size_t aSize, const UnitReaders& aReaders) {
    const FuzzHouse house;
    constexpr std::size_t kHead = 2;
    if (aSize < kHead) {
        return 0;
    }
    const std::size_t stated = std::size_t{aData[0]} << 8U | aData[1];
    const std::size_t size = std::min(stated, aSize - kHead);
    if (stated == 0) {
        const std::vector<unsigned char> stream = CodecDoor_Block(aData + kHead, aSize - kHead);
        const std::optional<VideoFacts> facts = aReaders.mReadStream(stream.data(), stream.size());
        CodecDoor_CheckPictures(facts, aReaders.mBounds);
        CodecDoor_CheckSame(facts, aReaders.mReadStream(stream.data(), stream.size()));
        // A stream tells no less where it goes on from an earlier byte that begins no unit.
        std::vector<unsigned char> later(1, 0xFF);
        later.insert(later.end(), stream.begin(), stream.end());
        CodecDoor_CheckSame(facts, aReaders.mReadStream(later.data(), later.size()));
        return 0;
    }
    const std::vector<unsigned char> config = CodecDoor_Block(aData + kHead, size);
    const std::vector<unsigned char> sample = CodecDoor_Block(aData + kHead + size, aSize - kHead - size);
    BlockBytes configBytes(config.data(), config.size());
    BlockBytes sampleBytes(sample.data(), sample.size());
    const ByteReader first(sampleBytes);
    for (const ByteReader* reader : {static_cast<const ByteReader*>(nullptr), &first}) {
        const std::optional<VideoFacts> facts = aReaders.mReadConfig(ByteReader(configBytes), reader);
        CodecDoor_CheckPictures(facts, aReaders.mBounds);
        CodecDoor_CheckSame(facts, aReaders.mReadConfig(ByteReader(configBytes), reader));
    }
    return 0;
}
