#include "ezThumbnails/PictureFacts.h"

#include "ezThumbnails/detail/JpegInMemory.h"

#include <cstddef>

namespace {

// Signature, and the length and type of the first chunk (PNG, 5.2 and 11.2.2): width and height follow.
constexpr std::string_view kPngStart("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16);

// What a picture ends in; one that was cut short does not.
constexpr std::string_view kPngEnd("\0\0\0\0IEND\xAE\x42\x60\x82", 12);
constexpr std::string_view kJpegEnd("\xFF\xD9", 2);

bool EndsIn(std::string_view aBytes, std::string_view anEnd) {
    return aBytes.size() >= anEnd.size() && aBytes.substr(aBytes.size() - anEnd.size()) == anEnd;
}

uint32 BigEndian(std::string_view aBytes, std::size_t anOffset) {
    uint32 value = 0;
    for (std::size_t i = 0; i < sizeof(value); ++i) {
        value = value << 8 | static_cast<unsigned char>(aBytes[anOffset + i]);
    }
    return value;
}

} // namespace

std::optional<PictureFacts> ReadPictureFacts(std::string_view aBytes) {
    if (aBytes.size() >= kPngStart.size() + 2 * sizeof(uint32) &&
        aBytes.substr(0, kPngStart.size()) == kPngStart && EndsIn(aBytes, kPngEnd)) {
        return PictureFacts{"PNG", BigEndian(aBytes, kPngStart.size()),
                            BigEndian(aBytes, kPngStart.size() + sizeof(uint32))};
    }
    PictureHeader header;
    if (!EndsIn(aBytes, kJpegEnd) || !JpegInMemory(aBytes).ReadHeader(&header)) {
        return std::nullopt;
    }
    return PictureFacts{"JPEG", header.mWidth, header.mHeight};
}
