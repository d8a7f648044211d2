#include "ezThumbnails/detail/AreaScaler.h"

#include "ezThumbnails/detail/Divider.h"

#include <algorithm>
#include <new>

namespace {

constexpr uint32 kAlphaChannels = 4;

/// The sums of a pixel of the result within a row, kept in registers: the compiler leaves an array of them in
/// memory. A sum is at most 65535 * 255 * 255, which 32 bits hold.
template <uint32 kChannels>
struct PixelSums {
    std::uint32_t mFirst = 0;
    std::uint32_t mSecond = 0;
    std::uint32_t mThird = 0;
    std::uint32_t mAlpha = 0;

    /// Adds a pixel, so many times.
    void Add(const unsigned char* aPixel, uint32 aTimes) {
        if constexpr (kChannels == kAlphaChannels) {
            aTimes *= aPixel[3];
            mAlpha += aTimes;
        }
        mFirst += aTimes * aPixel[0];
        if constexpr (kChannels != 1) {
            mSecond += aTimes * aPixel[1];
            mThird += aTimes * aPixel[2];
        }
    }
    void Store(std::uint32_t* aSums) const {
        aSums[0] = mFirst;
        if constexpr (kChannels != 1) {
            aSums[1] = mSecond;
            aSums[2] = mThird;
        }
        if constexpr (kChannels == kAlphaChannels) {
            aSums[3] = mAlpha;
        }
    }
};

/// Sums the pixels of a row up for those of the result.
///
/// A pixel of the original is as many parts wide as the result is pixels wide, and the other way round, so
/// that the whole widths are equal and every border lies between two parts.
template <uint32 kChannels>
void SumRow(const unsigned char* aRow, uint32 aWidth, uint32 aResultWidth, std::uint32_t* aSums) {
    uint32 left = aResultWidth; // of the pixel of the original
    for (uint32 x = 0; x < aResultWidth; ++x, aSums += kChannels) {
        PixelSums<kChannels> sums;
        uint32 room = aWidth;
        for (; left <= room; left = aResultWidth, aRow += kChannels) {
            sums.Add(aRow, left);
            room -= left;
        }
        if (room != 0) { // else the row may be at its end
            sums.Add(aRow, room);
            left -= room;
        }
        sums.Store(aSums);
    }
}

unsigned char Rounded(std::uint64_t aSum, std::uint64_t aCount) {
    return static_cast<unsigned char>((aSum + aCount / 2) / aCount);
}

} // namespace

bool AreaScaler::Begin(uint32 aWidth, uint32 aHeight, uint32 aChannels, uint32 aResultWidth,
                       uint32 aResultHeight, Picture* aResult) {
    mWidth = aWidth;
    mHeight = aHeight;
    mSumRow = aChannels == 1 ? SumRow<1> : aChannels == kAlphaChannels ? SumRow<kAlphaChannels> : SumRow<3>;
    mResult = aResult;
    mResultRow = 0;
    mRoom = aHeight;
    aResult->mWidth = aResultWidth;
    aResult->mHeight = aResultHeight;
    aResult->mChannels = aChannels;
    aResult->mBytes = NewPictureBytes(aResult->GetByteCount());
    mRowSums.reset(new (std::nothrow) std::uint32_t[aResult->GetRowBytes()]);
    mAreaSums.reset(new (std::nothrow) std::uint64_t[aResult->GetRowBytes()]);
    return aResult->mBytes != nullptr && mRowSums != nullptr && mAreaSums != nullptr;
}

void AreaScaler::AddSums(uint32 aPart) {
    const std::size_t count = mResult->GetRowBytes();
    const std::uint32_t* const rowSums = mRowSums.get();
    std::uint64_t* const areaSums = mAreaSums.get();
    if (mRoom == mHeight) { // the first for this row of the result
        for (std::size_t i = 0; i < count; ++i) {
            areaSums[i] = static_cast<std::uint64_t>(rowSums[i]) * aPart;
        }
        return;
    }
    for (std::size_t i = 0; i < count; ++i) {
        areaSums[i] += static_cast<std::uint64_t>(rowSums[i]) * aPart;
    }
}

void AreaScaler::FinishRow() {
    const std::size_t count = mResult->GetRowBytes();
    const std::uint32_t area = mWidth * mHeight; // the square of 65535 has 32 bits
    const Divider divider(area);
    const std::uint64_t* const sums = mAreaSums.get();
    unsigned char* const row = mResult->mBytes.get() + count * mResultRow;
    if (mResult->mChannels == kAlphaChannels) {
        for (std::size_t i = 0; i < count; i += kAlphaChannels) {
            const std::uint64_t weight = sums[i + 3];
            for (std::size_t c = 0; c < 3; ++c) {
                row[i + c] = weight == 0 ? 0 : Rounded(sums[i + c], weight);
            }
            row[i + 3] = divider.Divide(weight + area / 2);
        }
    } else {
        for (std::size_t i = 0; i < count; ++i) {
            row[i] = divider.Divide(sums[i] + area / 2);
        }
    }
    ++mResultRow;
    mRoom = mHeight;
}

void AreaScaler::AddRow(const unsigned char* aRow) {
    if (IsComplete()) {
        return;
    }
    mSumRow(aRow, mWidth, mResult->mWidth, mRowSums.get());
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
