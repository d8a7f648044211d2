#include "ezThumbnails/JpegPicture.h"

#include "ezThumbnails/detail/JpegInMemory.h"
#include "ezThumbnails/detail/JpegWriter.h"

#include <cstring>

namespace {

constexpr int kQuality = 90;
constexpr unsigned char kStartOfScan = 0xDA; // ISO/IEC 10918-1, table B.1
constexpr std::size_t kPixelBytes = 3;

/// Red, green and blue of each sample.
void Spread(const Picture& aPicture, std::vector<unsigned char>* aBytes) {
    aBytes->resize(kPixelBytes * aPicture.GetByteCount() / aPicture.mChannels);
    if (aPicture.mChannels == kPixelBytes) {
        std::memcpy(aBytes->data(), aPicture.mBytes.get(), aBytes->size());
        return;
    }
    for (std::size_t i = 0; i < aBytes->size(); ++i) {
        (*aBytes)[i] = aPicture.mBytes[i / kPixelBytes];
    }
}

} // namespace

JpegRows::~JpegRows() = default;

bool ReadJpegPicture(std::string_view aBytes, uint32 aMaxSide, JpegPicture* aPicture) {
    JpegInMemory jpeg(aBytes);
    PictureHeader header;
    Picture picture;
    if (!jpeg.ReadHeader(&header) || header.mWidth > aMaxSide || header.mHeight > aMaxSide ||
        !jpeg.Decode(header, &picture)) {
        return false;
    }
    aPicture->mWidth = picture.mWidth;
    aPicture->mHeight = picture.mHeight;
    Spread(picture, &aPicture->mBytes);
    return true;
}

std::string WriteJpeg(uint32 aWidth, uint32 aHeight, std::string_view aComment, JpegRows* aRows) {
    ByteSink bytes;
    JpegWriter writer(&bytes);
    if (!writer.Begin(aWidth, aHeight, kQuality, aComment)) {
        return {};
    }
    for (uint32 y = 0; y < aHeight; ++y) {
        if (!writer.WriteRow(aRows->NextRow())) {
            return {};
        }
    }
    if (!writer.End()) {
        return {};
    }
    return std::string(reinterpret_cast<const char*>(bytes.GetData()), bytes.GetCount());
}

bool HasJpegComment(std::string_view aBytes, std::string_view aComment) {
    constexpr std::size_t kHead = 4; // of a segment: its marker, and its length, these two bytes included
    const auto byteAt = [aBytes](std::size_t aPlace) { return static_cast<unsigned char>(aBytes[aPlace]); };
    std::size_t place = 2; // after the start of the image
    while (place + kHead <= aBytes.size() && byteAt(place) == 0xFF && byteAt(place + 1) != kStartOfScan) {
        const std::size_t length = std::size_t{byteAt(place + 2)} << 8 | byteAt(place + 3);
        if (byteAt(place + 1) == JPEG_COM && length == aComment.size() + 2 &&
            aBytes.substr(place + kHead, aComment.size()) == aComment) {
            return true;
        }
        place += 2 + length;
    }
    return false;
}
