#pragma once

#include "ezThumbnails/PictureFacts.h"

#include <cstddef>
#include <string>

/// "JPEG, 160x120, 4521 bytes".
std::string InWords(const PictureFacts& aFacts, std::size_t aByteCount);
