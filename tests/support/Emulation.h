#pragma once

#include <cstddef>

/// What the longest tests divide their sizes by where an emulator runs them: it takes 10 to 60 times as long.
#ifdef EZ_EMULATED
inline constexpr std::size_t kEmulationShare = 10;
#else
inline constexpr std::size_t kEmulationShare = 1;
#endif
