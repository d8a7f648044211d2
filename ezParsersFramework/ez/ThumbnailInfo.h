#pragma once

#include "ezPlatform/base/Types.h"
#include "ezPlatform/files/PathName.h"
#include "ezPlatform/text/CString.h"

/// Formats of a thumbnail: bits, combined in masks.
enum ezThumbnailID : uint32 {
    kNoThumbnailID = 0,
    kJPEGThumbnailID = 1, ///< JPEG, DLNA profile JPEG_TN
    kPNGThumbnailID = 2   ///< PNG, DLNA profile PNG_TN
};

/// A request to the thumbnail service (ez/ThumbnailProvider.h): a media item, and the thumbnail that is
/// wanted of it. Sizes are in pixels.
///
/// The name in the cache has identity, format, both sizes, pixel ratio and lock, and nothing else. A request
/// that differs in the rest alone gets what is cached: whoever varies mfFastRescale, say, puts it into the
/// identity.
///
/// Ask for one format in mThumbnailID. With both, the provider of pictures takes a generator that makes only
/// PNG for able, and its PNG is cached, and served, as ".jpg".
struct ThumbnailInfo {
    bool mfParentalLocked = false; ///< the item is locked: changes its name in the cache, nothing else
    uint32 mWidth = 0;             ///< wanted; with a box it only changes the name in the cache: leave it 0
    uint32 mHeight = 0;            ///< the same
    uint32 mWidthMax = 0;          ///< of the bounding box; 0 when there is none
    uint32 mHeightMax = 0;         ///< of the bounding box; 0 when there is none
    ezCString mUniqueID;           ///< the item's identity, any bytes; the cache knows the item by it alone,
                                   ///< so change it when the picture changes that the thumbnail is made of
    uint32 mThumbnailID = kNoThumbnailID; ///< wanted formats, a set of ezThumbnailID; of both JPEG is cached
    ezCString mMimeType;                  ///< of the item; what stands before its "/" is the media class
    ezCString mDLNAInfo;                  ///< DLNA information of the item; the service does not read it
    ezPathName mFilePath;                 ///< the item's file
    bool mfFastRescale = false;   ///< the generator may scale fast, at a lower quality; not in the name
    uint32 mPixelRatioHeight = 0; ///< height part of the pixels' aspect ratio
    uint32 mPixelRatioWidth = 0;  ///< width part of it; equal parts are square pixels
};
