#pragma once

#include <cstdint>

class MediaBytes;

/// The first byte from a position on that is not zero: writers leave zeros after tags. At most
/// kFrames_SearchSize of them.
std::uint64_t AfterZeros(MediaBytes& aBytes, std::uint64_t aPosition);

/// The name of a format that begins at a position, and whose file may hold frames of sound in a row; null
/// when none does. Who reads one of these formats leaves out its own name.
const char* OtherFormatAt(MediaBytes& aBytes, std::uint64_t aPosition);
