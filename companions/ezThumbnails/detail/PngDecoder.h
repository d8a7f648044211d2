#pragma once

#include "ezThumbnails/detail/PictureDecoder.h"

#include <memory>

class PictureReader;

/// Decodes PNG to grey, RGB or, where something is transparent, RGB with alpha.
class PngDecoder : public PictureDecoder {
public:
    /// @param aReader  at the picture's start; borrowed
    explicit PngDecoder(PictureReader* aReader);
    ~PngDecoder() override;

    bool ReadHeader(PictureHeader* aHeader) override;
    bool Decode(const PictureWish& aWish, Picture* aResult) override;

private:
    bool DecodeRows(const PictureWish& aWish, Picture* aResult);

    struct State;
    std::unique_ptr<State> mState;
};
