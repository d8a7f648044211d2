#pragma once

#include "ezBytes/ByteReader.h"

#include "ezPlatform/text/CString.h"

#include <cstddef>

/// What an Exif block tells of a photo: a TIFF header and what follows it (Exif 2.3, 4.5).
struct ExifFacts {
    unsigned mOrientation = 1; ///< 1 to 8; 1, that of a picture that stands as it is meant to be seen, when
                               ///< none is stated
    ezCString mDate;           ///< when it was taken, as CleanDate has it; with its zone where that is stated
};

/// Reads what is looked at, and nothing of a thumbnail in the block. What is damaged tells nothing.
ExifFacts ReadExif(const ByteReader& aBlock);

/// The orientation alone, of a block and of what a reader has left.
/// @{
unsigned ExifOrientation(const unsigned char* aBlock, std::size_t aSize);
unsigned ExifOrientation(const ByteReader& aBlock);
/// @}
