#pragma once

#include <cstddef>

/// A PNG that is built in.
struct DefaultPicture {
    const unsigned char* mBytes;
    std::size_t mSize;
};

/// Made by make-default-pictures.
extern const DefaultPicture kDefaultPicture_Audio;
extern const DefaultPicture kDefaultPicture_Video;
extern const DefaultPicture kDefaultPicture_Image;
extern const DefaultPicture kDefaultPicture_Other;
