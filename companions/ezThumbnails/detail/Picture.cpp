#include "ezThumbnails/detail/Picture.h"

#include <cstring>
#include <new>
#include <utility>

namespace {

/// Where a pixel of the picture as it is seen lies in the stored one.
struct Turn {
    bool mfSwapped; ///< its row is a column
    bool mfFromRight;
    bool mfFromBottom;
};

/// Exif 2.3, tag 274: which sides the first row and the first column are.
constexpr Turn kTurns[] = {
    {false, false, false}, // 1: top, left
    {false, true, false},  // 2: top, right
    {false, true, true},   // 3: bottom, right
    {false, false, true},  // 4: bottom, left
    {true, false, false},  // 5: left, top
    {true, false, true},   // 6: right, top
    {true, true, true},    // 7: right, bottom
    {true, true, false},   // 8: left, bottom
};

const Turn& TurnOf(unsigned anOrientation) {
    return kTurns[anOrientation >= 1 && anOrientation <= 8 ? anOrientation - 1 : 0];
}

const unsigned char* StoredPixel(const Picture& aPicture, const Turn& aTurn, uint32 aX, uint32 aY) {
    uint32 x = aTurn.mfSwapped ? aY : aX;
    uint32 y = aTurn.mfSwapped ? aX : aY;
    x = aTurn.mfFromRight ? aPicture.mWidth - 1 - x : x;
    y = aTurn.mfFromBottom ? aPicture.mHeight - 1 - y : y;
    return aPicture.mBytes.get() + aPicture.GetRowBytes() * y +
           static_cast<std::size_t>(aPicture.mChannels) * x;
}

} // namespace

PictureBytes NewPictureBytes(std::size_t aCount) {
    return PictureBytes(new (std::nothrow) unsigned char[aCount]());
}

bool LiesOnItsSide(unsigned anOrientation) {
    return TurnOf(anOrientation).mfSwapped;
}

bool Straighten(Picture* aPicture, unsigned anOrientation) {
    const Turn& turn = TurnOf(anOrientation);
    if (!turn.mfSwapped && !turn.mfFromRight && !turn.mfFromBottom) {
        return true;
    }
    Picture seen;
    seen.mWidth = turn.mfSwapped ? aPicture->mHeight : aPicture->mWidth;
    seen.mHeight = turn.mfSwapped ? aPicture->mWidth : aPicture->mHeight;
    seen.mChannels = aPicture->mChannels;
    seen.mBytes = NewPictureBytes(seen.GetByteCount());
    if (seen.mBytes == nullptr) {
        return false;
    }
    unsigned char* pixel = seen.mBytes.get();
    for (uint32 y = 0; y < seen.mHeight; ++y) {
        for (uint32 x = 0; x < seen.mWidth; ++x) {
            std::memcpy(pixel, StoredPixel(*aPicture, turn, x, y), seen.mChannels);
            pixel += seen.mChannels;
        }
    }
    *aPicture = std::move(seen);
    return true;
}
