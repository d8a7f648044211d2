#pragma once

#include "ezFormats/mpegsystem/StreamCodec.h"

#include <cstddef>
#include <cstdint>

/// A substream of private stream 1, as DVDs have them, and the discs of high density after them (EVO): what a
/// packet carries, as its first byte tells.
struct Substream {
    StreamCodec mCodec = StreamCodec::Unknown;
    std::size_t mHeadSize = 0; ///< bytes of the packet's content before the coded sound or picture
};

/// By the first byte of a packet's content; Unknown for a number that stands for nothing.
Substream Substream_Of(std::uint8_t aNumber);
