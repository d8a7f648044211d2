#pragma once

#include "ezBytes/ByteReader.h"

#include <cstddef>

/// The orientation, 1 to 8, that an Exif block states: a TIFF header and what follows it (Exif 2.3, 4.5). 1,
/// that of a picture that stands as it is meant to be seen, when it states none.
unsigned ExifOrientation(const unsigned char* aBlock, std::size_t aSize);

/// The same of what a reader has left. Reads what it looks at, and nothing of a thumbnail in the block.
unsigned ExifOrientation(const ByteReader& aBlock);
