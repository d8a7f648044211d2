#pragma once

#include "ezPlatform/base/Types.h"

#include <chrono>
#include <cstddef>

/// What is written at once, and how wide.

/// Rows of a table that are held back until they are written, all columns as wide as they need: the memory
/// taken does not grow with their number.
inline constexpr std::size_t kOutput_RowsPerBatch = 1'000;

/// Columns of a terminal that a table fills: nobody reads wider ones, and blanks up to the longest name would
/// be most of what is written.
inline constexpr uint32 kOutput_MaxWidth = 1'000;

/// Columns of the line that shows progress: it is cut before it would fill a line of the smallest terminal
/// and leave a piece of itself.
inline constexpr std::size_t kProgress_MaxWidth = 79;

/// Files after which progress is shown anew: more often would cost more than it tells. It is shown earlier
/// when its time has come.
inline constexpr std::size_t kProgress_Files = 256;

/// Milliseconds after which progress is shown anew: a person sees that it goes on. It is shown earlier after
/// so many files.
inline constexpr std::chrono::milliseconds kProgress_Time{250};
