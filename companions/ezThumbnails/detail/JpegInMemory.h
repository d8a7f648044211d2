#pragma once

#include "ezThumbnails/detail/JpegDecoder.h"
#include "ezThumbnails/detail/PictureReader.h"

#include <string_view>

/// A JPEG that lies in memory, with its decoder.
class JpegInMemory {
public:
    /// Copies the bytes.
    explicit JpegInMemory(std::string_view aBytes);

    /// False when it is not one, or larger than may be decoded.
    bool ReadHeader(PictureHeader* aHeader);
    /// Decodes it in the size that its header states.
    bool Decode(const PictureHeader& aHeader, Picture* aPicture);

private:
    ezStreamOwner mStream;
    PictureReader mReader;
    JpegDecoder mDecoder;
};
