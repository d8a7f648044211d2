#pragma once

#include "ezFormats/ts/TSTables.h"

#include <cstdint>
#include <string>

class ByteReader;

/// Who numbered the streams of 0x80 and above.
enum class TSMaker {
    Unknown, ///< nobody is registered; such streams follow no rule
    HDMV,    ///< discs and camcorders
    Other,   ///< another one: broadcasts
};

/// What the map of a program says of a stream, by its type and its descriptors.
struct TSStreamWords {
    std::uint8_t mType = 0;                    ///< stream_type
    StreamCodec mCodec = StreamCodec::Unknown; ///< by descriptors
    bool mfOfJapan = false;                    ///< a descriptor of ARIB is among them
    std::uint32_t mChannels = 0;
    std::string mLanguages;
};

/// Takes what a descriptor of a stream tells.
void TakeTSDescriptor(std::uint8_t aTag, ByteReader aContent, TSStreamWords& aWords);

/// The stream that has these words, but for its PID.
TSStream TSStreamOf(const TSStreamWords& aWords, TSMaker aMaker);
