#pragma once

#include "ezPlatform/text/CString.h"

#include <cstdint>

class MediaBytes;

/// A coded stream that stands in place of plain samples, as players with a digital output pass it on: DTS as
/// on a CD, or bursts of a codec between zeros (IEC 61937-1, 6).
struct WAVDisguise {
    ezCString mCodec;            ///< as kezInfo_AudioCodec names it; empty: samples are samples
    std::uint32_t mChannels = 0; ///< 0: not told
};

/// Looks for one where samples of two channels of 16 bits begin.
/// @param anEnd  where the sound ends
WAVDisguise FindWAVDisguise(MediaBytes& aBytes, std::uint64_t aStart, std::uint64_t anEnd);
