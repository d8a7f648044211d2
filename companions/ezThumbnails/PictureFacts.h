#pragma once

#include "ezThumbnails/Export.h"

#include "ezPlatform/base/Types.h"

#include <optional>
#include <string_view>

/// What a picture says of itself.
struct PictureFacts {
    const char* mFormat = ""; ///< "JPEG" or "PNG"
    uint32 mWidth = 0;        ///< pixels
    uint32 mHeight = 0;       ///< pixels
};

/// Format and size of a picture in memory, from its header; the pixels are not decoded. Nothing where it is
/// neither a JPEG nor a PNG, was cut short, or a JPEG is larger than PictureThumbnailGenerator allows. Any
/// thread.
EZTHUMBNAILS_API std::optional<PictureFacts> ReadPictureFacts(std::string_view aBytes);
