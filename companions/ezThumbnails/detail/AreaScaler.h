#pragma once

#include "ezThumbnails/detail/Picture.h"

#include <cstdint>
#include <memory>

/// Scales a picture that comes row by row, of which it keeps no more than sums for one row of the result.
///
/// Every pixel of the result is the average, exact but for one rounding, of the area that it covers in the
/// original, in parts of pixels too. Where there is alpha a pixel's colour counts as much as it covers.
class AreaScaler {
public:
    AreaScaler() = default;
    AreaScaler(const AreaScaler&) = delete;
    AreaScaler& operator=(const AreaScaler&) = delete;

    /// Begins. No side of either is 0 or above 65535.
    /// @param aResult  receives the size, the channels (those of the original) and the rows; borrowed
    /// @return false when there is no memory
    bool Begin(uint32 aWidth, uint32 aHeight, uint32 aChannels, uint32 aResultWidth, uint32 aResultHeight,
               Picture* aResult);
    /// Takes the next row. Those beyond the height are ignored.
    void AddRow(const unsigned char* aRow);
    /// True when the result is complete.
    bool IsComplete() const { return mResult != nullptr && mResultRow == mResult->mHeight; }

private:
    void AddSums(uint32 aPart);
    void FinishRow();

    uint32 mWidth = 0;
    uint32 mHeight = 0;
    void (*mSumRow)(const unsigned char* aRow, uint32 aWidth, uint32 aResultWidth,
                    std::uint32_t* aSums) = nullptr; ///< for the number of channels
    Picture* mResult = nullptr;
    uint32 mResultRow = 0;
    uint32 mRoom = 0; ///< of the row of the result, in parts of a row of the original
    std::unique_ptr<std::uint32_t[]> mRowSums;
    std::unique_ptr<std::uint64_t[]> mAreaSums;
};
