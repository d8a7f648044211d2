#include "ezThumbnails/detail/AreaScaler.h"

#include <algorithm>
#include <new>

namespace {

constexpr uint32 kAlphaChannels = 4;

/// Adds a pixel, so many times. A sum of one row is at most 65535 * 255 * 255, which 32 bits hold.
void AddPixel(std::uint32_t* aSums, const unsigned char* aPixel, uint32 aChannels, uint32 aTimes) {
    if (aChannels == 1) {
        aSums[0] += aTimes * aPixel[0];
        return;
    }
    if (aChannels == kAlphaChannels) {
        const std::uint32_t weight = aTimes * aPixel[3];
        aSums[0] += weight * aPixel[0];
        aSums[1] += weight * aPixel[1];
        aSums[2] += weight * aPixel[2];
        aSums[3] += weight;
        return;
    }
    aSums[0] += aTimes * aPixel[0];
    aSums[1] += aTimes * aPixel[1];
    aSums[2] += aTimes * aPixel[2];
}

unsigned char Rounded(std::uint64_t aSum, std::uint64_t aCount) {
    return static_cast<unsigned char>((aSum + aCount / 2) / aCount);
}

} // namespace

bool AreaScaler::Begin(uint32 aWidth, uint32 aHeight, uint32 aChannels, uint32 aResultWidth,
                       uint32 aResultHeight, Picture* aResult) {
    mWidth = aWidth;
    mHeight = aHeight;
    mResult = aResult;
    mResultRow = 0;
    mRoom = aHeight;
    aResult->mWidth = aResultWidth;
    aResult->mHeight = aResultHeight;
    aResult->mChannels = aChannels;
    aResult->mBytes = NewPictureBytes(aResult->GetByteCount());
    mRowSums.reset(new (std::nothrow) std::uint32_t[aResult->GetRowBytes()]());
    mAreaSums.reset(new (std::nothrow) std::uint64_t[aResult->GetRowBytes()]());
    return aResult->mBytes != nullptr && mRowSums != nullptr && mAreaSums != nullptr;
}

// The parts: a pixel of the original is as many parts wide as the result is pixels wide, and the other way
// round, so that the whole widths are equal and every border lies between two parts.
void AreaScaler::SumRow(const unsigned char* aRow) {
    const uint32 channels = mResult->mChannels;
    std::uint32_t* sums = mRowSums.get();
    std::fill_n(sums, mResult->GetRowBytes(), 0);
    uint32 room = mWidth;
    for (uint32 x = 0; x < mWidth; ++x, aRow += channels) {
        uint32 left = mResult->mWidth;
        while (left != 0) {
            const uint32 part = std::min(left, room);
            AddPixel(sums, aRow, channels, part);
            left -= part;
            room -= part;
            if (room == 0) {
                room = mWidth;
                sums += channels;
            }
        }
    }
}

void AreaScaler::AddSums(uint32 aPart) {
    const std::size_t count = mResult->GetRowBytes();
    for (std::size_t i = 0; i < count; ++i) {
        mAreaSums[i] += static_cast<std::uint64_t>(mRowSums[i]) * aPart;
    }
}

void AreaScaler::FinishRow() {
    const std::size_t count = mResult->GetRowBytes();
    const std::uint64_t area = static_cast<std::uint64_t>(mWidth) * mHeight;
    unsigned char* row = mResult->mBytes.get() + count * mResultRow;
    if (mResult->mChannels == kAlphaChannels) {
        for (std::size_t i = 0; i < count; i += kAlphaChannels) {
            const std::uint64_t weight = mAreaSums[i + 3];
            for (std::size_t c = 0; c < 3; ++c) {
                row[i + c] = weight == 0 ? 0 : Rounded(mAreaSums[i + c], weight);
            }
            row[i + 3] = Rounded(weight, area);
        }
    } else {
        for (std::size_t i = 0; i < count; ++i) {
            row[i] = Rounded(mAreaSums[i], area);
        }
    }
    std::fill_n(mAreaSums.get(), count, 0);
    ++mResultRow;
    mRoom = mHeight;
}

void AreaScaler::AddRow(const unsigned char* aRow) {
    if (IsComplete()) {
        return;
    }
    SumRow(aRow);
    uint32 left = mResult->mHeight;
    while (left != 0) {
        const uint32 part = std::min(left, mRoom);
        AddSums(part);
        left -= part;
        mRoom -= part;
        if (mRoom == 0) {
            FinishRow();
        }
    }
}
