#pragma once

#include "ezPlatform/base/Types.h"

#include <cstddef>
#include <memory>

/// Blocks whose size comes from input: null when they cannot be had.
using PictureBytes = std::unique_ptr<unsigned char[]>;
PictureBytes NewPictureBytes(std::size_t aCount);

/// A small picture in memory: rows from the top, 8 bits a sample, sRGB.
struct Picture {
    uint32 mWidth = 0;
    uint32 mHeight = 0;
    uint32 mChannels = 0; ///< 1: grey; 3: red, green, blue; 4: and alpha, not multiplied into the colours
    PictureBytes mBytes;

    std::size_t GetRowBytes() const { return static_cast<std::size_t>(mWidth) * mChannels; }
    std::size_t GetByteCount() const { return GetRowBytes() * mHeight; }
};

/// True when a picture of this orientation (that of Exif, 1 to 8) lies on its side.
bool LiesOnItsSide(unsigned anOrientation);

/// Turns and mirrors a picture of this orientation so that it is as it is meant to be seen. False when there
/// is no memory for it.
bool Straighten(Picture* aPicture, unsigned anOrientation);
