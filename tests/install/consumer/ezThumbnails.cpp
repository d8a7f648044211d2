// A stranger's program against an installed ezThumbnails: prints the formats in which it makes thumbnails of
// a GIF and of a JPEG, as bits.

#include "ezThumbnails/PictureThumbnailGenerator.h"

#include <cstdio>

int main() {
    PictureThumbnailGenerator generator;
    std::printf("%u %u\n", static_cast<unsigned>(generator.CanConvert("image/gif")),
                static_cast<unsigned>(generator.CanConvert("image/jpeg")));
    return 0;
}
