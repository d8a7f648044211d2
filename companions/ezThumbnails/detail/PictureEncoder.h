#pragma once

#include "ezThumbnails/detail/ByteSink.h"
#include "ezThumbnails/detail/Picture.h"

/// Writes a baseline JPEG, 4:2:0, JFIF 1.02, with the standard tables; also of a grey picture, since not
/// every renderer takes a single component. The picture has no alpha. False when there is no memory.
bool EncodeJpeg(const Picture& aPicture, ByteSink* aSink);

/// Writes a PNG of 8 bits a sample, not interlaced, marked as sRGB. False when there is no memory.
bool EncodePng(const Picture& aPicture, ByteSink* aSink);
