#include "ezThumbnails/detail/JpegWriter.h"
#include "ezThumbnails/detail/PictureEncoder.h"

namespace {

/// No blocks are to be seen at this quality, and a picture of 160 by 160 pixels has some 6 KB.
constexpr int kQuality = 85;

} // namespace

bool EncodeJpeg(const Picture& aPicture, ByteSink* aSink) {
    const std::size_t rowBytes = std::size_t{3} * aPicture.mWidth;
    const bool fGrey = aPicture.mChannels == 1; // the library makes no colours of grey by itself
    const PictureBytes spread = fGrey ? NewPictureBytes(rowBytes) : nullptr;
    JpegWriter writer(aSink);
    if ((fGrey && spread == nullptr) || !writer.Begin(aPicture.mWidth, aPicture.mHeight, kQuality, "")) {
        return false;
    }
    for (uint32 y = 0; y < aPicture.mHeight; ++y) {
        const unsigned char* const row = aPicture.mBytes.get() + aPicture.GetRowBytes() * y;
        for (std::size_t i = 0; fGrey && i < rowBytes; ++i) {
            spread[i] = row[i / 3];
        }
        if (!writer.WriteRow(fGrey ? spread.get() : row)) {
            return false;
        }
    }
    return writer.End();
}
