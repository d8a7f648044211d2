#pragma once

#include "ezThumbnails/detail/PictureDecoder.h"

#include <memory>

class PictureReader;

/// Decodes JPEG to grey or RGB, at the scale of libjpeg that lies next to the wish.
class JpegDecoder : public PictureDecoder {
public:
    /// @param aReader  at the picture's start; borrowed
    explicit JpegDecoder(PictureReader* aReader);
    ~JpegDecoder() override;

    bool ReadHeader(PictureHeader* aHeader) override;
    bool Decode(const PictureWish& aWish, Picture* aResult) override;

private:
    bool DecodeRows(const PictureWish& aWish, Picture* aResult);

    struct State;
    std::unique_ptr<State> mState;
};
