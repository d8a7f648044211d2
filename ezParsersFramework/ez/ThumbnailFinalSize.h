#pragma once

#include "ez/MediaParserTypes.h"

#include "ezPlatform/base/Types.h"

struct ThumbnailInfo;

/// The size of a thumbnail in pixels, for a generator, from the request and the size of the original picture.
///
/// With a bounding box the picture is scaled up or down to fit it, with its aspect kept; the request's own
/// size and pixel ratio are then ignored. Only in the box of 160 by 160, that of the DLNA profiles JPEG_TN
/// and PNG_TN, a picture that would not become smaller in both directions keeps its own size. Without a box
/// the size is the one requested, its height or width reduced by the pixel ratio.
///
/// It is computed in single precision and truncated to whole pixels at every step, with the same result on
/// every target. A side may come out as 0 (a picture of 4000 by 10 in 160 by 160), which the caller takes
/// for 1. An original height of 0 is an infinite aspect, and 0 by 0 gives the full height of the box and no
/// width. A side too large for 32 bits is 0xFFFFFFFF. Where one of the three pointers is null, nothing is
/// written.
EZPARSERS_API void GetThumbnailFinalSize(const ThumbnailInfo* anInfo, uint32 aOriginalWidth,
                                         uint32 aOriginalHeight, uint32* aFinalWidth, uint32* aFinalHeight);
