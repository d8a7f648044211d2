#pragma once

#include "ezPlatform/base/Types.h"

#include <optional>
#include <string>

/// What a picture says of itself.
struct PictureFacts {
    const char* mFormat = ""; ///< "JPEG" or "PNG"
    uint32 mWidth = 0;        ///< pixels
    uint32 mHeight = 0;
};

/// Nothing where it is neither a JPEG nor a PNG, or was cut short.
std::optional<PictureFacts> ReadPictureFacts(const std::string& aBytes);

/// "JPEG, 160x120, 4521 bytes".
std::string InWords(const PictureFacts& aFacts, std::size_t aByteCount);
