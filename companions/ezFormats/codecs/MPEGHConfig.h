#pragma once

#include "ezBytes/ByteReader.h"

#include <cstdint>

/// What a description of MPEG-H audio tells (ISO/IEC 23008-3, 20.5.2). Numbers are 0 where it does not.
struct MPEGHConfig {
    std::uint32_t mSamplingRate = 0; ///< Hz, of the decoder's output
    std::uint32_t mChannels = 0;     ///< of the loudspeakers that the sound was made for
};

/// Reads the content of a "mhaC" box. What is damaged tells nothing.
MPEGHConfig ReadMPEGHConfig(ByteReader aBox);
