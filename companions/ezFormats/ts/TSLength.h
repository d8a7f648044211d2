#pragma once

#include "ezFormats/ts/TSHead.h"

#include <cstdint>

class MediaBytes;

/// How long a transport stream lasts.
struct TSLength {
    std::uint64_t mTicks = 0; ///< of kStreamClock_Rate; 0: not known
    const char* mMethod = "";
};

/// Measures a stream of known size by the time stamps at its end; and, where the program clock says at some
/// places that these cannot be right, by how fast it goes there.
/// @param aHead  its tables also get those at the end
TSLength MeasureTS(MediaBytes& aBytes, TSHead& aHead);
