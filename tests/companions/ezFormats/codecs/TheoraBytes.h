#pragma once

#include "support/NumberBytes.h"

#include <cstddef>
#include <cstdint>
#include <string>

/// The identification header of a Theora stream: 25 pictures a second of 318x238, which begin within coded
/// ones of 320x240; the last six bits of a granule position count from the last key picture.
struct TheoraHead {
    unsigned mVersion = 0x030201;
    unsigned mBlocksAcross = 20; ///< macro blocks of 16 pixels
    unsigned mBlocksDown = 15;
    unsigned mWidth = 318;
    unsigned mHeight = 238;
    unsigned mLeft = 2;
    unsigned mBottom = 1;
    std::uint32_t mRate = 25;
    std::uint32_t mRateDivisor = 1;
    unsigned mPixelWidth = 0;
    unsigned mPixelHeight = 0;
    unsigned mNominalRate = 0;
    unsigned mKeyShift = 6;
    unsigned mFormat = 0;

    std::string Bytes() const {
        return "\x80theora" + Big(mVersion, 3) + Big(mBlocksAcross, 2) + Big(mBlocksDown, 2) +
               Big(mWidth, 3) + Big(mHeight, 3) + Big(mLeft, 1) + Big(mBottom, 1) + Big(mRate, 4) +
               Big(mRateDivisor, 4) + Big(mPixelWidth, 3) + Big(mPixelHeight, 3) + Big(0, 1) +
               Big(mNominalRate, 3) + Big(63U << 10U | mKeyShift << 5U | mFormat << 3U, 2);
    }
};
