#pragma once

#include "ezBytes/ByteReader.h"

#include <cstdint>

/// How a decoder of immersive audio is set up (Immersive Audio Model and Formats, 3 and 6.2). Numbers are 0
/// where it does not tell.
struct IAMFConfig {
    std::uint32_t mSamplingRate = 0; ///< Hz, of the first codec
    std::uint32_t mChannels = 0;     ///< of the largest of its audio elements, at its finest layer
};

/// Reads the content of an "iacb" box. What is damaged tells nothing.
IAMFConfig ReadIAMFConfig(ByteReader aBox);
