#pragma once

#include <cstddef>

/// What a contact sheet holds.

/// Cells of a sheet: 32 rows of 32, 5648 by 5648 pixels. Media after the last cell are not on it, which is
/// told.
inline constexpr std::size_t kContactSheet_MaxCells = 1'024;

/// Bytes of a thumbnail that is held for the sheet: one within 160 by 160 has some 6 KB, and none of noise
/// comes near this. A larger one is left out.
inline constexpr std::size_t kContactSheet_MaxThumbnailBytes = std::size_t{256} * 1024;

/// Bytes at the start of a file that is to be overwritten, in which the comment of a sheet is looked for: it
/// stands there in every sheet.
inline constexpr std::size_t kContactSheet_HeadBytes = 4'096;
