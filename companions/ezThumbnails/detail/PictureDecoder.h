#pragma once

#include "ezThumbnails/detail/Picture.h"

#include "ezPlatform/base/Types.h"

/// What is known of an original before it is decoded.
struct PictureHeader {
    uint32 mWidth = 0; ///< as it is stored, and so the height
    uint32 mHeight = 0;
    unsigned mOrientation = 1; ///< of Exif, 1 to 8
};

/// How an original is wanted.
struct PictureWish {
    uint32 mWidth = 0; ///< as it is stored, and so the height
    uint32 mHeight = 0;
    bool mfFast = false;    ///< speed before quality
    bool mfOnWhite = false; ///< without alpha: what is transparent is white
};

/// Decodes one picture. The operations are called in their order, once; false is a picture that cannot be
/// decoded, or would cost more than it may, and ends the decoder's use.
class PictureDecoder {
public:
    PictureDecoder() = default;
    virtual ~PictureDecoder() = default;
    PictureDecoder(const PictureDecoder&) = delete;
    PictureDecoder& operator=(const PictureDecoder&) = delete;

    virtual bool ReadHeader(PictureHeader* aHeader) = 0;
    /// Decodes all of the picture, up to the end that it states, in the size of the wish.
    virtual bool Decode(const PictureWish& aWish, Picture* aResult) = 0;

    /// Whether an operation failed since the picture would cost more than it may, and not for damage.
    bool IsTooCostly() const { return mfTooCostly; }

protected:
    /// Whether a picture of these sides may be decoded.
    bool IsWithinLimits(const PictureHeader& aHeader);

    bool mfTooCostly = false;
};
