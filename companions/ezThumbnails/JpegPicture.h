#pragma once

#include "ezThumbnails/Export.h"

#include "ezPlatform/base/Types.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// JPEGs in memory, for a host that puts thumbnails together to a picture of its own.
///
/// Nothing is printed, and a failure has no reason but the result. Any thread; nothing is shared.

/// A picture in memory: rows from the top, three bytes a pixel, red, green and blue.
struct JpegPicture {
    uint32 mWidth = 0;                 ///< pixels
    uint32 mHeight = 0;                ///< pixels
    std::vector<unsigned char> mBytes; ///< 3 * mWidth * mHeight
};

/// Decodes a JPEG, as it is stored: the orientation of an Exif block is not applied. What
/// PictureThumbnailGenerator decodes is decoded.
/// @param aMaxSide  pixels of a side at most, which bounds the memory
/// @return false when it is damaged, or larger; the picture is then left as it was
EZTHUMBNAILS_API bool ReadJpegPicture(std::string_view aBytes, uint32 aMaxSide, JpegPicture* aPicture);

/// Gives the rows of a picture, from the top, one after the other.
class EZTHUMBNAILS_API JpegRows {
public:
    JpegRows() = default;
    virtual ~JpegRows();
    JpegRows(const JpegRows&) = delete;
    JpegRows& operator=(const JpegRows&) = delete;

    /// The next row: three bytes a pixel; borrowed until the next one is asked for.
    virtual const unsigned char* NextRow() = 0;
};

/// Writes a baseline JPEG (4:2:0, JFIF 1.02), of which one row at a time is held.
/// @param aComment  at most 65,533 bytes; none when it is empty
/// @param aRows     asked for each of the rows once; borrowed
/// @return the JPEG; empty when it cannot be made, for want of memory or of pixels
EZTHUMBNAILS_API std::string WriteJpeg(uint32 aWidth, uint32 aHeight, std::string_view aComment,
                                       JpegRows* aRows);

/// Whether a JPEG has this comment before its picture; a part of the file up to there is enough.
EZTHUMBNAILS_API bool HasJpegComment(std::string_view aBytes, std::string_view aComment);
