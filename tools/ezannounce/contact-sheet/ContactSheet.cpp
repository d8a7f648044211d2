#include "contact-sheet/ContactSheet.h"

#include "contact-sheet/Limits.h"
#include "ezThumbnails/JpegPicture.h"

#include <algorithm>
#include <fstream>

namespace {

constexpr unsigned char kWhite = 255;
constexpr std::size_t kPixelBytes = 3;
/// Tells a sheet from a picture of somebody's own.
constexpr char kComment[] = "ezannounce contact-sheet";

/// The page, row by row.
class SheetRows : public JpegRows {
public:
    SheetRows(const std::vector<std::string>& aThumbnails, const SheetGrid& aGrid)
        : mThumbnails(aThumbnails), mGrid(aGrid) {}

    const unsigned char* NextRow() override {
        mRow.assign(kPixelBytes * mGrid.GetWidth(), kWhite);
        const uint32 pitch = kSheetCellSide + kSheetGap;
        const uint32 gridRow = mNextY / pitch;
        const uint32 inGap = mNextY % pitch;
        if (gridRow < mGrid.mRows && inGap >= kSheetGap) {
            if (inGap == kSheetGap) {
                Decode(gridRow);
            }
            for (uint32 column = 0; column < mCells.size(); ++column) {
                Put(mCells[column], kSheetGap + column * pitch, inGap - kSheetGap);
            }
        }
        ++mNextY;
        return mRow.data();
    }

private:
    void Decode(uint32 aGridRow) {
        mCells.clear();
        const std::size_t first = std::size_t{aGridRow} * mGrid.mColumns;
        const std::size_t end = std::min(first + mGrid.mColumns, mThumbnails.size());
        for (std::size_t i = first; i < end; ++i) {
            JpegPicture picture;
            const bool fGood = ReadJpegPicture(mThumbnails[i], kSheetCellSide, &picture);
            mCells.push_back(fGood ? std::move(picture) : JpegPicture());
        }
    }

    /// One row of a cell, aY pixels below its top.
    void Put(const JpegPicture& aPicture, uint32 aCellX, uint32 aY) {
        const uint32 top = (kSheetCellSide - aPicture.mHeight) / 2;
        if (aY < top || aY - top >= aPicture.mHeight) {
            return;
        }
        const uint32 left = aCellX + (kSheetCellSide - aPicture.mWidth) / 2;
        const std::size_t rowBytes = kPixelBytes * aPicture.mWidth;
        std::copy_n(aPicture.mBytes.data() + rowBytes * (aY - top), rowBytes,
                    mRow.data() + kPixelBytes * left);
    }

    const std::vector<std::string>& mThumbnails;
    const SheetGrid& mGrid;
    uint32 mNextY = 0;
    std::vector<JpegPicture> mCells; ///< of the row of cells under way
    std::vector<unsigned char> mRow;
};

} // namespace

SheetGrid::SheetGrid(std::size_t aCellCount) {
    const auto count = static_cast<uint32>(aCellCount);
    while (mColumns * mColumns < count) {
        ++mColumns;
    }
    mRows = (count + mColumns - 1) / std::max<uint32>(mColumns, 1);
}

std::string MakeContactSheet(const std::vector<std::string>& aThumbnails) {
    const SheetGrid grid(aThumbnails.size());
    SheetRows rows(aThumbnails, grid);
    return WriteJpeg(grid.GetWidth(), grid.GetHeight(), kComment, &rows);
}

bool IsContactSheet(const std::string& aPath) {
    std::string head(kContactSheet_HeadBytes, '\0');
    std::ifstream file(aPath, std::ios::binary);
    file.read(head.data(), static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<std::size_t>(file.gcount()));
    return HasJpegComment(head, kComment);
}
