#pragma once

#include "ezPlatform/base/Types.h"

#include <string>
#include <vector>

/// The sides of a cell, in pixels.
constexpr uint32 kSheetCellSide = 160;
/// Pixels around and between the cells.
constexpr uint32 kSheetGap = 16;

/// How the cells of a sheet lie: as near to a square as can be, filled from the top left, row by row.
struct SheetGrid {
    explicit SheetGrid(std::size_t aCellCount);

    uint32 GetWidth() const { return PixelsOf(mColumns); }
    uint32 GetHeight() const { return PixelsOf(mRows); }

    uint32 mColumns = 0;
    uint32 mRows = 0;

private:
    static uint32 PixelsOf(uint32 aCellCount) {
        return kSheetGap + aCellCount * (kSheetCellSide + kSheetGap);
    }
};

/// A white page with a picture in the middle of each cell, as JPEG; of the pictures one row of cells at a
/// time is held decoded. Empty when it cannot be made.
/// @param aThumbnails  JPEGs, at least 1 and at most kContactSheet_MaxCells; one that is damaged or larger
/// than a cell
///                     leaves its cell empty
std::string MakeContactSheet(const std::vector<std::string>& aThumbnails);

/// Whether a file is a page that MakeContactSheet made.
bool IsContactSheet(const std::string& aPath);
