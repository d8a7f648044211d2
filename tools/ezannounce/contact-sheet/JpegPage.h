#pragma once

#include "ezPlatform/base/Types.h"

#include <string>
#include <vector>

/// A picture in memory: rows from the top, three bytes a pixel, red, green and blue.
struct RgbPicture {
    uint32 mWidth = 0;
    uint32 mHeight = 0;
    std::vector<unsigned char> mBytes;
};

/// Width and height, from the header of a JPEG. False where it has none.
bool ReadJpegSize(const std::string& aBytes, uint32& aWidth, uint32& aHeight);

/// Decodes a JPEG. False when it is damaged, or one of its sides is longer than aMaxSide.
bool ReadJpegPicture(const std::string& aBytes, uint32 aMaxSide, RgbPicture& aPicture);

/// Gives the rows of a picture, from the top, one after the other.
class RowSource {
public:
    RowSource() = default;
    virtual ~RowSource() = default;
    RowSource(const RowSource&) = delete;
    RowSource& operator=(const RowSource&) = delete;

    /// The next row: three bytes a pixel; lent until the next one is asked for.
    virtual const unsigned char* NextRow() = 0;
};

/// A baseline JPEG (4:2:0) of so many pixels, of which one row at a time is held, with a comment of at most
/// 65,533 bytes; empty when it cannot be made.
std::string WriteJpeg(uint32 aWidth, uint32 aHeight, const std::string& aComment, RowSource& aRows);

/// Whether a JPEG has this comment before its picture; a part of the file up to there is enough.
bool HasJpegComment(const std::string& aBytes, const std::string& aComment);
